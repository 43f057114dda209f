#include "tests/test_support.h"

#include "devdef/catalogue/catalogue_walk.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace {

std::vector<MessageCapture::Box>& CapturedBoxes() {
  static std::vector<MessageCapture::Box> boxes;
  return boxes;
}

int CaptureBox(const char* pszText, const char* pszCaption, unsigned int nType) {
  CapturedBoxes().push_back({pszText != nullptr ? pszText : "", pszCaption != nullptr ? pszCaption : "(null)", nType});
  return IDOK;
}

}  // namespace

TempFile::TempFile(const std::string& bytes) {
  const char* dir = std::getenv("TMPDIR");
  std::string pattern = std::string(dir != nullptr && *dir != '\0' ? dir : "/tmp") + "/devdef-test-XXXXXX";
  std::vector<char> name(pattern.begin(), pattern.end());
  name.push_back('\0');
  const int fd = ::mkstemp(name.data());
  if (fd < 0) std::abort();
  size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t put = ::write(fd, bytes.data() + done, bytes.size() - done);
    if (put <= 0) std::abort();
    done += static_cast<size_t>(put);
  }
  ::close(fd);
  m_path = name.data();
}

TempFile::~TempFile() { std::remove(m_path.c_str()); }

MessageCapture::MessageCapture() : m_previous(AfxSetMessageBoxHandler(&CaptureBox)) { CapturedBoxes().clear(); }

MessageCapture::~MessageCapture() { AfxSetMessageBoxHandler(m_previous); }

const std::vector<MessageCapture::Box>& MessageCapture::Boxes() const { return CapturedBoxes(); }

int ReadText(KCDeviceDefCtrl& ctrl, const std::string& bytes) {
  TempFile file(bytes);
  return ctrl.ReadDefFile(file.Path(), false);
}

std::string Contents(CMemFile& file) {
  std::string bytes(static_cast<size_t>(file.GetLength()), '\0');
  file.SeekToBegin();
  if (!bytes.empty()) file.Read(&bytes[0], static_cast<UINT>(bytes.size()));
  return bytes;
}

std::string Written(KCDeviceDefCtrl& ctrl, bool convert, int* pResult) {
  CMemFile file;
  CArchive ar(&file, CArchive::store);
  const int result = convert ? ctrl.ConvertDefFileToVersion3(ar) : ctrl.WriteDefFile(ar);
  if (pResult != nullptr) *pResult = result;
  return Contents(file);  // nothing goes through the archive's buffer
}

std::vector<DEVICE_ITEM*> AllDevices(KCDeviceDefCtrl& ctrl) {
  std::vector<DEVICE_ITEM*> devices;
  DevdefWalkDevices(ctrl.getDeviceList(), [&devices](const DevdefDevicePlace& place) {
    devices.push_back(&place.device);
    return false;
  });
  return devices;
}

std::vector<std::string> KindNames(KCDeviceDefCtrl& ctrl) {
  std::vector<std::string> names;
  CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>& kinds = ctrl.getDeviceList();
  for (POSITION k = kinds.GetHeadPosition(); k != nullptr;) names.push_back(static_cast<LPCTSTR>(kinds.GetNext(k).m_Name));
  return names;
}

std::vector<std::string> ManufNames(TAG_KIND_OF_DEVICE& kind) {
  std::vector<std::string> names;
  if (kind.m_pManufList == nullptr) return names;
  for (POSITION m = kind.m_pManufList->GetHeadPosition(); m != nullptr;) {
    names.push_back(static_cast<LPCTSTR>(kind.m_pManufList->GetNext(m).m_Name));
  }
  return names;
}

DEVICE_ITEM* DeviceNamed(KCDeviceDefCtrl& ctrl, const std::string& name) {
  for (DEVICE_ITEM* device : AllDevices(ctrl)) {
    if (name == device->GetDeviceName()) return device;
  }
  return nullptr;
}

std::vector<std::string> Names(const CStringArray& list) {
  std::vector<std::string> names;
  for (int i = 0; i < list.GetSize(); ++i) names.push_back(static_cast<LPCTSTR>(list[i]));
  return names;
}

std::vector<int> Words(const CWordArray& words) {
  std::vector<int> out;
  for (int i = 0; i < words.GetSize(); ++i) out.push_back(words[i]);
  return out;
}
