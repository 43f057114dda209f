#include <memory>

#include "devdef/catalogue/catalogue_walk.h"
#include "devdef/catalogue/device_def_ctrl.h"
#include "devdef/platform/message_box.h"
#include "devdef/reader/id_index.h"

namespace {

// Calls visit(def) for every definition in walk order, hidden ones included,
// until visit returns true. Returns whether it did.
template <class Visit>
bool WalkDefinitions(CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>& kinds, Visit visit) {
  return DevdefWalkDevices(kinds, [&visit](const DevdefDevicePlace& place) {
    for (int i = 0; i < place.device.m_DefArray.GetSize(); ++i) {
      if (visit(place.device.m_DefArray[i])) return true;
    }
    return false;
  });
}

}  // namespace

int KCDeviceDefCtrl::FindId(cAbstractDeviceDefCtrl& ctrl, unsigned long nId) {
  const DWORD id = static_cast<DWORD>(nId);
  return WalkDefinitions(ctrl.getDeviceList(), [id](DEVICE_KVRXDEF_ITEM& def) { return def.m_DefID == id; }) ? 1 : 0;
}

void KCDeviceDefCtrl::RDF_CheckDuplicateId(DWORD nId) {
  if (m_nNextDeviceID <= nId) m_nNextDeviceID = nId + 1;  // wraps to 0 for the id 0xFFFFFFFF
  bool inUse = false;
  if (m_pIdIndex != nullptr) {
    // During a read the index answers what FindId on this controller would:
    // it starts as the ids of the catalogue and gains each id checked here,
    // since the readers add the definition right after the check.
    inUse = m_pIdIndex->Add(nId);
  } else {
    inUse = FindId(*this, nId) != 0;
  }
  if (!inUse) return;
  CString text;
  text.Format("Doppelte device id gefunden:\n<%d>", static_cast<int>(nId));
  MessageBoxA(nullptr, text, "INTERN_VERSION", MB_ICONEXCLAMATION);
}

void KCDeviceDefCtrl::RDF_BeginIdIndex() {
  m_pIdIndex.reset();
  if (!m_bCheckIds) return;
  std::unique_ptr<DevdefIdIndex> index(new DevdefIdIndex);
  WalkDefinitions(getDeviceList(), [&index](DEVICE_KVRXDEF_ITEM& def) {
    index->Add(def.m_DefID);
    return false;
  });
  m_pIdIndex = std::move(index);
}

void KCDeviceDefCtrl::RDF_EndIdIndex() { m_pIdIndex.reset(); }
