// The two upper levels of the catalogue: kinds of device and manufacturers.
// Copies share the lists below them; the lists belong to the controller.
#ifndef DEVDEF_CATALOGUE_CATALOGUE_TAGS_H_
#define DEVDEF_CATALOGUE_CATALOGUE_TAGS_H_

#include "devdef/catalogue/device_item.h"
#include "devdef/platform/clist.h"
#include "devdef/platform/cstring.h"
#include "devdef/platform/types.h"

struct TAG_DEVICE_MANUF {
  TAG_DEVICE_MANUF() : m_pDeviceList(nullptr), m_KindPos(nullptr) {}
  TAG_DEVICE_MANUF(const TAG_DEVICE_MANUF& other) = default;
  TAG_DEVICE_MANUF& operator=(const TAG_DEVICE_MANUF& other) = default;
  ~TAG_DEVICE_MANUF() = default;

  CString m_Name;
  CList<DEVICE_ITEM, DEVICE_ITEM&>* m_pDeviceList;
  POSITION m_KindPos;
};

struct TAG_KIND_OF_DEVICE {
  TAG_KIND_OF_DEVICE() : m_pManufList(nullptr) {}
  TAG_KIND_OF_DEVICE(const TAG_KIND_OF_DEVICE& other) = default;
  TAG_KIND_OF_DEVICE& operator=(const TAG_KIND_OF_DEVICE& other) = default;
  ~TAG_KIND_OF_DEVICE() = default;

  CString m_Name;
  CList<TAG_DEVICE_MANUF, TAG_DEVICE_MANUF&>* m_pManufList;
};

#endif  // DEVDEF_CATALOGUE_CATALOGUE_TAGS_H_
