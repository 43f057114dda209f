/// \file
/// devdef: a catalogue of device definitions read from definition files, with
/// the class-library layer it is written against. The one header a host
/// includes.
///
/// What it brings in:
/// - Controllers: catalogue/abstract_ctrl.h (cAbstractDeviceDefCtrl, the operations a host calls),
///   catalogue/device_def_ctrl.h (KCDeviceDefCtrl, layout 1), catalogue/device_def_ctrl_v2.h (KCDeviceDefCtrlV2,
///   layout 2), catalogue/device_def_ctrl_v3.h (KCDeviceDefCtrlV3, layout 7).
/// - Records: catalogue/catalogue_tags.h (TAG_KIND_OF_DEVICE, TAG_DEVICE_MANUF), catalogue/device_item.h
///   (DEVICE_ITEM), catalogue/definition_item.h (DEVICE_KVRXDEF_ITEM).
/// - Name lists and package names: catalogue/device_item.h (the process-wide DEVICE_ITEM::m_PackageList,
///   DEVICE_ITEM::m_AdapterList, DEVICE_ITEM::m_ModulList and the name operations).
/// - Format scanner: writer/format_scanner.h (ScanFormatted).
/// - Class-library layer: platform/ (CString, the arrays, CList, CFile, CMemFile, CArchive, the exceptions,
///   message boxes, POSITION and the other types, DEVDEF_API).
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
