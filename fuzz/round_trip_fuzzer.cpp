// Round trip of a layout 1 catalogue: what is read from arbitrary bytes is
// written (first), read back and written again (second). The second writing
// equals the first but for one more blank in front of each definition's
// text, the one the reader keeps behind the " : " that ends the numbers.
// The property is for catalogues whose names the file can hold: a name that
// is empty or has a byte other than a letter, a digit or one of "-.+#()" is
// passed over (a blank is spelt "_" in the file but written as a blank,
// which ends a name; ":", braces and comment marks shape the file itself).
#include <cstring>

#include "fuzz/fuzz_support.h"

namespace {

// The lines of a written file, each without its "\r\n".
std::vector<std::string> Lines(const std::string& bytes) {
  std::vector<std::string> lines;
  size_t start = 0;
  while (start < bytes.size()) {
    size_t end = bytes.find("\r\n", start);
    if (end == std::string::npos) end = bytes.size();
    lines.push_back(bytes.substr(start, end - start));
    start = end + 2;
  }
  return lines;
}

// Whether second is first with one blank added in front of the text of a
// definition line: behind the second ':' (the first ends the keyword).
bool OneMoreBlank(const std::string& first, const std::string& second) {
  const size_t keyword = first.find(':');
  if (keyword == std::string::npos) return false;
  const size_t numbers = first.find(" : ", keyword + 1);
  if (numbers == std::string::npos) return false;
  const size_t text = numbers + 3;
  return text < first.size() && second == first.substr(0, text) + " " + first.substr(text);
}

bool Plain(const CString& name) {
  if (name.IsEmpty()) return false;
  for (int i = 0; i < name.GetLength(); ++i) {
    const unsigned char c = static_cast<unsigned char>(name[i]);
    const bool alnum = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    if (!alnum && (c == '\0' || std::strchr("-.+#()", c) == nullptr)) return false;
  }
  return true;
}

// Kinds and manufacturers without devices count too, so the lists are
// walked here rather than device by device.
bool NamesReadBack(KCDeviceDefCtrl& ctrl) {
  CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>& kinds = ctrl.getDeviceList();
  for (POSITION k = kinds.GetHeadPosition(); k != nullptr;) {
    TAG_KIND_OF_DEVICE& kind = kinds.GetNext(k);
    if (!Plain(kind.m_Name)) return false;
    if (kind.m_pManufList == nullptr) continue;
    for (POSITION m = kind.m_pManufList->GetHeadPosition(); m != nullptr;) {
      TAG_DEVICE_MANUF& manuf = kind.m_pManufList->GetNext(m);
      if (!Plain(manuf.m_Name)) return false;
      if (manuf.m_pDeviceList == nullptr) continue;
      for (POSITION d = manuf.m_pDeviceList->GetHeadPosition(); d != nullptr;) {
        if (!Plain(manuf.m_pDeviceList->GetNext(d).m_DeviceName)) return false;
      }
    }
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
  std::string first;
  {
    KCDeviceDefCtrl ctrl(DevdefFuzzDir().c_str(), 5, 0);
    if (ctrl.ReadDefFile(DevdefFuzzInputFile(pData, nSize).c_str(), false) != 1 || !NamesReadBack(ctrl)) {
      ctrl.RemoveDefLists();
      return 0;
    }
    first = DevdefFuzzWritten(ctrl, false);
    ctrl.RemoveDefLists();
  }
  KCDeviceDefCtrl again(DevdefFuzzDir().c_str(), 5, 0);
  const std::string path = DevdefFuzzInputFile(reinterpret_cast<const uint8_t*>(first.data()), first.size());
  DEVDEF_FUZZ_CHECK(again.ReadDefFile(path.c_str(), false) == 1);
  const std::string second = DevdefFuzzWritten(again, false);
  again.RemoveDefLists();

  const std::vector<std::string> firstLines = Lines(first);
  const std::vector<std::string> secondLines = Lines(second);
  DEVDEF_FUZZ_CHECK(firstLines.size() == secondLines.size());
  for (size_t i = 0; i < firstLines.size(); ++i) {
    DEVDEF_FUZZ_CHECK(firstLines[i] == secondLines[i] || OneMoreBlank(firstLines[i], secondLines[i]));
  }
  return 0;
}
