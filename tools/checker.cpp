#include "tools/checker.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <unordered_map>

#include "tools/catalogue_walk.h"

namespace {

bool IsLineEnd(char c) { return c == '\r' || c == '\n'; }

// The file's bytes with the start of each line; a CR LF pair ends one line.
class LineIndex {
 public:
  explicit LineIndex(std::string bytes) : m_bytes(std::move(bytes)) {
    m_starts.push_back(0);
    for (size_t i = 0; i < m_bytes.size(); ++i) {
      if (m_bytes[i] == '\r' && i + 1 < m_bytes.size() && m_bytes[i + 1] == '\n') ++i;
      if (IsLineEnd(m_bytes[i])) m_starts.push_back(i + 1);
    }
  }
  // The 1-based line that holds (or is ended by) the byte at pos.
  long LineOf(size_t pos) const {
    return static_cast<long>(std::upper_bound(m_starts.begin(), m_starts.end(), pos) - m_starts.begin());
  }
  long LineCount() const { return static_cast<long>(m_starts.size()); }
  // The text of a 1-based line, without its line end.
  std::string Line(long line) const {
    if (line < 1 || line > LineCount()) return std::string();
    const size_t start = m_starts[static_cast<size_t>(line - 1)];
    size_t end = start;
    while (end < m_bytes.size() && !IsLineEnd(m_bytes[end])) ++end;
    return m_bytes.substr(start, end - start);
  }

 private:
  std::string m_bytes;
  std::vector<size_t> m_starts;
};

std::string Trimmed(const std::string& text) {
  const size_t first = text.find_first_not_of(" \t\v\f");
  if (first == std::string::npos) return std::string();
  return text.substr(first, text.find_last_not_of(" \t\v\f") - first + 1);
}

struct DefinitionPlace {
  DEVICE_ITEM* device;
  int index;
  long line;
};

// Watches the readers of Base through their virtual operations.
template <class Base>
class CheckingCtrl : public Base {
 public:
  template <class... Args>
  CheckingCtrl(const LineIndex& lines, std::vector<Finding>& findings, Args... args)
      : Base(args...), m_lines(lines), m_findings(findings) {}

  // What the reading left to check afterwards.
  std::vector<DefinitionPlace> m_definitions;
  std::unordered_map<const DEVICE_ITEM*, long> m_deviceLines;
  std::map<const void*, long> m_kindLines;
  std::map<const void*, long> m_manufLines;

 protected:
  int RDF_ReadListsInfo(POSITION posKind, POSITION posManuf, POSITION posDevice, CString& strToken,
                        unsigned char& cCurrent, int& nLineState) override {
    NoteNewEntries(posKind, posManuf);
    const long line = m_lines.LineOf(this->m_nBufPos);
    const int result = Base::RDF_ReadListsInfo(posKind, posManuf, posDevice, strToken, cCurrent, nLineState);
    if (result != 0 || !strToken.IsEmpty()) CheckListLine(line, result, strToken);
    return result;
  }

  int RDF_ReadKvr3DefLine(POSITION posKind, POSITION posManuf, POSITION posDevice, CString& strToken,
                          unsigned char& cCurrent, int& nLineState) override {
    NoteNewEntries(posKind, posManuf);
    DEVICE_ITEM& device = CList<DEVICE_ITEM, DEVICE_ITEM&>::GetAtPosition(posDevice);
    const long deviceLine = m_lines.LineOf(this->m_nBufPos);
    m_deviceLines[&device] = deviceLine;
    const int housings = device.m_HousingIds.GetSize();
    m_refusedLine = 0;
    const int result = Base::RDF_ReadKvr3DefLine(posKind, posManuf, posDevice, strToken, cCurrent, nLineState);
    if (device.m_HousingIds.GetSize() > housings) {
      Add(deviceLine, "layout7-writer", "the device's DEVICE_HOUSING_LIST numbers are not written back");
    }
    if (result == 0) BlockEnded(deviceLine);
    return result;
  }

  int RDF_ReadKvrXDefLine(POSITION posKind, POSITION posManuf, POSITION posDevice, const CString& strLine) override {
    DEVICE_ITEM& device = CList<DEVICE_ITEM, DEVICE_ITEM&>::GetAtPosition(posDevice);
    const int before = device.m_DefArray.GetSize();
    // The block reader has taken the line and its line end.
    const long line = m_lines.LineOf(this->m_nBufPos - 1);
    const int result = Base::RDF_ReadKvrXDefLine(posKind, posManuf, posDevice, strLine);
    if (result == 0) {
      m_refusedLine = line;
      Add(line, "refused", "definition line refused; the device block ends here");
    } else if (device.m_DefArray.GetSize() == before) {
      // Layout 7 has no short form: its lines accepted without a definition
      // carry one of the dropped keywords.
      if (this->m_nLayout == 7) {
        Add(line, "dropped", "line accepted and dropped: it makes no definition and is not written back");
      } else {
        Add(line, "short-form", "line accepted without a definition: no blank and value behind the adapters");
      }
    } else {
      m_definitions.push_back(DefinitionPlace{&device, before, line});
    }
    return result;
  }

 private:
  void Add(long line, const char* kind, const std::string& message) { m_findings.push_back({line, kind, message}); }

  // Kinds and manufacturers made since the last look get the line they
  // stand on: the nearest line above that can make one.
  void NoteNewEntries(POSITION posKind, POSITION posManuf) {
    const long here = m_lines.LineOf(this->m_nBufPos);
    if (posKind != nullptr && m_kindLines.count(posKind) == 0) {
      m_kindLines[posKind] = FindAbove(here, [](const std::string& text) {
        const size_t colon = text.find(':');
        return colon != std::string::npos && colon > 0 && text[0] != ':' && text[0] != ';' && text[0] != '/';
      });
    }
    if (posManuf != nullptr && m_manufLines.count(posManuf) == 0) {
      m_manufLines[posManuf] = FindAbove(here, [](const std::string& text) { return !text.empty() && text[0] == ':'; });
    }
  }

  template <class Test>
  long FindAbove(long here, Test test) const {
    for (long line = here; line >= 1 && line > here - 1000; --line) {
      if (test(m_lines.Line(line))) return line;
    }
    return here;
  }

  void CheckListLine(long line, int result, const CString& strToken) {
    const std::string text = m_lines.Line(line);
    const bool braces = this->m_nLayout == 7 && (strToken.CompareNoCase("HOUSING_LIST") == 0 ||
                                                 strToken.CompareNoCase("ADAPTER_LIST") == 0);
    if (braces) {
      if (result == 0) {
        Add(line, "list", "header list in braces not read: it needs \"{\", at least one entry with a separator "
                          "behind it, and \"}\"");
      } else {
        Add(line, "layout7-writer", "header list in braces: the layout 7 writer puts it out on one line, which "
                                    "this reader does not read back");
      }
      return;
    }
    if (result == 0) return;
    // A one-line list: the last piece needs a delimiter behind it.
    const size_t last = text.find_last_of(this->m_nLayout == 7 ? " ,;{" : " ,;");
    const std::string rest = last == std::string::npos ? std::string() : Trimmed(text.substr(last + 1));
    if (!rest.empty()) {
      Add(line, "lost-entry", "header list entry '" + rest + "' has no delimiter behind it and is lost");
    }
  }

  // After a failed block: why it failed, and which lines of the block the
  // read loop then took as top-level lines.
  void BlockEnded(long deviceLine) {
    const long failed = m_lines.LineOf(this->m_nBufPos - 1);
    if (this->m_nBufPos >= this->m_nBufSize && m_refusedLine == 0) {
      Add(deviceLine, "cut-off", "the device block is cut off by the end of the file");
      return;
    }
    if (m_refusedLine == 0) {
      Add(failed, "no-block",
          "the block of the device at line " + std::to_string(deviceLine) + " does not open with \"{\"");
    }
    // The next line is dropped, the rest up to the block's "}" is read as
    // top-level lines.
    if (!Trimmed(m_lines.Line(failed + 1)).empty()) {
      Add(failed + 1, "dropped", "skipped unread after the failed line " + std::to_string(failed));
    }
    for (long line = failed + 2; line <= m_lines.LineCount(); ++line) {
      const std::string text = Trimmed(m_lines.Line(line));
      if (text.empty() || text[0] == ';') continue;
      Add(line, "top-level", "read as a top-level line after the failed line " + std::to_string(failed));
      if (text[0] == '}') break;
    }
  }

  const LineIndex& m_lines;
  std::vector<Finding>& m_findings;
  long m_refusedLine = 0;
};

std::string Quoted(const CString& name) { return "'" + std::string(static_cast<LPCTSTR>(name)) + "'"; }

template <class Ctrl>
void CheckCatalogue(Ctrl& ctrl, std::vector<Finding>& findings) {
  auto add = [&findings](long line, const char* kind, const std::string& message) {
    findings.push_back({line, kind, message});
  };
  const char* const blankNote = " holds a blank, which the writer keeps: the name will not read back whole";
  // Names first, each where it stands.
  CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>& kinds = ctrl.getDeviceList();
  for (POSITION k = kinds.GetHeadPosition(); k != nullptr;) {
    const POSITION kindPos = k;
    TAG_KIND_OF_DEVICE& kind = kinds.GetNext(k);
    if (kind.m_Name.Find(' ') >= 0) add(ctrl.m_kindLines[kindPos], "name", "kind name " + Quoted(kind.m_Name) + blankNote);
    if (kind.m_pManufList == nullptr) continue;
    for (POSITION m = kind.m_pManufList->GetHeadPosition(); m != nullptr;) {
      const POSITION manufPos = m;
      TAG_DEVICE_MANUF& manuf = kind.m_pManufList->GetNext(m);
      if (manuf.m_Name.Find(' ') >= 0) {
        add(ctrl.m_manufLines[manufPos], "name", "manufacturer name " + Quoted(manuf.m_Name) + blankNote);
      }
    }
  }
  const int layout = ctrl.getLayout();
  ForEachDevice(ctrl, [&](TAG_KIND_OF_DEVICE&, TAG_DEVICE_MANUF&, DEVICE_ITEM& device) {
    const long line = ctrl.m_deviceLines[&device];
    if (device.m_DeviceName.Find(' ') >= 0) add(line, "name", "device name " + Quoted(device.m_DeviceName) + blankNote);
    if (layout == 7 && device.m_DeviceFlags != 0) {
      add(line, "layout7-writer", "the mark in front of the device name is not written back");
    }
  });

  // Definitions: duplicate ids, numbers without names, what layout 7 loses.
  std::unordered_map<DWORD, long> firstLine;
  for (const DefinitionPlace& place : ctrl.m_definitions) {
    DEVICE_KVRXDEF_ITEM& def = place.device->m_DefArray[place.index];
    const std::string id = std::to_string(def.m_DefID);
    auto seen = firstLine.emplace(def.m_DefID, place.line);
    if (!seen.second) {
      add(seen.first->second, "duplicate-id", "id " + id + " is used again at line " + std::to_string(place.line));
      add(place.line, "duplicate-id", "id " + id + " is already used at line " + std::to_string(seen.first->second));
    }
    for (int i = 0; i < def.m_PackageIds.GetSize(); ++i) {
      if (DEVICE_ITEM::GetPackageName(def.m_PackageIds[i]) == nullptr) {
        add(place.line, "bad-number", "package " + std::to_string(def.m_PackageIds[i]) + " has no name in HOUSING_LIST");
      }
    }
    for (int i = 0; i < def.m_AdapterIds.GetSize(); ++i) {
      if (DEVICE_ITEM::GetAdapterName(def.m_AdapterIds[i]) == nullptr) {
        add(place.line, "bad-number", "adapter " + std::to_string(def.m_AdapterIds[i]) + " has no name in ADAPTER_LIST");
      }
    }
    if (DEVICE_ITEM::GetModulName(static_cast<int>(def.m_ModulId)) == nullptr) {
      add(place.line, "bad-number", "module " + std::to_string(def.m_ModulId) + " has no name in MODUL_LIST");
    }
    if (layout != 7) continue;
    if ((def.m_MarkFlags & ~place.device->m_DeviceFlags) != 0) {
      add(place.line, "layout7-writer", "the mark in front of the definition line is not written back");
    }
    if (def.m_PackageIds.GetSize() > 1) {
      add(place.line, "layout7-writer", "only the first of the package numbers is written back");
    }
    if (def.m_DefValues[10] > 9) {
      add(place.line, "layout7-writer",
          "value 10 (" + std::to_string(def.m_DefValues[10]) +
              ") is written in decimal and read in hexadecimal: it will not read back the same");
    }
  }
}

template <class Base>
class CheckedCtrl : public CheckingCtrl<Base> {
 public:
  using CheckingCtrl<Base>::CheckingCtrl;
  int getLayout() const { return this->m_nLayout; }
};

template <class Base, class... Args>
CheckResult RunCheck(const std::string& path, const LineIndex& lines, int layout, Args... args) {
  CheckResult result;
  result.layout = layout;
  CheckedCtrl<Base> ctrl(lines, result.findings, args...);
  result.read = ctrl.ReadDefFile(path.c_str(), true) != 0;
  if (result.read) CheckCatalogue(ctrl, result.findings);
  std::stable_sort(result.findings.begin(), result.findings.end(),
                   [](const Finding& a, const Finding& b) { return a.line < b.line; });
  return result;
}

}  // namespace

CheckResult CheckDefinitionFile(const std::string& path, const CatalogueOptions& options) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream bytes;
  if (in) bytes << in.rdbuf();
  const LineIndex lines(bytes.str());
  const int layout = options.layout != 0 ? options.layout : SniffLayout(path);
  const int checkIds = options.checkIds ? 1 : 0;
  if (layout == 2) return RunCheck<KCDeviceDefCtrlV2>(path, lines, layout, CString(""), options.generation, checkIds);
  if (layout == 7) {
    return RunCheck<KCDeviceDefCtrlV3>(path, lines, layout, CString(""), options.generation, checkIds,
                                       static_cast<cKvr5CfgContent*>(nullptr));
  }
  return RunCheck<KCDeviceDefCtrl>(path, lines, layout, CString(""), options.generation, checkIds);
}
