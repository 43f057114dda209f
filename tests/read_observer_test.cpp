// The reader's reports to an observer: watching a read changes nothing it
// makes, and every report agrees with the catalogue and with the bytes it
// names, for every golden file and example.
#include <gtest/gtest.h>

#include <dirent.h>

#include <algorithm>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "devdef/platform/number_scan.h"
#include "devdef/reader/read_observer.h"
#include "tests/test_support.h"

namespace {

std::string Bytes(const CString& text) { return std::string(text, static_cast<size_t>(text.GetLength())); }

// The catalogue and the name lists as text: what a read made.
std::string Dump(KCDeviceDefCtrl& ctrl) {
  std::ostringstream out;
  for (const CStringArray* list : {&DEVICE_ITEM::m_PackageList, &DEVICE_ITEM::m_AdapterList, &DEVICE_ITEM::m_ModulList}) {
    for (int i = 0; i < list->GetSize(); ++i) out << "list " << Bytes((*list)[i]) << '\n';
  }
  CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>& kinds = ctrl.getDeviceList();
  for (POSITION k = kinds.GetHeadPosition(); k != nullptr;) {
    TAG_KIND_OF_DEVICE& kind = kinds.GetNext(k);
    out << "kind " << Bytes(kind.m_Name) << '\n';
    if (kind.m_pManufList == nullptr) continue;
    for (POSITION m = kind.m_pManufList->GetHeadPosition(); m != nullptr;) {
      TAG_DEVICE_MANUF& manuf = kind.m_pManufList->GetNext(m);
      out << " manufacturer " << Bytes(manuf.m_Name) << '\n';
      if (manuf.m_pDeviceList == nullptr) continue;
      for (POSITION d = manuf.m_pDeviceList->GetHeadPosition(); d != nullptr;) {
        DEVICE_ITEM& device = manuf.m_pDeviceList->GetNext(d);
        out << "  device " << Bytes(device.m_DeviceName) << ' ' << device.m_DeviceFlags << " housings";
        for (int i = 0; i < device.m_HousingIds.GetSize(); ++i) out << ' ' << device.m_HousingIds[i];
        out << '\n';
        for (int i = 0; i < device.m_DefArray.GetSize(); ++i) {
          DEVICE_KVRXDEF_ITEM& def = device.m_DefArray[i];
          out << "   " << def.m_DefID << ' ' << int(def.m_KvrType) << ' ' << def.m_MarkFlags << ' ' << def.m_ModulId;
          for (int p = 0; p < def.m_PackageIds.GetSize(); ++p) out << " p" << def.m_PackageIds[p];
          for (int a = 0; a < def.m_AdapterIds.GetSize(); ++a) out << " a" << def.m_AdapterIds[a];
          for (DWORD value : def.m_DefValues) out << ' ' << value;
          out << " :" << Bytes(def.m_DefLine) << '\n';
        }
      }
    }
  }
  return out.str();
}

// What a read reported, checked against the bytes as each report comes.
class Recorder : public DevdefReadObserver {
 public:
  explicit Recorder(bool fields) { m_bFields = fields; }
  void BeginRead(const BYTE* pBuffer, DWORD nSize) override {
    bytes.assign(reinterpret_cast<const char*>(pBuffer), nSize);
  }
  void EndRead(CByteArray& buffer) override { ended = buffer.GetSize() == static_cast<int>(bytes.size()); }
  void Kind(DWORD nBegin, DWORD nColon, POSITION posKind) override {
    EXPECT_EQ(bytes[nColon], ':');
    const std::string name = Bytes(CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>::GetAtPosition(posKind).m_Name);
    // A list in braces read in between keeps its keyword in the name and
    // takes the bytes up to its "}".
    if (name.compare(0, 13, "HOUSING LIST ") == 0 || name.compare(0, 13, "ADAPTER LIST ") == 0) return;
    names.push_back(Name(nBegin, nColon) + " = " + name);
  }
  void Manufacturer(DWORD nColon, DWORD nEnd, POSITION posManuf) override {
    if (posManuf == nullptr) return;
    names.push_back(Name(nColon + 1, nEnd) + " = " +
                    Bytes(CList<TAG_DEVICE_MANUF, TAG_DEVICE_MANUF&>::GetAtPosition(posManuf).m_Name));
  }
  void Device(DWORD nBegin, DWORD nEnd, POSITION, POSITION posDevice) override {
    DEVICE_ITEM& device = CList<DEVICE_ITEM, DEVICE_ITEM&>::GetAtPosition(posDevice);
    std::string name = Name(nBegin, nEnd);
    if (device.m_DeviceFlags != 0) name.erase(0, 1);
    names.push_back(name + " = " + Bytes(device.m_DeviceName));
    current = &device;
  }
  void ListEntry(int nList, DWORD nBegin, DWORD nEnd, bool bStored) override {
    if (bStored && nList != kDevdefDeviceHousingList) entries.push_back(bytes.substr(nBegin, nEnd - nBegin));
  }
  void BlockLine(DWORD nFirst, DWORD nLast, DWORD, int nStep) override {
    if (nStep == kDevdefBlockLine) line = bytes.substr(nFirst, nLast - nFirst);
  }
  void DefinitionField(int nField, int nIndex, int nBegin, int nEnd, bool bHex, DWORD nValue) override {
    // The bytes reported read, in the radix reported, as what was stored.
    const std::string number = line.substr(static_cast<size_t>(nBegin), static_cast<size_t>(nEnd - nBegin));
    unsigned int value = 0;
    const char* end = DevdefScanNumber(number.c_str(), bHex, &value, nullptr);
    ASSERT_NE(end, nullptr) << number;
    EXPECT_EQ(end, number.c_str() + number.size()) << number;
    fields.push_back(std::to_string(nField) + "." + std::to_string(nIndex) + "=" + std::to_string(nValue));
    if (nField == kDevdefFieldPackage || nField == kDevdefFieldAdapter) value &= 0xFFFF;
    EXPECT_EQ(value, nValue) << number;
  }
  void DefinitionKeyword(int nBegin) override { keyword = nBegin; }
  void DefinitionLine(int nVerdict, int, int, int nHead) override {
    if (nVerdict != kDevdefLineAdded) {
      fields.clear();
      keyword = -1;
      return;
    }
    DEVICE_KVRXDEF_ITEM& def = current->m_DefArray[current->m_DefArray.GetSize() - 1];
    // The keyword, behind a mark byte where the line has one, names the
    // definition's generation.
    if (m_bFields) {
      ASSERT_TRUE(keyword == 0 || (keyword == 1 && (static_cast<unsigned char>(line[0]) == 0xB0 ||
                                                    static_cast<unsigned char>(line[0]) == 0xDF)))
          << line;
      EXPECT_EQ(line.substr(static_cast<size_t>(keyword), 8), "KVR" + std::to_string(def.m_KvrType) + "DEF:") << line;
    }
    keyword = -1;
    // The id stands where the number fields start.
    unsigned int id = 0;
    ASSERT_NE(DevdefScanNumber(line.c_str() + nHead, false, &id, nullptr), nullptr);
    EXPECT_EQ(id, def.m_DefID) << line;
    if (m_bFields) {
      EXPECT_EQ(Fields(def), Joined(fields)) << line;
    }
    fields.clear();
  }

  std::string bytes;
  int keyword = -1;  // where the keyword of the definition line being read stands
  bool ended = false;
  std::vector<std::string> names;
  std::vector<std::string> entries;

 private:
  // Bytes as the reader makes a name of them: "_" read as a blank.
  std::string Name(DWORD begin, DWORD end) const {
    std::string name = bytes.substr(begin, end - begin);
    for (char& c : name) {
      if (c == '_') c = ' ';
    }
    return name;
  }
  static std::string Joined(const std::vector<std::string>& parts) {
    std::string text;
    for (const std::string& part : parts) text += part + " ";
    return text;
  }
  // The fields a definition holds, in the order a line gives them.
  std::string Fields(DEVICE_KVRXDEF_ITEM& def) const {
    std::vector<std::string> parts{"0.0=" + std::to_string(def.m_DefID)};
    for (int i = 0; i < def.m_PackageIds.GetSize(); ++i) parts.push_back("1." + std::to_string(i) + "=" + std::to_string(def.m_PackageIds[i]));
    parts.push_back("2.0=" + std::to_string(def.m_ModulId));
    for (int i = 0; i < def.m_AdapterIds.GetSize(); ++i) parts.push_back("3." + std::to_string(i) + "=" + std::to_string(def.m_AdapterIds[i]));
    // The values a line of this many fields gives: one, three or eleven.
    const size_t values = fields.size() - parts.size();
    const int first = values == 1 ? 2 : 0;
    for (size_t i = 0; i < values; ++i) {
      parts.push_back("4." + std::to_string(first + static_cast<int>(i)) + "=" + std::to_string(def.m_DefValues[first + i]));
    }
    return Joined(parts);
  }

  std::string line;
  DEVICE_ITEM* current = nullptr;
  std::vector<std::string> fields;
};

std::unique_ptr<KCDeviceDefCtrl> Controller(int layout) {
  if (layout == 2) return std::make_unique<KCDeviceDefCtrlV2>("", 5, 0);
  if (layout == 7) return std::make_unique<KCDeviceDefCtrlV3>("", 5, 0, nullptr);
  return std::make_unique<KCDeviceDefCtrl>("", 5, 0);
}

std::vector<std::string> DefinitionFiles() {
  std::vector<std::string> files;
  for (const char* dir : {DEVDEF_SOURCE_DIR "/tests/golden", DEVDEF_SOURCE_DIR "/examples"}) {
    DIR* listing = opendir(dir);
    if (listing == nullptr) continue;
    while (dirent* entry = readdir(listing)) {
      const std::string name = entry->d_name;
      if (name.size() > 4 && name.compare(name.size() - 4, 4, ".def") == 0) files.push_back(std::string(dir) + "/" + name);
    }
    closedir(listing);
  }
  return files;
}

TEST(ReadObserver, ReportsAgreeWithTheCatalogueAndChangeNothing) {
  MessageCapture quiet;
  const std::vector<std::string> files = DefinitionFiles();
  ASSERT_GT(files.size(), 40u);
  for (const std::string& file : files) {
    for (int layout : {1, 2, 7}) {
      std::unique_ptr<KCDeviceDefCtrl> plain = Controller(layout);
      const int result = plain->ReadDefFile(file.c_str(), false);
      const std::string unwatched = Dump(*plain);
      plain.reset();
      for (bool fields : {false, true}) {
        SCOPED_TRACE(file + " as layout " + std::to_string(layout) + (fields ? " with fields" : ""));
        std::unique_ptr<KCDeviceDefCtrl> watched = Controller(layout);
        Recorder recorder(fields);
        {
          DevdefReadObserverScope scope(&recorder);
          EXPECT_EQ(watched->ReadDefFile(file.c_str(), false), result);
        }
        EXPECT_EQ(Dump(*watched), unwatched);
        if (result == 1) {
          EXPECT_TRUE(recorder.ended);
        }
        for (const std::string& names : recorder.names) {
          const size_t at = names.find(" = ");
          EXPECT_EQ(names.substr(0, at), names.substr(at + 3));
        }
        // Every stored entry was reported, in the order of the lists.
        std::vector<std::string> stored;
        for (const CStringArray* list :
             {&DEVICE_ITEM::m_PackageList, &DEVICE_ITEM::m_AdapterList, &DEVICE_ITEM::m_ModulList}) {
          for (int i = 0; i < list->GetSize(); ++i) stored.push_back(Bytes((*list)[i]));
        }
        std::vector<std::string> reported = recorder.entries;
        std::sort(stored.begin(), stored.end());
        std::sort(reported.begin(), reported.end());
        EXPECT_EQ(reported, stored);
      }
    }
  }
}

TEST(ReadObserver, NoneAfterItsScope) {
  Recorder recorder(false);
  { DevdefReadObserverScope scope(&recorder); }
  EXPECT_EQ(DevdefActiveReadObserver(), nullptr);
  TestCtrl ctrl("", 5, 0);
  EXPECT_EQ(ReadText(ctrl, "DEF_LAYOUT_VERSION = 1\nKind:\n:Maker\nDev\n{\nKVR5DEF: 1 0 0 0 0 : x\n}\n"), 1);
  EXPECT_TRUE(recorder.names.empty());
}

}  // namespace
