// The observer of a read that the analysis installs: it records what the
// reader reports, step by step, as flat records in file order, and says
// where the reading differs from how the file looks (findings). It never
// reads the grammar of the file itself: every place comes from a report of
// the reader; only how a line looks to a person (line_look.h) is its own.
#ifndef DEVDEF_TOOLS_ANALYSIS_READ_RECORDER_H_
#define DEVDEF_TOOLS_ANALYSIS_READ_RECORDER_H_

#include <atomic>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "devdef/devdef.h"
#include "devdef/reader/read_observer.h"
#include "tools/analysis/finding.h"
#include "tools/analysis/line_look.h"
#include "tools/analysis/number_look.h"
#include "tools/analysis/records.h"

// What a read made and found, in the order of the file.
struct ReadRecords {
  bool versionTaken = false;
  int versionLayout = -1;  // the number the version line gave
  ByteSpan version;
  std::vector<KindRecord> kinds;
  std::vector<ManufacturerRecord> manufacturers;
  std::vector<DeviceRecord> devices;
  std::vector<DefinitionRecord> definitions;
  std::vector<ByteSpan> listEntries[3];  // HOUSING_LIST, ADAPTER_LIST, MODUL_LIST
  std::vector<ListKeywordRecord> listKeywords;
  std::vector<ByteSpan> housingLines;    // device block lines of a housing list, without comment and white space at their ends
  std::vector<ByteSpan> housingKeywords;  // the DEVICE_HOUSING_LIST: of each housing line
  std::vector<HousingNumberRecord> housingNumbers;  // the entries of those lines that went to their devices
  Findings findings;                     // unsorted until the analysis finishes them
  // The definitions with something to check, as they were read (while each
  // is at hand): a number without a name, or in layout 7 what its writer
  // loses. And whether the ids ascend through the file, so none repeats.
  std::vector<std::uint32_t> noteworthy;
  bool idsAscend = true;
  std::unique_ptr<CByteArray> bytes;     // the file, taken from the reader at the end of the read
};

class ReadRecorder : public DevdefReadObserver {
 public:
  // layout: the layout of the controller that reads.
  ReadRecorder(ReadRecords& records, int layout) : m_r(records), m_layout(layout) { m_bFields = true; }
  // Where the read stands goes to progress (in bytes) at each line end
  // and block end.
  void ReportTo(std::atomic<std::uint64_t>* progress) { m_progress = progress; }

  void BeginRead(const BYTE* pBuffer, DWORD nSize) override;
  void EndRead(CByteArray& buffer) override;
  void LineEnd(DWORD nPos, int nLineState) override;
  void VersionLine(DWORD nBegin, DWORD nEnd, bool bEnded, bool bKeyword, long nEquals, bool bTaken,
                   int nLayout) override;
  void Kind(DWORD nBegin, DWORD nColon, POSITION posKind) override;
  void Manufacturer(DWORD nColon, DWORD nEnd, POSITION posManuf) override;
  void Device(DWORD nBegin, DWORD nEnd, POSITION posManuf, POSITION posDevice) override;
  void ListKeyword(int nList, DWORD nBegin, DWORD nDelimiter) override;
  void ListEntry(int nList, DWORD nBegin, DWORD nEnd, bool bStored) override;
  void BraceList(int nList, DWORD nStop, bool bOpened, bool bClosed, int nResult) override;
  void BlockLine(DWORD nFirst, DWORD nLast, DWORD nLineEnd, int nStep) override;
  void BlockEnd(int nResult, DWORD nPos) override;
  void DefinitionField(int nField, int nIndex, int nBegin, int nEnd, bool bHex, DWORD nValue) override;
  void DefinitionLine(int nVerdict, int nField, int nIndex, int nHead) override;
  void HousingLine(int nListStart) override;
  void HousingNumbers(int nTaken, bool bDevice) override;

 private:
  // The loop met the end of the line it was reading at end (or the end of
  // the file): says what became of a line that made nothing.
  void EndLine(std::uint32_t end, bool lastLine);
  // A finding, and one that a failed line before it caused: it names its
  // cause (each fact is said once: the cause does not list it).
  std::uint32_t Add(FindingKind kind, ByteSpan span, MessageArgs says);
  void AddConsequence(FindingKind kind, ByteSpan span, MessageArgs says);
  // A new cause of a cascade of misread lines.
  void StartCause(std::uint32_t finding, std::uint32_t line);
  ByteSpan LineOf(std::uint32_t lineStart) const { return m_looks.Trimmed(lineStart, m_looks.LineEnd(lineStart)); }
  static std::uint32_t ProblemOf(bool opened, bool closed);
  // A kind (what 0), manufacturer (1) or device (2) whose name holds a
  // blank, which a write does not keep as it was read.
  void NoteName(std::uint32_t what, std::uint32_t record, const CString& name, ByteSpan span);
  // Notes what the analysis checks of a definition just read.
  void NoteDefinition(const DEVICE_ITEM& device, const DEVICE_KVRXDEF_ITEM& def);
  // Says which numbers of the definition line just read were read
  // differently from how they look, and what a ";" cut off its text.
  void CheckNumbers();
  void CheckTextCut();

  ReadRecords& m_r;
  int m_layout;
  const unsigned char* m_b = nullptr;
  std::uint32_t m_n = 0;
  LineLooks m_looks{std::string_view(), 1};

  // The line the loop is reading: where it starts, whether the loop started
  // it (not a block reader), and whether a step of the reader took it.
  std::uint32_t m_lineStart = 0;
  bool m_lineFresh = true;
  bool m_lineMade = false;
  // The rest of a line behind a failed block line, which the loop passes
  // over: from here to its line end.
  bool m_dropArmed = false;
  std::uint32_t m_dropFrom = 0;
  // The finding that started the running cascade of misread lines, and its
  // line.
  std::uint32_t m_cause = kNoRecord;
  std::uint32_t m_causeLine = 0;
  bool m_haveKind = false;
  bool m_haveManuf = false;

  // The block being read: its device's line and whether the device line
  // was misread; the block line being read.
  std::uint32_t m_deviceLine = 0;
  bool m_deviceMisread = false;
  bool m_opened = false;
  ByteSpan m_blockLine;
  std::uint32_t m_blockLineEnd = 0;  // the line end behind it, or the end of the file
  // The numbers of the definition line being read that it does not read as
  // they look.
  std::vector<std::pair<FieldRecord, NumberMisread>> m_lineMisreads;
  // A header list being read.
  ByteSpan m_listKeyword;
  bool m_braces = false;
  // The sizes of the header lists, which are whole before the first device;
  // the last id read.
  int m_listSizes[3] = {-1, -1, -1};
  DWORD m_lastId = 0;
  // A housing line's list: where its text starts, its entries.
  std::uint32_t m_housingBase = 0;
  std::vector<ByteSpan> m_housingEntries;
  std::atomic<std::uint64_t>* m_progress = nullptr;
};

#endif  // DEVDEF_TOOLS_ANALYSIS_READ_RECORDER_H_
