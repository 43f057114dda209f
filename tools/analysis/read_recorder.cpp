#include "tools/analysis/read_recorder.h"

#include <cstring>
#include <utility>

#include "tools/analysis/number_look.h"
#include "tools/text/line_end.h"

namespace {

MessageArgs Quoting(MessageForm form, ByteSpan quoted, std::uint32_t a = 0) { return Says(form, a, 0, 0, quoted); }

}  // namespace

// ---------------------------------------------------------------------------
// The read and its lines

void ReadRecorder::BeginRead(const BYTE* pBuffer, DWORD nSize) {
  m_b = pBuffer;
  m_n = nSize;
  // Room for a file of short lines, so that the records rarely move while
  // they grow: room that is not written takes no memory.
  m_r.definitions.reserve(nSize / 48);
  m_r.devices.reserve(nSize / 256);
  m_looks = LineLooks(std::string_view(reinterpret_cast<const char*>(pBuffer), nSize), m_layout);
}

void ReadRecorder::EndRead(CByteArray& buffer) {
  // The last line, which no line end closed.
  if (m_dropArmed || m_lineStart < m_n) EndLine(m_n, true);
  // The reader lets go of its buffer now: the analysis keeps it.
  m_r.bytes = std::make_unique<CByteArray>(std::move(buffer));
  m_b = m_r.bytes->GetData();
}

void ReadRecorder::LineEnd(DWORD nPos, int /*nLineState*/) {
  if (m_progress != nullptr) m_progress->store(nPos, std::memory_order_relaxed);
  EndLine(nPos, false);
  m_lineStart = nPos + 1;
  m_lineFresh = true;
  m_lineMade = false;
}

void ReadRecorder::EndLine(std::uint32_t end, bool lastLine) {
  if (m_dropArmed) {
    m_dropArmed = false;
    const ByteSpan dropped = m_looks.Trimmed(m_dropFrom, end);
    if (dropped.begin < dropped.end) AddConsequence(FindingKind::kDropped, dropped, Says(MessageForm::kDropped));
    return;
  }
  if (!m_lineFresh || m_lineMade || m_lineStart >= end) return;
  const ByteSpan line = m_looks.Trimmed(m_lineStart, end);
  if (line.begin == line.end) return;
  const LineLook look = m_looks.Of(m_lineStart);
  if (look == LineLook::kBlank || look == LineLook::kComment || look == LineLook::kQuote) return;
  if (lastLine && m_r.versionTaken) {
    Add(FindingKind::kNoLineEnd, line, Says(MessageForm::kNoLineEnd));
    return;
  }
  switch (look) {
    case LineLook::kVersion:
      Add(FindingKind::kVersion, line, Says(MessageForm::kSecondVersion, m_r.version.begin));
      return;
    case LineLook::kManufacturer:
      AddConsequence(FindingKind::kIgnored, line, Says(MessageForm::kManufacturerBeforeKind));
      return;
    case LineLook::kList:
      if (!m_haveKind) {
        Add(FindingKind::kList, line, Says(MessageForm::kListNoDelimiter));
      } else {
        AddConsequence(FindingKind::kIgnored, line, Says(MessageForm::kListAfterKind));
      }
      return;
    case LineLook::kKind:
      return;
    default:
      break;
  }
  const std::uint32_t why = !m_haveKind ? 0 : !m_haveManuf ? 1 : 2;
  AddConsequence(FindingKind::kIgnored, line, Says(MessageForm::kLinePassed, look == LineLook::kDevice ? 1 : 0, why));
}

// ---------------------------------------------------------------------------
// The version line, kinds, manufacturers and devices

void ReadRecorder::VersionLine(DWORD nBegin, DWORD nEnd, bool bEnded, bool bKeyword, long nEquals, bool bTaken,
                               int nLayout) {
  m_lineMade = true;
  if (!bEnded) {
    if (m_looks.OpensWithNoCase(nBegin, m_n, "DEF_LAYOUT_VERSION")) {
      Add(FindingKind::kVersion, ByteSpan{nBegin, m_n}, Says(MessageForm::kVersionNoLineEnd));
    }
    return;
  }
  if (bTaken) {
    m_r.versionTaken = true;
    m_r.versionLayout = nLayout;
    m_r.version = ByteSpan{nBegin, nEnd};
    if (m_layout == 2) Add(FindingKind::kLayout2Writer, m_r.version, Says(MessageForm::kLayout2Writer));
  } else if (bKeyword) {
    Add(FindingKind::kVersion, ByteSpan{nBegin, nEnd},
        Says(nEquals < 0 ? MessageForm::kVersionNoEquals : MessageForm::kVersionNoNumber));
  }
}

void ReadRecorder::Kind(DWORD nBegin, DWORD nColon, POSITION posKind) {
  KindRecord record;
  record.name = ByteSpan{nBegin, nColon};
  record.pos = posKind;
  record.kind = &CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>::GetAtPosition(posKind);
  record.firstManufacturer = static_cast<std::uint32_t>(m_r.manufacturers.size());
  m_r.kinds.push_back(record);
  const std::uint32_t kind = static_cast<std::uint32_t>(m_r.kinds.size() - 1);
  m_haveKind = true;
  m_lineMade = true;
  NoteName(0, kind, record.kind->m_Name, record.name);
  const ByteSpan line = LineOf(m_lineStart);
  switch (m_looks.Of(m_lineStart)) {
    case LineLook::kQuote:
      Add(FindingKind::kQuoteKind, line, Says(MessageForm::kQuoteKind, kind));
      return;
    case LineLook::kDefinition:
      AddConsequence(FindingKind::kMisread, line, Says(MessageForm::kDefinitionAsKind, kind));
      return;
    case LineLook::kBlockOpen:
    case LineLook::kBlockClose:
      AddConsequence(FindingKind::kMisread, line, Says(MessageForm::kBlockLineAsKind, kind));
      return;
    case LineLook::kManufacturer:
      AddConsequence(FindingKind::kMisread, line, Says(MessageForm::kManufacturerAsKind, kind));
      return;
    default:
      m_cause = kNoRecord;  // a kind read as it looks ends a cascade
      return;
  }
}

void ReadRecorder::Manufacturer(DWORD nColon, DWORD nEnd, POSITION posManuf) {
  if (posManuf == nullptr) {
    m_haveManuf = false;
    return;
  }
  ManufacturerRecord record;
  record.name = ByteSpan{nColon + 1, nEnd};
  record.kind = static_cast<std::uint32_t>(m_r.kinds.size() - 1);
  record.pos = posManuf;
  record.manufacturer = &CList<TAG_DEVICE_MANUF, TAG_DEVICE_MANUF&>::GetAtPosition(posManuf);
  record.firstDevice = static_cast<std::uint32_t>(m_r.devices.size());
  m_r.manufacturers.push_back(record);
  ++m_r.kinds.back().manufacturerCount;
  NoteName(1, static_cast<std::uint32_t>(m_r.manufacturers.size() - 1), record.manufacturer->m_Name, record.name);
  m_haveManuf = true;
  m_lineMade = true;
  m_cause = kNoRecord;  // a manufacturer read as it looks ends a cascade
}

void ReadRecorder::Device(DWORD nBegin, DWORD nEnd, POSITION posManuf, POSITION posDevice) {
  // A device goes to the current manufacturer, the last one made.
  std::uint32_t manufacturer = static_cast<std::uint32_t>(m_r.manufacturers.size());
  while (manufacturer > 0 && m_r.manufacturers[manufacturer - 1].pos != posManuf) --manufacturer;
  --manufacturer;
  ManufacturerRecord& owner = m_r.manufacturers[manufacturer];
  ++owner.deviceCount;
  DeviceRecord record;
  record.name = ByteSpan{nBegin, nEnd};
  record.block = ByteSpan{nEnd, nEnd};
  record.manufacturer = manufacturer;
  record.pos = posDevice;
  record.device = &CList<DEVICE_ITEM, DEVICE_ITEM&>::GetAtPosition(posDevice);
  record.firstDefinition = static_cast<std::uint32_t>(m_r.definitions.size());
  m_r.devices.push_back(record);
  const std::uint32_t device = static_cast<std::uint32_t>(m_r.devices.size() - 1);
  m_lineMade = true;
  m_deviceLine = m_lineStart;
  m_opened = false;

  const ByteSpan line = LineOf(m_lineStart);
  m_deviceMisread = true;
  switch (m_looks.Of(m_lineStart)) {
    case LineLook::kDefinition:
      AddConsequence(FindingKind::kMisread, line, Says(MessageForm::kDefinitionAsDevice, device));
      break;
    case LineLook::kBlockOpen:
    case LineLook::kBlockClose:
      AddConsequence(FindingKind::kMisread, line, Says(MessageForm::kBlockLineAsDevice, device));
      break;
    case LineLook::kList:
      AddConsequence(FindingKind::kMisread, line, Says(MessageForm::kListAsDevice, device));
      break;
    case LineLook::kVersion:
      AddConsequence(FindingKind::kMisread, line, Says(MessageForm::kVersionAsDevice, device));
      break;
    case LineLook::kKind:
      AddConsequence(FindingKind::kMisread, line, Says(MessageForm::kKindAsDevice, device));
      break;
    default:
      if (nEnd == m_lineStart) {
        AddConsequence(FindingKind::kMisread, line, Says(MessageForm::kBlankDeviceLine));
      } else {
        m_deviceMisread = false;
        m_cause = kNoRecord;  // a device line read as it looks ends a cascade
      }
      break;
  }
  const std::uint32_t lastKind = static_cast<std::uint32_t>(m_r.kinds.size() - 1);
  if (!m_deviceMisread && owner.kind != lastKind) {
    Add(FindingKind::kNoManufacturer, line, Says(MessageForm::kNoManufacturer, device, manufacturer, lastKind));
  }
}

// ---------------------------------------------------------------------------
// Device blocks

void ReadRecorder::BlockLine(DWORD nFirst, DWORD nLast, DWORD nLineEnd, int nStep) {
  const std::uint32_t device = static_cast<std::uint32_t>(m_r.devices.size() - 1);
  DeviceRecord& record = m_r.devices.back();
  const ByteSpan text{nFirst, nLast};
  switch (nStep) {
    case kDevdefBlockOpen:
      m_opened = true;
      record.block.begin = nFirst;
      return;
    case kDevdefBlockClose:
      record.block.end = nFirst + 1;
      record.closed = true;
      return;
    case kDevdefBlockLine:
      m_blockLine = text;
      m_blockLineEnd = nLineEnd;
      m_lineMisreads.clear();
      return;
    case kDevdefBlockCutOff: {
      record.block.end = m_n;
      const ByteSpan rest = m_looks.Trimmed(nFirst, m_n);
      const std::uint32_t how = rest.begin < rest.end ? 0 : m_opened ? 1 : 2;
      Add(FindingKind::kCutOff, LineOf(m_deviceLine), Says(MessageForm::kCutOff, device, how));
      return;
    }
    case kDevdefBlockNotOpen:
      break;
    default:
      return;
  }
  record.block.end = nLast;
  if (nFirst < m_looks.LineEnd(m_deviceLine)) {
    StartCause(Add(FindingKind::kNoBlock, text, Quoting(MessageForm::kNoBlockBehindName, text, device)), nFirst);
  } else if (m_deviceMisread && m_cause != kNoRecord) {
    AddConsequence(FindingKind::kMisread, text, Quoting(MessageForm::kLostFirstBlockLine, text, device));
  } else {
    StartCause(Add(FindingKind::kNoBlock, text, Says(MessageForm::kNoBlock, device)), nFirst);
  }
}

void ReadRecorder::DefinitionLine(int nVerdict, int /*nField*/, int /*nIndex*/, int nHead) {
  const std::uint32_t device = static_cast<std::uint32_t>(m_r.devices.size() - 1);
  DeviceRecord& record = m_r.devices.back();
  switch (nVerdict) {
    case kDevdefLineAdded:
      m_r.definitions.push_back(
          DefinitionRecord{m_blockLine, device, m_blockLine.begin + static_cast<std::uint32_t>(nHead)});
      ++record.definitionCount;
      NoteDefinition(*record.device, record.device->m_DefArray[record.device->m_DefArray.GetSize() - 1]);
      CheckNumbers();
      CheckTextCut();
      if (m_deviceMisread && m_cause != kNoRecord) {
        AddConsequence(FindingKind::kMisread, m_blockLine, Says(MessageForm::kDefinitionIntoDevice, device));
      }
      return;
    case kDevdefLineNoDefinition:
      Add(FindingKind::kShortForm, m_blockLine, Says(MessageForm::kShortForm));
      return;
    case kDevdefLinePassedKeyword:
      Add(FindingKind::kIgnoredKeyword, m_blockLine, Says(MessageForm::kIgnoredKeyword));
      return;
    default:
      break;
  }
  record.block.end = m_blockLine.end;
  const std::uint32_t reason = nVerdict == kDevdefLineNoKeyword ? 0 : nVerdict == kDevdefLineNoColon ? 1 : 2;
  const MessageArgs says = Says(MessageForm::kRefused, reason, device);
  if (m_deviceMisread && m_cause != kNoRecord) {
    AddConsequence(FindingKind::kRefused, m_blockLine, says);
  } else {
    StartCause(Add(FindingKind::kRefused, m_blockLine, says), m_blockLine.begin);
  }
}

void ReadRecorder::DefinitionField(int nField, int nIndex, int nBegin, int nEnd, bool bHex, DWORD nValue) {
  FieldRecord field;
  field.field = nField;
  field.index = nIndex;
  field.taken = ByteSpan{m_blockLine.begin + static_cast<std::uint32_t>(nBegin),
                         m_blockLine.begin + static_cast<std::uint32_t>(nEnd)};
  field.value = nValue;
  field.hex = bHex;
  // The word ends where the number did, unless more than a delimiter
  // follows it.
  const std::string_view bytes(reinterpret_cast<const char*>(m_b), m_n);
  const bool list = ListField(m_layout, field.field);
  const char next = field.taken.end < m_blockLine.end ? bytes[field.taken.end] : ' ';
  field.word = next == ' ' || next == '\t' || next == ':' || (list && next == ',')
                   ? field.taken
                   : NumberWord(bytes, field.taken.begin, m_blockLine.end, list);
  // Kept until the line's verdict: a refused line says nothing of its numbers.
  const NumberMisread why = LookOfNumber(bytes, field);
  if (why != NumberMisread::kNone) m_lineMisreads.push_back(std::make_pair(field, why));
}

void ReadRecorder::CheckNumbers() {
  for (const std::pair<FieldRecord, NumberMisread>& misread : m_lineMisreads) {
    const FieldRecord& field = misread.first;
    const std::uint32_t what = static_cast<std::uint32_t>(misread.second) |
                               static_cast<std::uint32_t>(field.field) << 8 |
                               static_cast<std::uint32_t>(field.index) << 16;
    Add(FindingKind::kNumber, field.word, Says(MessageForm::kNumberMisread, what, field.value, field.taken.end,
                                               field.word));
  }
}

void ReadRecorder::CheckTextCut() {
  // The block reader dropped the line from its first ";" on: what stands
  // behind it was text to whoever wrote it.
  const void* found = std::memchr(m_b + m_blockLine.end, ';', m_blockLineEnd - m_blockLine.end);
  if (found == nullptr) return;
  const std::uint32_t semicolon = static_cast<std::uint32_t>(static_cast<const BYTE*>(found) - m_b);
  const ByteSpan lost = m_looks.Trimmed(semicolon + 1, m_blockLineEnd);
  if (lost.begin == lost.end) return;
  Add(FindingKind::kTextCut, ByteSpan{semicolon, lost.end}, Quoting(MessageForm::kTextCut, lost));
}

void ReadRecorder::NoteName(std::uint32_t what, std::uint32_t record, const CString& name, ByteSpan span) {
  // The writer keeps the blank that "_" was read as.
  if (name.Find(' ') >= 0) Add(FindingKind::kName, span, Says(MessageForm::kNameWithBlank, what, record));
}

void ReadRecorder::NoteDefinition(const DEVICE_ITEM& device, const DEVICE_KVRXDEF_ITEM& def) {
  if (m_r.definitions.size() > 1 && def.m_DefID <= m_lastId) m_r.idsAscend = false;
  m_lastId = def.m_DefID;
  if (m_listSizes[0] < 0) {
    m_listSizes[0] = DEVICE_ITEM::m_PackageList.GetSize();
    m_listSizes[1] = DEVICE_ITEM::m_AdapterList.GetSize();
    m_listSizes[2] = DEVICE_ITEM::m_ModulList.GetSize();
  }
  bool noteworthy = def.m_ModulId >= static_cast<DWORD>(m_listSizes[2]);
  for (int i = 0; i < def.m_PackageIds.GetSize() && !noteworthy; ++i) noteworthy = def.m_PackageIds[i] >= m_listSizes[0];
  for (int i = 0; i < def.m_AdapterIds.GetSize() && !noteworthy; ++i) noteworthy = def.m_AdapterIds[i] >= m_listSizes[1];
  if (m_layout == 7) {
    noteworthy = noteworthy || (def.m_MarkFlags & ~device.m_DeviceFlags) != 0 || def.m_PackageIds.GetSize() > 1 ||
                 def.m_DefValues[10] > 9;
  }
  if (noteworthy) m_r.noteworthy.push_back(static_cast<std::uint32_t>(m_r.definitions.size() - 1));
}

void ReadRecorder::HousingLine(int nListStart) {
  m_r.housingLines.push_back(m_blockLine);
  m_housingBase = m_blockLine.begin + static_cast<std::uint32_t>(nListStart);
  // The list starts right behind the keyword, which is "DEVICE_HOUSING_LIST:".
  const std::uint32_t keyword = sizeof "DEVICE_HOUSING_LIST:" - 1;
  if (m_housingBase >= m_blockLine.begin + keyword) m_r.housingKeywords.push_back(ByteSpan{m_housingBase - keyword, m_housingBase});
  m_housingEntries.clear();
}

void ReadRecorder::HousingNumbers(int nTaken, bool bDevice) {
  if (!bDevice) {
    Add(FindingKind::kHousing, m_blockLine, Says(MessageForm::kHousingNoDevice));
    return;
  }
  const size_t taken = static_cast<size_t>(nTaken);
  const std::uint32_t device = static_cast<std::uint32_t>(m_r.devices.size() - 1);
  // The line's numbers went to the end of the device's list.
  const std::uint32_t first = static_cast<std::uint32_t>(m_r.devices.back().device->m_HousingIds.GetSize()) -
                              static_cast<std::uint32_t>(taken);
  for (size_t i = 0; i < taken && i < m_housingEntries.size(); ++i) {
    m_r.housingNumbers.push_back(HousingNumberRecord{m_housingEntries[i], device, first + static_cast<std::uint32_t>(i)});
  }
  if (taken < m_housingEntries.size()) {
    const ByteSpan entry = m_housingEntries[taken];
    Add(FindingKind::kHousing, ByteSpan{entry.begin, m_housingEntries.back().end},
        Quoting(MessageForm::kHousingNoNumber, entry));
  }
  if (taken > 0) Add(FindingKind::kLayout7Writer, m_blockLine, Says(MessageForm::kHousingNotWritten));
}

void ReadRecorder::BlockEnd(int nResult, DWORD nPos) {
  if (m_progress != nullptr) m_progress->store(nPos, std::memory_order_relaxed);
  // What a write does not keep of the device, noted behind what its lines
  // said.
  const DeviceRecord& device = m_r.devices.back();
  if (m_layout == 7 && device.device->m_DeviceFlags != 0) {
    Add(FindingKind::kLayout7Writer, device.name, Says(MessageForm::kDeviceMarkNotWritten));
  }
  NoteName(2, static_cast<std::uint32_t>(m_r.devices.size() - 1), device.device->m_DeviceName, device.name);
  m_lineFresh = false;
  if (nResult == 0 && nPos < m_n) {
    // The loop goes on one byte behind the failed line's end, in a line it
    // counts as taken: the rest of that line is passed over.
    m_dropArmed = true;
    m_dropFrom = IsLineEnd(m_b[nPos]) ? nPos + 1 : nPos;
    m_lineStart = m_dropFrom;
  }
}

// ---------------------------------------------------------------------------
// Header lists and housing lists

void ReadRecorder::ListKeyword(int nList, DWORD nBegin, DWORD nDelimiter) {
  m_lineMade = true;
  m_listKeyword = ByteSpan{nBegin, nDelimiter};
  if (nList >= 0 && nList < 3) m_r.listKeywords.push_back(ListKeywordRecord{m_listKeyword, nList});
  m_braces = m_layout == 7 && nList != kDevdefModulList;
}

void ReadRecorder::ListEntry(int nList, DWORD nBegin, DWORD nEnd, bool bStored) {
  if (nList == kDevdefDeviceHousingList) {
    const ByteSpan entry{m_housingBase + nBegin, m_housingBase + nEnd};
    if (bStored) {
      m_housingEntries.push_back(entry);
    } else {
      Add(FindingKind::kHousing, entry, Quoting(MessageForm::kHousingEntryLost, entry));
    }
    return;
  }
  const ByteSpan entry{nBegin, nEnd};
  if (bStored) {
    m_r.listEntries[nList].push_back(entry);
  } else {
    Add(FindingKind::kLostEntry, entry,
        Quoting(m_braces ? MessageForm::kListEntryCut : MessageForm::kListEntryNoDelimiter, entry));
  }
}

std::uint32_t ReadRecorder::ProblemOf(bool opened, bool closed) {
  if (!opened) return closed ? kBraceNoOpenClosed : kBraceNoOpen;
  return closed ? kBraceNoEntry : kBraceNoClose;
}

void ReadRecorder::BraceList(int nList, DWORD nStop, bool bOpened, bool bClosed, int nResult) {
  if (nList == kDevdefDeviceHousingList) {
    if (nResult == 0) {
      Add(FindingKind::kHousing, m_blockLine,
          Says(MessageForm::kHousingNotRead, 0, ProblemOf(bOpened, bClosed), m_housingBase + nStop));
    }
    return;
  }
  if (nResult != 0) {
    Add(FindingKind::kLayout7Writer, m_listKeyword, Says(MessageForm::kListInBraces, static_cast<std::uint32_t>(nList)));
    return;
  }
  const std::uint32_t cause = Add(FindingKind::kList, m_listKeyword,
                                  Says(MessageForm::kListNotRead, static_cast<std::uint32_t>(nList),
                                       ProblemOf(bOpened, bClosed), nStop));
  if (bOpened) return;
  // Every line the scan passed over is lost with it.
  StartCause(cause, m_listKeyword.begin);
  for (std::uint32_t line = m_looks.LineEnd(m_listKeyword.begin); line < nStop;) {
    while (line < m_n && IsLineEnd(m_b[line])) ++line;
    if (line >= nStop) break;
    const std::uint32_t end = m_looks.LineEnd(line);
    const LineLook look = m_looks.Of(line);
    if (look != LineLook::kBlank && look != LineLook::kComment) {
      AddConsequence(FindingKind::kMisread, m_looks.Trimmed(line, end),
                     Says(MessageForm::kPassedByListScan, static_cast<std::uint32_t>(nList)));
    }
    line = end;
  }
}

// ---------------------------------------------------------------------------
// Findings

std::uint32_t ReadRecorder::Add(FindingKind kind, ByteSpan span, MessageArgs says) {
  return m_r.findings.Add(kind, span, says);
}

void ReadRecorder::StartCause(std::uint32_t finding, std::uint32_t line) {
  m_cause = finding;
  m_causeLine = line;
}

void ReadRecorder::AddConsequence(FindingKind kind, ByteSpan span, MessageArgs says) {
  if (m_cause == kNoRecord) {
    Add(kind, span, says);
    return;
  }
  const ByteSpan causeSpan = m_r.findings[m_cause].span;
  const std::uint32_t consequence = Add(kind, span, says);
  m_r.findings[consequence].after = m_causeLine;
  m_r.findings.Relate(consequence, causeSpan, Says(MessageForm::kFailedLine), true);
}
