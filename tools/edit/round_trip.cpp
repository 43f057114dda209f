#include "tools/edit/round_trip.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif
#include <algorithm>
#include <cstring>
#include <functional>
#include <iterator>
#include <memory>
#include <unordered_set>
#include <utility>

#include "tools/edit/kept_misreadings.h"
#include "tools/edit/read_back.h"

namespace {

std::string Bytes(const CString& text) {
  return std::string(static_cast<LPCTSTR>(text), static_cast<size_t>(text.GetLength()));
}

bool SameBytes(const CString& a, const CString& b) {
  return a.GetLength() == b.GetLength() &&
         std::memcmp(static_cast<LPCTSTR>(a), static_cast<LPCTSTR>(b), static_cast<size_t>(a.GetLength())) == 0;
}

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

// The names of a device's kind, manufacturer and its own, hashed
// (FNV-1a), without making a string of them.
std::uint64_t PathHash(const CString& kind, const CString& manuf, const CString& device) {
  std::uint64_t hash = 14695981039346656037ull;
  for (const CString* name : {&kind, &manuf, &device}) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(static_cast<LPCTSTR>(*name));
    for (int i = 0; i < name->GetLength(); ++i) hash = (hash ^ bytes[i]) * 1099511628211ull;
    hash = (hash ^ 0x100u) * 1099511628211ull;  // ends the name: no byte is 0x100
  }
  return hash;
}

// How a definition's text reads back.
enum class TextBack { kSame, kOneMoreBlank, kOther };

TextBack CompareText(const CString& was, const CString& is) {
  if (Bytes(was) == Bytes(is)) return TextBack::kSame;
  return " " + Bytes(was) == Bytes(is) ? TextBack::kOneMoreBlank : TextBack::kOther;
}

// The first field but the text in which two definitions differ, as "what:
// old -> new", or empty when the written one reads back with them all.
std::string DefinitionDifference(const DEVICE_KVRXDEF_ITEM& was, const DEVICE_KVRXDEF_ITEM& is) {
  if (was.m_DefID != is.m_DefID)
    return "id " + std::to_string(was.m_DefID) + " reads back as " + std::to_string(is.m_DefID);
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

// A loss found while the written file is read back, with its message as
// far as it is known then: the reason that the written file's own findings
// give is added at the end, where no line of the input gives one.
struct PendingLoss {
  ByteSpan span;
  std::string message;
  bool generalReason = false;
};

// What the writer of layout 2 does to every file, when it does: the reason
// for a loss that has none of its own.
const Finding* GeneralReasonOf(const Analysis& input) {
  for (const Finding& finding : input.FindingsOf().List()) {
    if (finding.kind == FindingKind::kLayout2Writer) return &finding;
  }
  return nullptr;
}

bool GivesGeneralReason(const Analysis& input) { return GeneralReasonOf(input) != nullptr; }

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
        // The last of a line's reasons is the one given; its message is
        // made when a loss asks for it.
        const long line = input.Map().PointOf(finding.span.begin).line;
        const std::uint32_t number = static_cast<std::uint32_t>(&finding - input.FindingsOf().List().data());
        if (!m_reasons.empty() && m_reasons.back().first == line) {
          m_reasons.back().second = number;
        } else {
          m_reasons.emplace_back(line, number);
        }
      }
    }
    if (const Finding* general = GeneralReasonOf(input)) m_general = input.MessageOf(*general);
    // What the input's findings say of misreadings is said before any of
    // its definitions are let go of.
    AddKeptMisreadings(input, severity, &m_kept);
    m_compared.assign(input.Devices().size(), false);
  }

  // A device of the read-back, complete. It is compared with the device of
  // the input that it stands for: the n-th device of a kind, manufacturer
  // and name in the read-back stands for the n-th of those names in the
  // input. As long as the read-back has the input's devices in the input's
  // order, that is the next one; from the first that differs on, the rest
  // of the input is looked up by its names. The input device's definitions
  // and housings are let go of once compared.
  void DeviceRead(const TAG_KIND_OF_DEVICE& kind, const TAG_DEVICE_MANUF& manuf, const DEVICE_ITEM& device) {
    std::uint32_t record = kNoRecord;
    if (!m_indexed) {
      if (m_next < m_input.Devices().size() && SamePath(m_next, kind, manuf, device)) {
        record = m_next++;
      } else {
        IndexRest();
      }
    }
    if (m_indexed) {
      record = TakeFromRest(kind, manuf, device);
    }
    // A device of the read-back that the input does not have is not a loss.
    if (record == kNoRecord) return;
    m_compared[record] = true;
    DEVICE_ITEM& was = *m_input.Devices()[record].device;
    CompareDevice(record, device);
    was.m_DefArray.RemoveAll();
    was.m_HousingIds.RemoveAll();
  }

  // What is lost, once the read-back is over: its name lists, and the
  // kinds, manufacturers and devices of the input that it does not have.
  // Every device of the input is let go of here. generalReason gives the
  // reason for a loss that has none of its own (the first place where the
  // written file reads otherwise); it is asked for only when needed.
  Findings Finish(KCDeviceDefCtrl& back, const std::vector<std::string> (&lists)[3],
                  const std::function<std::string()>& generalReason) {
    std::vector<PendingLoss> devices = std::move(m_pending);
    m_pending.clear();
    CompareLists(lists);
    IndexReadBack(back);
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
          if (m_compared[d]) continue;
          const DeviceRecord& place = m_input.Devices()[d];
          Loss(&place.name, "device " + Quoted(place.device->m_DeviceName) + " does not read back");
        }
      }
    }
    // The losses of the lists come first, then those of the devices as the
    // read-back found them; their places differ, and the findings are
    // put in the order of the file, stably.
    m_pending.insert(m_pending.end(), std::make_move_iterator(devices.begin()), std::make_move_iterator(devices.end()));
    ReportTextBlanks();
    ReleaseInput();
    // What only the comparison needed goes before the written file may be
    // analysed.
    m_rest = {};
    m_restSkip = {};
    m_kinds.clear();
    m_manufacturers.clear();
    bool needed = false;
    for (const PendingLoss& loss : m_pending) needed = needed || loss.generalReason;
    if (needed && m_general.empty() && generalReason) m_general = generalReason();
    Findings losses;
    for (PendingLoss& loss : m_pending) {
      if (loss.generalReason && !m_general.empty()) loss.message += " (" + m_general + ")";
      losses[losses.AddText(FindingKind::kWriteLoss, loss.span, std::move(loss.message))].severity = m_severity;
    }
    for (const Finding& kept : m_kept.List()) {
      losses[losses.AddText(FindingKind::kWriteLoss, kept.span, m_kept.Text(kept.says.a))].severity = m_severity;
    }
    losses.Finish();
    return losses;
  }

  // Lets go of the definitions and housings of every device of the input.
  void ReleaseInput() {
    for (const DeviceRecord& device : m_input.Devices()) {
      device.device->m_DefArray.RemoveAll();
      device.device->m_HousingIds.RemoveAll();
    }
  }

 private:
  bool SamePath(std::uint32_t record, const TAG_KIND_OF_DEVICE& kind, const TAG_DEVICE_MANUF& manuf,
                const DEVICE_ITEM& device) const {
    const DeviceRecord& was = m_input.Devices()[record];
    const ManufacturerRecord& wasManuf = m_input.Manufacturers()[was.manufacturer];
    return SameBytes(was.device->m_DeviceName, device.m_DeviceName) &&
           SameBytes(wasManuf.manufacturer->m_Name, manuf.m_Name) &&
           SameBytes(m_input.Kinds()[wasManuf.kind].kind->m_Name, kind.m_Name);
  }

  // The input's devices from the next one on, by the hash of their names,
  // in order.
  void IndexRest() {
    m_indexed = true;
    for (std::uint32_t d = m_next; d < m_input.Devices().size(); ++d) {
      const DeviceRecord& device = m_input.Devices()[d];
      const ManufacturerRecord& manuf = m_input.Manufacturers()[device.manufacturer];
      m_rest.emplace_back(
          PathHash(m_input.Kinds()[manuf.kind].kind->m_Name, manuf.manufacturer->m_Name, device.device->m_DeviceName),
          d);
    }
    std::sort(m_rest.begin(), m_rest.end());
    m_restSkip.assign(m_rest.size(), 0);
  }

  // The first device of the input, not yet compared, with the names of the
  // device of the read-back; kNoRecord when there is none. Those of one
  // hash stand together in the order of the input; the first of them
  // counts how many at their front are compared already.
  std::uint32_t TakeFromRest(const TAG_KIND_OF_DEVICE& kind, const TAG_DEVICE_MANUF& manuf, const DEVICE_ITEM& device) {
    const std::uint64_t hash = PathHash(kind.m_Name, manuf.m_Name, device.m_DeviceName);
    const auto first = std::lower_bound(m_rest.begin(), m_rest.end(), std::make_pair(hash, std::uint32_t{0}));
    if (first == m_rest.end() || first->first != hash) return kNoRecord;
    std::uint32_t& skip = m_restSkip[static_cast<size_t>(first - m_rest.begin())];
    for (auto it = first + skip; it != m_rest.end() && it->first == hash; ++it) {
      if (m_compared[it->second] || !SamePath(it->second, kind, manuf, device)) continue;
      m_compared[it->second] = true;
      while (first + skip != m_rest.end() && (first + skip)->first == hash && m_compared[(first + skip)->second])
        ++skip;
      return it->second;
    }
    return kNoRecord;
  }

  void CompareLists(const std::vector<std::string> (&lists)[3]) {
    static const char* const kKeywords[] = {"HOUSING_LIST", "ADAPTER_LIST", "MODUL_LIST"};
    const CStringArray* back[] = {&DEVICE_ITEM::m_PackageList, &DEVICE_ITEM::m_AdapterList, &DEVICE_ITEM::m_ModulList};
    for (int list = 0; list < 3; ++list) {
      const std::vector<std::string>& was = lists[list];
      const CStringArray& is = *back[list];
      size_t same = 0;
      while (same < was.size() && same < static_cast<size_t>(is.GetSize()) &&
             was[same] == Bytes(is[static_cast<int>(same)])) {
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
      }
    }
  }

  void CompareDevice(std::uint32_t record, const DEVICE_ITEM& back) {
    const DeviceRecord& place = m_input.Devices()[record];
    DEVICE_ITEM& device = *place.device;
    const ByteSpan* name = &place.name;
    if (device.m_DeviceFlags != back.m_DeviceFlags)
      Loss(name, "the mark of the device " + Quoted(device.m_DeviceName) + " does not read back");
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
      const DEVICE_KVRXDEF_ITEM& backDef = back.m_DefArray[i];
      const std::string difference = DefinitionDifference(def, backDef);
      if (!difference.empty()) {
        Loss(at, what + ": " + difference);
        continue;
      }
      switch (CompareText(def.m_DefLine, backDef.m_DefLine)) {
        case TextBack::kSame:
          break;
        case TextBack::kOneMoreBlank:
          // The first in the order of the input, whichever order the
          // read-back met them in.
          if (m_blankCount++ == 0 || place.firstDefinition + static_cast<std::uint32_t>(i) < m_firstBlankRecord) {
            m_firstBlankRecord = place.firstDefinition + static_cast<std::uint32_t>(i);
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
         which +
             " back with one more blank in front: the reader keeps the blank behind the \":\" as the text's "
             "first byte, and the writer puts another in front of it, so each rewrite adds one",
         false);
  }

  // A loss at place, with the reason the input's findings give for its
  // line (or, at the end, the general one) when withReason.
  void Loss(const ByteSpan* place, std::string message, bool withReason = true) {
    PendingLoss loss;
    if (place != nullptr) loss.span = *place;
    if (place != nullptr && withReason) {
      const long line = m_input.Map().PointOf(place->begin).line;
      auto reason = std::lower_bound(m_reasons.begin(), m_reasons.end(), std::make_pair(line, std::uint32_t{0}));
      if (reason != m_reasons.end() && reason->first == line) {
        message += " (" + m_input.MessageOf(m_input.FindingsOf().List()[reason->second]) + ")";
      } else {
        loss.generalReason = true;
      }
    }
    loss.message = std::move(message);
    m_pending.push_back(std::move(loss));
  }

  Analysis& m_input;
  Severity m_severity;
  // The lines of the input with a reason for a loss there (a name the
  // writer does not keep, ...), in order, and the finding that gives it.
  std::vector<std::pair<long, std::uint32_t>> m_reasons;
  std::string m_listReasons[3];
  std::string m_general;
  Findings m_kept;
  std::uint32_t m_blankCount = 0;
  std::uint32_t m_firstBlankRecord = kNoRecord;
  const ByteSpan* m_firstBlank = nullptr;
  std::string m_firstBlankWhat;
  std::vector<bool> m_compared;  // by device record
  std::uint32_t m_next = 0;      // while the read-back keeps the input's order: its next device
  bool m_indexed = false;
  std::vector<std::pair<std::uint64_t, std::uint32_t>> m_rest;  // by hash, then record
  std::vector<std::uint32_t> m_restSkip;
  std::unordered_set<std::string> m_kinds;
  std::unordered_set<std::string> m_manufacturers;
  std::vector<PendingLoss> m_pending;
};

// The pages of what was let go of go back to the system, so that an
// analysis that follows takes their place instead of adding to the peak:
// the freed blocks of a catalogue lie scattered among those still held.
void GiveBackFreedMemory() {
#ifdef __GLIBC__
  ::malloc_trim(0);
#endif
}

// The first error of the written file as its analysis gives it: where it
// first reads otherwise than it was written; empty when it has none.
std::string FirstDifference(const Analysis& back) {
  for (const Finding& finding : back.FindingsOf().List()) {
    if (finding.severity != Severity::kError) continue;
    return "the written file reads differently from its line " +
           std::to_string(back.Map().PointOf(finding.span.begin).line) + " on: " + back.MessageOf(finding);
  }
  return std::string();
}

std::unique_ptr<Analysis> AnalyseWritten(const std::string& writtenPath, int layout) {
  AnalysisOptions options;
  options.layout = layout;
  return Analysis::ReadFile(writtenPath, options);
}

Findings DoesNotReadBack(const std::string& error, Severity severity) {
  Findings losses;
  losses[losses.AddText(FindingKind::kWriteLoss, ByteSpan(), "the written file does not read back: " + error)]
      .severity = severity;
  return losses;
}

// The written file analysed as a whole, and its catalogue compared in the
// order of its walk, which keeps the order of the file for each kind,
// manufacturer and name.
Findings CompareAnalysed(Analysis& input, const std::vector<std::string> (&lists)[3], const std::string& writtenPath,
                         int layout, Severity severity) {
  std::unique_ptr<Analysis> back = AnalyseWritten(writtenPath, layout);
  // Made only now, so that what it holds (the input's line starts among
  // them) does not add to the peak of the written file's read.
  RoundTrip trip(input, severity);
  if (!back->Read()) {
    trip.ReleaseInput();
    return DoesNotReadBack(back->Error(), severity);
  }
  CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>& kinds = back->Controller().getDeviceList();
  for (POSITION k = kinds.GetHeadPosition(); k != nullptr;) {
    const TAG_KIND_OF_DEVICE& kind = kinds.GetNext(k);
    if (kind.m_pManufList == nullptr) continue;
    for (POSITION m = kind.m_pManufList->GetHeadPosition(); m != nullptr;) {
      const TAG_DEVICE_MANUF& manuf = kind.m_pManufList->GetNext(m);
      if (manuf.m_pDeviceList == nullptr) continue;
      for (POSITION d = manuf.m_pDeviceList->GetHeadPosition(); d != nullptr;) {
        trip.DeviceRead(kind, manuf, manuf.m_pDeviceList->GetNext(d));
      }
    }
  }
  return trip.Finish(back->Controller(), lists, [&]() { return FirstDifference(*back); });
}

// The written file read back by a bare controller, compared device by
// device as the read goes on, each device of the input let go of once
// compared: the peak holds about one catalogue, not two.
Findings CompareAsRead(Analysis& input, const std::vector<std::string> (&lists)[3], const std::string& writtenPath,
                       int layout, Severity severity) {
  RoundTrip trip(input, severity);
  bool read = false;
  std::unique_ptr<AnalysisCtrl> back = ReadBack(
      writtenPath, layout,
      [&trip](const TAG_KIND_OF_DEVICE& kind, const TAG_DEVICE_MANUF& manuf, const DEVICE_ITEM& device) {
        trip.DeviceRead(kind, manuf, device);
      },
      &read);
  if (!read) {
    // Why, as the analysis says it: the file is read once more.
    trip.ReleaseInput();
    back.reset();
    return DoesNotReadBack(AnalyseWritten(writtenPath, layout)->Error(), severity);
  }
  // A loss with no reason of its own, in layout 7, takes its reason from an
  // analysis of the written file, made only then, once the read-back and
  // the input's definitions are let go of.
  return trip.Finish(back->Ctrl(), lists, [&]() {
    if (layout != 7) return std::string();
    back.reset();
    GiveBackFreedMemory();
    return FirstDifference(*AnalyseWritten(writtenPath, layout));
  });
}

}  // namespace

Findings RoundTripLosses(Analysis& input, const std::string& writtenPath, int layout, Severity severity) {
  const std::vector<std::string> lists[3] = {ListSnapshot(DEVICE_ITEM::m_PackageList),
                                             ListSnapshot(DEVICE_ITEM::m_AdapterList),
                                             ListSnapshot(DEVICE_ITEM::m_ModulList)};
  // The layout 7 writer puts HOUSING_LIST on one line, which the reader
  // does not take, and its scan for the "{" passes over the lines behind
  // it: where the written file first reads otherwise is the reason for the
  // losses that have none of their own, and that takes the analysis of the
  // written file. When that is all but certain, the written file is read
  // once, analysed; else it is read back bare.
  if (layout == 7 && !GivesGeneralReason(input) && !input.ListNames(0).empty()) {
    return CompareAnalysed(input, lists, writtenPath, layout, severity);
  }
  return CompareAsRead(input, lists, writtenPath, layout, severity);
}
