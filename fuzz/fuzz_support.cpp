#include "fuzz/fuzz_support.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

#include "devdef/catalogue/catalogue_walk.h"

namespace {

int SilentBox(const char*, const char*, unsigned int) { return IDOK; }

// A tree item the host would own; only its address matters to the library.
_TREEITEM* FakeTreeItem(size_t n) { return reinterpret_cast<_TREEITEM*>(static_cast<uintptr_t>(n * 16 + 16)); }

std::string& FuzzDirName() {
  static std::string dir;
  return dir;
}

// The directory goes when the process ends, with the files it may hold.
void RemoveFuzzDir() {
  const std::string& dir = FuzzDirName();
  std::remove((dir + "input.def").c_str());
  std::remove((dir + "k4devicelist.txt").c_str());
  ::rmdir(dir.c_str());
}

}  // namespace

void DevdefFuzzFail(const char* pszWhat, const char* pszFile, int nLine) {
  std::fprintf(stderr, "%s:%d: property does not hold: %s\n", pszFile, nLine, pszWhat);
  std::abort();
}

const std::string& DevdefFuzzDir() {
  static const std::string dir = [] {
    AfxSetMessageBoxHandler(&SilentBox);
    const char* tmp = std::getenv("TMPDIR");
    std::string pattern = std::string(tmp != nullptr && *tmp != '\0' ? tmp : "/tmp") + "/devdef-fuzz-XXXXXX";
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    if (::mkdtemp(name.data()) == nullptr) std::abort();
    FuzzDirName() = std::string(name.data()) + "/";
    std::atexit(&RemoveFuzzDir);
    return FuzzDirName();
  }();
  return dir;
}

std::string DevdefFuzzInputFile(const uint8_t* pData, size_t nSize) {
  const std::string path = DevdefFuzzDir() + "input.def";
  const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  if (fd < 0) std::abort();
  size_t done = 0;
  while (done < nSize) {
    const ssize_t put = ::write(fd, pData + done, nSize - done);
    if (put <= 0) std::abort();
    done += static_cast<size_t>(put);
  }
  ::close(fd);
  return path;
}

std::string DevdefFuzzWritten(KCDeviceDefCtrl& ctrl, bool bConvert, int* pResult) {
  CMemFile file;
  CArchive ar(&file, CArchive::store);
  const int result = bConvert ? ctrl.ConvertDefFileToVersion3(ar) : ctrl.WriteDefFile(ar);
  if (pResult != nullptr) *pResult = result;
  std::string bytes(static_cast<size_t>(file.GetLength()), '\0');
  file.SeekToBegin();
  if (!bytes.empty()) file.Read(&bytes[0], static_cast<UINT>(bytes.size()));
  return bytes;
}

void DevdefFuzzDriveCatalogue(KCDeviceDefCtrl& ctrl, KCDeviceDefCtrlV3* pV3) {
  const std::string before = DevdefFuzzWritten(ctrl, false);
  DevdefFuzzWritten(ctrl, true);

  // Every visible definition: its pieces, its names, a tree item of its own.
  std::vector<int> ids;
  size_t nTree = 0;
  DevdefWalkDevices(ctrl.getDeviceList(), [&](const DevdefDevicePlace& place) {
    DEVICE_ITEM& device = place.device;
    const int count = device.GetNumDevDefs();
    DEVDEF_FUZZ_CHECK(count <= device.m_DefArray.GetSize());
    device.GetNumOfSmallDefs(4);
    for (int i = -1; i <= count; ++i) {
      DEVICE_KVRXDEF_ITEM* def = device.find_by_index(i);
      DEVDEF_FUZZ_CHECK((def != nullptr) == (i >= 0 && i < count));
      device.GetDeviceXItemRef(i);
      device.GetDeviceDefLine(i);
      device.GetDevicePackage(i);
      if (def == nullptr) continue;
      DEVDEF_FUZZ_CHECK(device.GetDeviceXItem(def->m_XDefName) != nullptr);
      const int id = device.GetDeviceID(i);
      ids.push_back(id);
      DEVDEF_FUZZ_CHECK(device.FindDefID(static_cast<unsigned long>(static_cast<DWORD>(id))) >= 0);
      device.SetDeviceHTree(i, FakeTreeItem(++nTree));
      DEVDEF_FUZZ_CHECK(device.GetDeviceHTree(i) == FakeTreeItem(nTree));
      for (int a = 0; a < def->m_AdapterIds.GetSize(); ++a) {
        const char* adapter = DEVICE_ITEM::GetAdapterName(def->m_AdapterIds[a]);
        if (adapter != nullptr) device.GetAdaptPackage(adapter);
      }
      DEVICE_ITEM::GetModulName(def->m_ModulId);
    }
    return false;
  });
  for (int i = -1; i <= DEVICE_ITEM::m_PackageList.GetSize(); ++i) {
    const char* name = DEVICE_ITEM::GetPackageName(i);
    DEVDEF_FUZZ_CHECK((name != nullptr) == (i >= 0 && i < DEVICE_ITEM::m_PackageList.GetSize()));
    if (name == nullptr) continue;
    DEVICE_ITEM::GetK5PackageName(name);
    DEVICE_ITEM::GetK5ModuleName(name);
  }

  // Both look-ups find every visible definition again.
  for (int id : ids) {
    POSITION kindPos = nullptr, manufPos = nullptr, devicePos = nullptr;
    int index = -1;
    DEVICE_ITEM* device = nullptr;
    DEVICE_KVRXDEF_ITEM* def = nullptr;
    DEVDEF_FUZZ_CHECK(ctrl.FindDeviceItem(id, &kindPos, &manufPos, &devicePos, &index, &device, &def) != 0);
    DEVDEF_FUZZ_CHECK(def != nullptr && static_cast<DWORD>(def->m_DefID) == static_cast<DWORD>(id));
    DEVDEF_FUZZ_CHECK(ctrl.GetDeviceItem(kindPos, manufPos, devicePos) == device);
    int already = 0;
    ctrl.SetSelectedDeviceList(id, already);
    if (def != nullptr) ctrl.FoundDeviceList_addItem(*def);
  }
  for (size_t n = 1; n <= nTree; ++n) {
    POSITION kindPos = nullptr, manufPos = nullptr, devicePos = nullptr;
    int index = -1;
    DEVDEF_FUZZ_CHECK(ctrl.FindDeviceItem(FakeTreeItem(n), kindPos, manufPos, devicePos, &index) != 0);
    DEVICE_ITEM* device = ctrl.GetDeviceItem(kindPos, manufPos, devicePos);
    DEVDEF_FUZZ_CHECK(device != nullptr && device->GetDeviceHTree(index) == FakeTreeItem(n));
  }
  POSITION kindPos = nullptr, manufPos = nullptr, devicePos = nullptr;
  int index = -1;
  DEVDEF_FUZZ_CHECK(ctrl.FindDeviceItem(FakeTreeItem(nTree + 1), kindPos, manufPos, devicePos, &index) == 0);
  DEVICE_KVRXDEF_ITEM byName;
  DEVDEF_FUZZ_CHECK(ctrl.FindDeviceItem(CString("x"), byName) == 0);

  std::vector<int> selected(ids.begin(), ids.begin() + static_cast<std::ptrdiff_t>(std::min<size_t>(ids.size(), 12)));
  ctrl.InitSelectedDeviceList(static_cast<int>(selected.size()), selected.data());
  DEVDEF_FUZZ_CHECK(ctrl.getSelectedDeviceList().GetCount() <= 10);
  ctrl.FoundDeviceList_clear();

  if (pV3 != nullptr) {
    pV3->WriteK4DeviceList();
    std::remove((DevdefFuzzDir() + "k4devicelist.txt").c_str());
  }
  DEVDEF_FUZZ_CHECK(DevdefFuzzWritten(ctrl, false) == before);

  ctrl.RemoveDefLists();
  DEVDEF_FUZZ_CHECK(ctrl.getDeviceList().GetCount() == 0);
  DEVDEF_FUZZ_CHECK(DEVICE_ITEM::m_PackageList.GetSize() == 0);
}
