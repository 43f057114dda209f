#include "tools/edit/read_back.h"

#include "devdef/reader/read_observer.h"
#include "tools/analysis/analysis.h"

namespace {

int SilentBox(const char*, const char*, unsigned int) { return IDOK; }

// Watches the read: a device is complete when the next one starts or the
// read ends, since a device's definitions are read only from the block
// that follows its name. It reads the catalogue and changes nothing.
class DeviceWatcher final : public DevdefReadObserver {
 public:
  explicit DeviceWatcher(const DeviceReadBack& deviceRead) : m_deviceRead(deviceRead) {}

  void Device(DWORD, DWORD, POSITION posManuf, POSITION posDevice) override {
    HandOver();
    m_manuf = posManuf;
    m_device = posDevice;
  }
  void EndRead(CByteArray&) override { HandOver(); }

 private:
  void HandOver() {
    if (m_device == nullptr) return;
    const TAG_DEVICE_MANUF& manuf = CList<TAG_DEVICE_MANUF, TAG_DEVICE_MANUF&>::GetAtPosition(m_manuf);
    const TAG_KIND_OF_DEVICE& kind = CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>::GetAtPosition(manuf.m_KindPos);
    m_deviceRead(kind, manuf, CList<DEVICE_ITEM, DEVICE_ITEM&>::GetAtPosition(m_device));
    m_device = nullptr;
  }

  const DeviceReadBack& m_deviceRead;
  POSITION m_manuf = nullptr;
  POSITION m_device = nullptr;
};

}  // namespace

std::unique_ptr<AnalysisCtrl> ReadBack(const std::string& path, int layout, const DeviceReadBack& deviceRead,
                                       bool* read) {
  AnalysisOptions options;
  options.layout = layout;
  std::unique_ptr<AnalysisCtrl> ctrl = AnalysisCtrl::Make(layout, options);
  // The name lists belong to the whole process: this read starts them anew.
  ctrl->Ctrl().RemoveDefLists();
  DeviceWatcher watcher(deviceRead);
  const AFX_MESSAGEBOX_HANDLER shown = AfxSetMessageBoxHandler(&SilentBox);
  {
    DevdefReadObserverScope watching(&watcher);
    *read = ctrl->Ctrl().ReadDefFile(path.c_str(), false) != 0;
  }
  AfxSetMessageBoxHandler(shown);
  return ctrl;
}
