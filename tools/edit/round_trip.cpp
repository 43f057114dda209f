#include "tools/edit/round_trip.h"

#include <cstring>
#include <deque>
#include <unordered_map>
#include <unordered_set>

#include "tools/edit/kept_misreadings.h"

namespace {

std::string Bytes(const CString& text) { return std::string(static_cast<LPCTSTR>(text), static_cast<size_t>(text.GetLength())); }

std::string Quoted(const CString& text) { return "'" + Bytes(text) + "'"; }

// The names of a header list, taken before another read empties the lists.
std::vector<std::string> ListSnapshot(const CStringArray& list) {
  std::vector<std::string> names;
  names.reserve(static_cast<size_t>(list.GetSize()));
  for (int i = 0; i < list.GetSize(); ++i) names.push_back(Bytes(list[i]));
  return names;
}

std::string Numbers(const CWordArray& numbers) {
  std::string text;
  for (int i = 0; i < numbers.GetSize(); ++i) text += (i > 0 ? "," : "") + std::to_string(numbers[i]);
  return text.empty() ? "none" : text;
}

std::string Path(const CString& kind, const CString& manuf, const CString& device) {
  return Bytes(kind) + '\0' + Bytes(manuf) + '\0' + Bytes(device);
}

// How a definition's text reads back.
enum class TextBack { kSame, kOneMoreBlank, kOther };

TextBack CompareText(const CString& was, const CString& is) {
  if (Bytes(was) == Bytes(is)) return TextBack::kSame;
  return " " + Bytes(was) == Bytes(is) ? TextBack::kOneMoreBlank : TextBack::kOther;
}

// The first field but the text in which two definitions differ, as "what:
// old -> new", or empty when the written one reads back with them all.
std::string DefinitionDifference(DEVICE_KVRXDEF_ITEM& was, DEVICE_KVRXDEF_ITEM& is) {
  if (was.m_DefID != is.m_DefID) return "id " + std::to_string(was.m_DefID) + " reads back as " + std::to_string(is.m_DefID);
  if (was.m_KvrType != is.m_KvrType) {
    return "generation " + std::to_string(was.m_KvrType) + " reads back as " + std::to_string(is.m_KvrType);
  }
  if (was.m_MarkFlags != is.m_MarkFlags) return "its mark does not read back";
  if (Numbers(was.m_PackageIds) != Numbers(is.m_PackageIds)) {
    return "packages " + Numbers(was.m_PackageIds) + " read back as " + Numbers(is.m_PackageIds);
  }
  if (was.m_ModulId != is.m_ModulId) {
    return "module " + std::to_string(was.m_ModulId) + " reads back as " + std::to_string(is.m_ModulId);
  }
  if (Numbers(was.m_AdapterIds) != Numbers(is.m_AdapterIds)) {
    return "adapters " + Numbers(was.m_AdapterIds) + " read back as " + Numbers(is.m_AdapterIds);
  }
  for (int i = 0; i < 11; ++i) {
    if (was.m_DefValues[i] != is.m_DefValues[i]) {
      return "value " + std::to_string(i) + " (" + std::to_string(was.m_DefValues[i]) + ") reads back as " +
             std::to_string(is.m_DefValues[i]);
    }
  }
  return std::string();
}

class RoundTrip {
 public:
  RoundTrip(Analysis& input, Severity severity) : m_input(input), m_severity(severity) {
    for (const Finding& finding : input.FindingsOf().List()) {
      const FindingKind kind = finding.kind;
      if (finding.says.form == MessageForm::kListInBraces) {
        // A list's own reason, said for that list alone.
        if (finding.says.a < 3) m_listReasons[finding.says.a] = input.MessageOf(finding);
      } else if (kind == FindingKind::kName || kind == FindingKind::kLayout7Writer ||
                 kind == FindingKind::kIgnoredKeyword) {
        m_reasons.emplace(input.Map().PointOf(finding.span.begin).line, input.MessageOf(finding));
      }
      // What the writer of layout 2 does to every file: the reason for a
      // loss that has none of its own.
      if (m_general.empty() && kind == FindingKind::kLayout2Writer) m_general = input.MessageOf(finding);
    }
  }

  Findings Compare(Analysis& back, const std::vector<std::string> (&lists)[3]) {
    // The layout 7 writer puts HOUSING_LIST on one line, which the reader
    // does not take, and its scan for the "{" passes over the lines behind
    // it: where the written file first reads otherwise is the reason for a
    // loss that has none of its own.
    if (m_general.empty() && back.Layout() == 7) {
      for (const Finding& finding : back.FindingsOf().List()) {
        if (finding.severity != Severity::kError) continue;
        m_general = "the written file reads differently from its line " +
                    std::to_string(back.Map().PointOf(finding.span.begin).line) + " on: " + back.MessageOf(finding);
        break;
      }
    }
    CompareLists(lists);
    IndexReadBack(back.Controller());
    for (const KindRecord& kind : m_input.Kinds()) {
      if (m_kinds.count(Bytes(kind.kind->m_Name)) == 0) {
        Loss(&kind.name, "kind " + Quoted(kind.kind->m_Name) + " and all under it do not read back");
        continue;
      }
      for (std::uint32_t m = kind.firstManufacturer; m < kind.firstManufacturer + kind.manufacturerCount; ++m) {
        const ManufacturerRecord& manuf = m_input.Manufacturers()[m];
        if (m_manufacturers.count(Bytes(kind.kind->m_Name) + '\0' + Bytes(manuf.manufacturer->m_Name)) == 0) {
          Loss(&manuf.name, "manufacturer " + Quoted(manuf.manufacturer->m_Name) +
                                " and its devices do not read back under the kind " + Quoted(kind.kind->m_Name));
          continue;
        }
        for (std::uint32_t d = manuf.firstDevice; d < manuf.firstDevice + manuf.deviceCount; ++d) {
          CompareDevice(*kind.kind, *manuf.manufacturer, d);
        }
      }
    }
    ReportTextBlanks();
    AddKeptMisreadings(m_input, m_severity, &m_losses);
    m_losses.Finish();
    return std::move(m_losses);
  }

 private:
  void CompareLists(const std::vector<std::string> (&lists)[3]) {
    static const char* const kKeywords[] = {"HOUSING_LIST", "ADAPTER_LIST", "MODUL_LIST"};
    const CStringArray* back[] = {&DEVICE_ITEM::m_PackageList, &DEVICE_ITEM::m_AdapterList, &DEVICE_ITEM::m_ModulList};
    for (int list = 0; list < 3; ++list) {
      const std::vector<std::string>& was = lists[list];
      const CStringArray& is = *back[list];
      size_t same = 0;
      while (same < was.size() && same < static_cast<size_t>(is.GetSize()) && was[same] == Bytes(is[static_cast<int>(same)])) {
        ++same;
      }
      if (same == was.size() && was.size() == static_cast<size_t>(is.GetSize())) continue;
      const std::vector<ByteSpan>& places = m_input.ListEntries(list);
      const ByteSpan* place = same < places.size() ? &places[same] : places.empty() ? nullptr : &places.back();
      const std::string keyword = kKeywords[list];
      std::string loss;
      if (is.GetSize() == 0) {
        loss = keyword + " does not read back: its " + std::to_string(was.size()) + " entries are lost";
      } else if (same == static_cast<size_t>(is.GetSize())) {
        loss = keyword + " reads back without its entries from '" + was[same] + "' on";
      } else {
        loss = keyword + " reads back with " + std::to_string(is.GetSize()) + " entries where it has " +
               std::to_string(was.size()) + "; from entry " + std::to_string(same) +
               (same < was.size() ? " '" + was[same] + "'" : std::string()) + " on, its numbers name other entries";
      }
      // A list is lost for its own reason where it has one, never for
      // another list's.
      const std::string& own = m_listReasons[list];
      if (!own.empty()) {
        Loss(place, loss + " (" + own + ")", false);
      } else {
        Loss(place, loss);
      }
    }
  }

  void IndexReadBack(KCDeviceDefCtrl& back) {
    CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>& kinds = back.getDeviceList();
    for (POSITION k = kinds.GetHeadPosition(); k != nullptr;) {
      TAG_KIND_OF_DEVICE& kind = kinds.GetNext(k);
      m_kinds.insert(Bytes(kind.m_Name));
      if (kind.m_pManufList == nullptr) continue;
      for (POSITION m = kind.m_pManufList->GetHeadPosition(); m != nullptr;) {
        TAG_DEVICE_MANUF& manuf = kind.m_pManufList->GetNext(m);
        m_manufacturers.insert(Bytes(kind.m_Name) + '\0' + Bytes(manuf.m_Name));
        if (manuf.m_pDeviceList == nullptr) continue;
        for (POSITION d = manuf.m_pDeviceList->GetHeadPosition(); d != nullptr;) {
          DEVICE_ITEM& device = manuf.m_pDeviceList->GetNext(d);
          m_devices[Path(kind.m_Name, manuf.m_Name, device.m_DeviceName)].push_back(&device);
        }
      }
    }
  }

  void CompareDevice(TAG_KIND_OF_DEVICE& kind, TAG_DEVICE_MANUF& manuf, std::uint32_t record) {
    const DeviceRecord& place = m_input.Devices()[record];
    DEVICE_ITEM& device = *place.device;
    const ByteSpan* name = &place.name;
    std::deque<DEVICE_ITEM*>& candidates = m_devices[Path(kind.m_Name, manuf.m_Name, device.m_DeviceName)];
    if (candidates.empty()) {
      Loss(name, "device " + Quoted(device.m_DeviceName) + " does not read back");
      return;
    }
    DEVICE_ITEM& back = *candidates.front();
    candidates.pop_front();
    if (device.m_DeviceFlags != back.m_DeviceFlags) Loss(name, "the mark of the device " + Quoted(device.m_DeviceName) + " does not read back");
    if (Numbers(device.m_HousingIds) != Numbers(back.m_HousingIds)) {
      Loss(name, "the housings " + Numbers(device.m_HousingIds) + " of the device " + Quoted(device.m_DeviceName) +
                     " read back as " + Numbers(back.m_HousingIds));
    }
    const int count = device.m_DefArray.GetSize();
    for (int i = 0; i < count; ++i) {
      const ByteSpan* at = &m_input.Definitions()[place.firstDefinition + static_cast<std::uint32_t>(i)].line;
      DEVICE_KVRXDEF_ITEM& def = device.m_DefArray[i];
      const std::string what = "definition " + std::to_string(def.m_DefID) + " of " + Quoted(device.m_DeviceName);
      if (i >= back.m_DefArray.GetSize()) {
        Loss(at, what + " does not read back");
        continue;
      }
      DEVICE_KVRXDEF_ITEM& backDef = back.m_DefArray[i];
      const std::string difference = DefinitionDifference(def, backDef);
      if (!difference.empty()) {
        Loss(at, what + ": " + difference);
        continue;
      }
      switch (CompareText(def.m_DefLine, backDef.m_DefLine)) {
        case TextBack::kSame:
          break;
        case TextBack::kOneMoreBlank:
          if (m_blankCount++ == 0) {
            m_firstBlank = at;
            m_firstBlankWhat = what;
          }
          break;
        case TextBack::kOther:
          Loss(at, what + ": its text " + Quoted(def.m_DefLine) + " reads back as " + Quoted(backDef.m_DefLine));
          break;
      }
    }
    if (back.m_DefArray.GetSize() > count) {
      Loss(name, "the device " + Quoted(device.m_DeviceName) + " reads back with " +
                     std::to_string(back.m_DefArray.GetSize() - count) + " more definitions");
    }
  }

  // The texts that read back with one more blank in front, said once at
  // the first of them: every definition that reads back has it.
  void ReportTextBlanks() {
    if (m_blankCount == 0) return;
    const std::string which = m_blankCount == 1 ? "the text of " + m_firstBlankWhat + " reads"
                                                : "the texts of " + std::to_string(m_blankCount) +
                                                      " definitions, from " + m_firstBlankWhat + " on, read";
    Loss(m_firstBlank,
         which + " back with one more blank in front: the reader keeps the blank behind the \":\" as the text's "
                 "first byte, and the writer puts another in front of it, so each rewrite adds one",
         false);
  }

  // A loss at place, with the reason the input's findings give for its
  // line (or the layout's) when withReason.
  void Loss(const ByteSpan* place, std::string message, bool withReason = true) {
    ByteSpan span;
    if (place != nullptr) span = *place;
    if (place != nullptr && withReason) {
      auto reason = m_reasons.find(m_input.Map().PointOf(place->begin).line);
      if (reason != m_reasons.end()) {
        message += " (" + reason->second + ")";
      } else if (!m_general.empty()) {
        message += " (" + m_general + ")";
      }
    }
    m_losses[m_losses.AddText(FindingKind::kWriteLoss, span, std::move(message))].severity = m_severity;
  }

  Analysis& m_input;
  Severity m_severity;
  std::unordered_multimap<long, std::string> m_reasons;
  std::string m_listReasons[3];
  std::string m_general;
  std::uint32_t m_blankCount = 0;
  const ByteSpan* m_firstBlank = nullptr;
  std::string m_firstBlankWhat;
  std::unordered_set<std::string> m_kinds;
  std::unordered_set<std::string> m_manufacturers;
  std::unordered_map<std::string, std::deque<DEVICE_ITEM*>> m_devices;
  Findings m_losses;
};

}  // namespace

Findings RoundTripLosses(Analysis& input, const std::string& writtenPath, int layout, Severity severity) {
  const std::vector<std::string> lists[3] = {ListSnapshot(DEVICE_ITEM::m_PackageList),
                                             ListSnapshot(DEVICE_ITEM::m_AdapterList),
                                             ListSnapshot(DEVICE_ITEM::m_ModulList)};
  AnalysisOptions options;
  options.layout = layout;
  std::unique_ptr<Analysis> back = Analysis::ReadFile(writtenPath, options);
  RoundTrip trip(input, severity);
  if (!back->Read()) {
    Findings losses;
    losses[losses.AddText(FindingKind::kWriteLoss, ByteSpan(), "the written file does not read back: " + back->Error())]
        .severity = severity;
    return losses;
  }
  return trip.Compare(*back, lists);
}
