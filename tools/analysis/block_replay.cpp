// Device blocks: where each block line stands and what became of it.
#include <algorithm>
#include <cstring>
#include <string_view>

#include "tools/analysis/read_replay.h"
#include "tools/text/line_end.h"

namespace {

const char kHousingKeyword[] = "DEVICE_HOUSING_LIST:";

std::string Quoted(DEVICE_ITEM& device) { return "'" + std::string(device.GetDeviceName()) + "'"; }

// Up to 40 bytes of a line, for messages.
std::string Excerpt(std::string text) {
  if (text.size() > 40) text = text.substr(0, 37) + "...";
  return text;
}

}  // namespace

void ReadReplay::BeforeBlock(size_t bufPos, DEVICE_ITEM& device, DEVICE_ITEM* housingTarget) {
  Arrive(Stop::kBlock, bufPos);
  m_device = &device;
  m_housingTarget = housingTarget;
  m_deviceLine = m_lineStart;
  m_blockFrom = bufPos;
  m_definitionCalls.clear();
  m_housingsBefore = housingTarget != nullptr ? housingTarget->m_HousingIds.GetSize() : 0;
  m_housingsTaken = 0;
  DeviceSpans& spans = m_devices[&device];
  spans.name = ByteSpan{m_lineStart, bufPos};

  auto quoted = [&device] { return Quoted(device); };
  const ByteSpan line = Trimmed(m_lineStart, LineEndFrom(m_lineStart));
  m_deviceMisread = true;
  switch (LookOf(m_lineStart)) {
    case Look::kDefinition:
      AddConsequence("misread", line.begin, line.end, "definition line read as a device named " + quoted());
      break;
    case Look::kBlockOpen:
    case Look::kBlockClose:
      AddConsequence("misread", line.begin, line.end, "block line read as a device named " + quoted());
      break;
    case Look::kList:
      AddConsequence("misread", line.begin, line.end,
                     "header list line read as a device named " + quoted() +
                         ": header lists are read only in front of the first kind line");
      break;
    case Look::kVersion:
      AddConsequence("misread", line.begin, line.end, "version line read as a device named " + quoted());
      break;
    case Look::kKind:
      AddConsequence("misread", line.begin, line.end,
                     "kind line read as a device named " + quoted() +
                         ": once a manufacturer is read, a line with a blank in front of its \":\" is a device");
      break;
    default:
      if (bufPos == m_lineStart) {
        AddConsequence("misread", line.begin, line.end,
                       "line opens with a blank: read as a device with an empty name whose block starts on this line");
      } else {
        m_deviceMisread = false;
        m_cause = -1;  // a device line read as it looks ends a cascade
      }
      break;
  }
  if (!m_deviceMisread && !m_manufacturers.empty() && m_manufacturers.back().kind + 1 != m_kinds.size()) {
    const MadeEntry& owner = m_manufacturers.back();
    const MadeEntry& ownerKind = m_kinds[owner.kind];
    const MadeEntry& current = m_kinds.back();
    Add("no-manufacturer", line.begin, line.end,
        "device " + quoted() + " goes to the manufacturer '" + Name(owner.span.begin, owner.span.end) + "' of the kind '" +
            Name(ownerKind.span.begin, ownerKind.span.end) + "' (line " +
            std::to_string(m_map.PointOf(owner.span.begin).line) + "): the kind '" +
            Name(current.span.begin, current.span.end) + "' at line " +
            std::to_string(m_map.PointOf(current.span.begin).line) + " has no manufacturer line");
  }
}

void ReadReplay::AfterDefinitionLine(size_t bufPos, int result, bool added) {
  m_definitionCalls.push_back(DefinitionCall{bufPos - 1, result, added});
}

void ReadReplay::AfterBlock(int result, size_t bufPos, unsigned char current, bool tokenEmpty, int lineState) {
  ReplayBlock(result, bufPos);
  const int housings = m_housingTarget != nullptr ? m_housingTarget->m_HousingIds.GetSize() : 0;
  if (housings - m_housingsBefore != m_housingsTaken) Inconsistent();
  m_pos = bufPos;
  m_current = current;
  m_tokenEmpty = tokenEmpty;
  m_lineState = lineState;
  m_lineFresh = false;
  if (result == 0 && bufPos < m_n) {
    // The loop goes on one byte behind the failed line's end, in a line it
    // counts as taken: the rest of that line is skipped.
    m_dropArmed = true;
    m_dropFrom = IsLineEnd(m_b[bufPos]) ? bufPos + 1 : bufPos;
    m_lineStart = m_dropFrom;
  }
  AfterListStep();
}

namespace {

// Why a definition line is refused, as far as its look tells.
std::string RefusalReason(const unsigned char* text, size_t length, int layout) {
  if (layout == 7 && length > 0 && (text[0] == 0xB0 || text[0] == 0xDF)) {
    ++text;
    --length;
  }
  bool keyword = false;
  for (const char* word : {"KVR3DEF:", "KVR4DEF:", "KVR5DEF:"}) keyword = keyword || (length >= 8 && std::memcmp(text, word, 8) == 0);
  if (!keyword) return "it does not open with KVR3DEF:, KVR4DEF: or KVR5DEF:";
  if (std::memchr(text + 8, ':', length - 8) == nullptr) return "no \":\" closes its number fields";
  return layout == 7 ? "its fifteen number fields are incomplete or hold something that is no number"
                     : "its number fields are incomplete or hold something that is no number";
}

}  // namespace

void ReadReplay::ReplayBlock(int result, size_t bufPos) {
  DeviceSpans& spans = m_devices[m_device];
  // Built when a message needs it: most blocks read without one.
  auto quoted = [this] { return Quoted(*m_device); };
  const long deviceLine = m_map.PointOf(m_deviceLine).line;
  const size_t deviceLineEnd = LineEndFrom(m_deviceLine);
  spans.block = ByteSpan{m_blockFrom, m_blockFrom};
  bool opened = false;
  size_t call = 0;
  size_t at = m_blockFrom;
  int expected = 0;
  size_t expectedPos = m_n;
  for (;;) {
    const size_t lineEnd = LineEndFrom(at);
    if (lineEnd >= m_n) {
      spans.block.end = m_n;
      const ByteSpan name = Trimmed(m_deviceLine, deviceLineEnd);
      const ByteSpan rest = Trimmed(at, m_n);
      std::string message = "the block of the device " + quoted() + " runs to the end of the file";
      message += rest.begin < rest.end ? ": its last line has no line end and is not read"
                                       : opened ? " without its \"}\"" : " and never opens";
      Add("cut-off", name.begin, name.end, message);
      break;
    }
    const unsigned char* semicolon =
        static_cast<const unsigned char*>(std::memchr(m_b + at, ';', lineEnd - at));
    const ByteSpan text = Trimmed(at, semicolon != nullptr ? static_cast<size_t>(semicolon - m_b) : lineEnd);
    at = lineEnd + 1;
    if (text.begin == text.end) continue;
    auto excerpt = [this, &text] { return "'" + Excerpt(Text(text.begin, text.end)) + "'"; };
    if (!opened) {
      if (m_b[text.begin] == '{') {
        opened = true;
        spans.block.begin = text.begin;
        continue;
      }
      spans.block.end = text.end;
      expectedPos = lineEnd + 1;
      if (text.begin < deviceLineEnd) {
        Add("no-block", text.begin, text.end,
            excerpt() + " behind the device name is read as the first line of the block of " + quoted() +
                ", which must open with \"{\": the device gets no definitions");
      } else if (m_deviceMisread && m_cause >= 0) {
        AddConsequence("misread", text.begin, text.end,
                       excerpt() + " read as the first line of the block of the device " + quoted() + " at line " +
                           std::to_string(deviceLine) + ", which must open with \"{\": the line is lost");
        break;
      } else {
        Add("no-block", text.begin, text.end,
            "the block of the device " + quoted() + " at line " + std::to_string(deviceLine) +
                " does not open with \"{\": this line is read in its place and lost, and the device gets no "
                "definitions");
      }
      m_cause = static_cast<long>(m_findings.size() - 1);
      m_causeLine = text.begin;
      break;
    }
    if (m_b[text.begin] == '}') {
      spans.block.end = text.begin + 1;
      expected = 1;
      expectedPos = lineEnd - 1;
      break;
    }
    if (m_layout == 7) {
      const std::string_view line(reinterpret_cast<const char*>(m_b) + text.begin, text.end - text.begin);
      const size_t keyword = line.find(kHousingKeyword);
      if (keyword != std::string_view::npos) {
        ReplayHousingLine(text.begin, text.end, text.begin + keyword);
        continue;
      }
    }
    if (call >= m_definitionCalls.size() || m_definitionCalls[call].lineEnd != lineEnd) {
      Inconsistent();
      break;
    }
    const DefinitionCall& definition = m_definitionCalls[call++];
    if (definition.result == 0) {
      spans.block.end = text.end;
      expectedPos = lineEnd + 1;
      const std::string message = "definition line refused (" +
                                  RefusalReason(m_b + text.begin, text.end - text.begin, m_layout) +
                                  "): the definition is lost and the block of the device " + quoted() + " ends here";
      if (m_deviceMisread && m_cause >= 0) {
        AddConsequence("refused", text.begin, text.end, message);
      } else {
        m_cause = static_cast<long>(Add("refused", text.begin, text.end, message));
        m_causeLine = text.begin;
      }
      break;
    }
    if (definition.added) {
      spans.definitions.push_back(text);
      m_definitionOrder.push_back(DefinitionSpan{m_device, static_cast<int>(spans.definitions.size()) - 1, text});
      if (m_deviceMisread && m_cause >= 0) {
        AddConsequence("misread", text.begin, text.end, "definition read into the device " + quoted());
      }
    } else if (m_layout == 7) {
      Add("ignored-keyword", text.begin, text.end,
          "line of a keyword that the reader accepts and passes over: it makes no definition, and a write does "
          "not keep it");
    } else {
      Add("short-form", text.begin, text.end,
          "definition line accepted without a definition: its number fields end behind the adapters, with no "
          "blank and value behind them");
    }
  }
  if (result != expected || bufPos != expectedPos || call != m_definitionCalls.size()) Inconsistent();
}

void ReadReplay::ReplayHousingLine(size_t first, size_t last, size_t keyword) {
  const BraceScan scan = ScanBraces(keyword + sizeof kHousingKeyword - 1, last);
  for (const ByteSpan& lost : scan.lost) {
    Add("housing", lost.begin, lost.end,
        "housing entry '" + Text(lost.begin, lost.end) + "' is lost: it needs a blank, tab or \",\" behind it");
  }
  if (!scan.Read()) {
    Add("housing", first, last, "housing list not read: " + BraceProblem(scan) + " on this line; the line counts for nothing");
    return;
  }
  int taken = 0;
  for (const ByteSpan& entry : scan.entries) {
    int number = 0;
    if (DevdefScanDecimal(Text(entry.begin, entry.end).c_str(), &number) != 1) {
      Add("housing", entry.begin, scan.entries.back().end,
          "housing entry '" + Text(entry.begin, entry.end) + "' is no number: it and the entries behind it are lost");
      break;
    }
    ++taken;
  }
  if (taken > 0 && m_housingTarget == nullptr) {
    Add("housing", first, last,
        "housing numbers lost: the device's kind has no manufacturer line, so the reader finds no device to give "
        "them to");
    return;
  }
  m_housingsTaken += taken;
  if (taken > 0) {
    Add("layout7-writer", first, last,
        "the device's housing numbers are not written back: no writer puts out DEVICE_HOUSING_LIST");
  }
}
