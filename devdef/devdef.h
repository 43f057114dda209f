// devdef: a catalogue of device definitions read from definition files, with
// the class-library layer it is written against. The one header a host
// includes.
#ifndef DEVDEF_DEVDEF_H_
#define DEVDEF_DEVDEF_H_

#include "devdef/platform/carchive.h"
#include "devdef/platform/carray.h"
#include "devdef/platform/cfile.h"
#include "devdef/platform/clist.h"
#include "devdef/platform/cmemfile.h"
#include "devdef/platform/crt.h"
#include "devdef/platform/export.h"
#include "devdef/platform/cstring.h"
#include "devdef/platform/exceptions.h"
#include "devdef/platform/message_box.h"
#include "devdef/platform/typed_arrays.h"
#include "devdef/platform/types.h"

#include "devdef/catalogue/abstract_ctrl.h"
#include "devdef/catalogue/catalogue_tags.h"
#include "devdef/catalogue/definition_item.h"
#include "devdef/catalogue/device_def_ctrl.h"
#include "devdef/catalogue/device_def_ctrl_v2.h"
#include "devdef/catalogue/device_def_ctrl_v3.h"
#include "devdef/catalogue/device_item.h"

#include "devdef/writer/format_scanner.h"

#endif  // DEVDEF_DEVDEF_H_
