/// \file
/// The two upper levels of the catalogue: kinds of device and manufacturers.
/// Copies share the lists below them; the lists belong to the controller.
#ifndef DEVDEF_CATALOGUE_CATALOGUE_TAGS_H_
#define DEVDEF_CATALOGUE_CATALOGUE_TAGS_H_

#include "devdef/catalogue/device_item.h"
#include "devdef/platform/clist.h"
#include "devdef/platform/cstring.h"
#include "devdef/platform/types.h"

/// A manufacturer of the catalogue (second level): its name and its devices.
///
/// Lies by value in its kind's list. Copies share m_pDeviceList with the original; the controller owns that list
/// and deletes it in KCDeviceDefCtrl::RemoveDefLists, never the record's destructor. The host must not delete it.
struct TAG_DEVICE_MANUF {
  /// An empty name and null pointers.
  TAG_DEVICE_MANUF() : m_pDeviceList(nullptr), m_KindPos(nullptr) {}
  /// Copies every field; the copy shares the device list.
  TAG_DEVICE_MANUF(const TAG_DEVICE_MANUF& other) = default;
  /// Copies every field; the copy shares the device list.
  TAG_DEVICE_MANUF& operator=(const TAG_DEVICE_MANUF& other) = default;
  ~TAG_DEVICE_MANUF() = default;

  /// The manufacturer's name, with blanks for the file's "_".
  CString m_Name;
  /// The devices in file order; null until the manufacturer's first device line. Owned by the controller.
  CList<DEVICE_ITEM, DEVICE_ITEM&>* m_pDeviceList;
  /// The node of the owning kind in KCDeviceDefCtrl::m_DeviceList; set when read; nothing decides by it.
  POSITION m_KindPos;
};

/// A kind of device (top level of the catalogue): its name and its manufacturers.
///
/// Lies by value in the controller's list (cAbstractDeviceDefCtrl::getDeviceList). Copies share m_pManufList; the
/// controller owns it and deletes it in KCDeviceDefCtrl::RemoveDefLists. The host must not delete it.
struct TAG_KIND_OF_DEVICE {
  /// An empty name and a null list.
  TAG_KIND_OF_DEVICE() : m_pManufList(nullptr) {}
  /// Copies the name and the pointer; the copy shares the manufacturer list.
  TAG_KIND_OF_DEVICE(const TAG_KIND_OF_DEVICE& other) = default;
  /// Copies the name and the pointer; the copy shares the manufacturer list.
  TAG_KIND_OF_DEVICE& operator=(const TAG_KIND_OF_DEVICE& other) = default;
  ~TAG_KIND_OF_DEVICE() = default;

  /// The kind's name, with blanks for the file's "_".
  CString m_Name;
  /// The manufacturers in file order; null until the kind's first manufacturer line. Owned by the controller.
  CList<TAG_DEVICE_MANUF, TAG_DEVICE_MANUF&>* m_pManufList;
};

#endif  // DEVDEF_CATALOGUE_CATALOGUE_TAGS_H_
