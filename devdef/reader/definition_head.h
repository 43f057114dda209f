// Helpers shared by the definition line readers of every layout.
#ifndef DEVDEF_READER_DEFINITION_HEAD_H_
#define DEVDEF_READER_DEFINITION_HEAD_H_

#include "devdef/catalogue/definition_item.h"
#include "devdef/catalogue/device_item.h"
#include "devdef/platform/cstring.h"
#include "devdef/platform/typed_arrays.h"
#include "devdef/reader/read_observer.h"

// The generation of a definition line keyword at the start of pszLine:
// 3, 4 or 5 for "KVR3DEF:", "KVR4DEF:", "KVR5DEF:" (compared exactly), else 0.
int DevdefDefinitionKeyword(const char* pszLine);

class DevdefLineReport;

// Splits a definition line (nLength bytes at pLine, zero-terminated behind
// them) opening with one of the three keywords: sets the generation of def,
// its text (what follows the first colon behind the keyword) and strHead,
// the number fields in between, normalised: white space at the start is
// removed, tabs become blanks, and every run of blanks closes up to one
// blank (a trailing blank stays). False when the line has no keyword or no
// colon. strHead keeps its storage, so a caller that passes the same string
// for every line allocates nothing for the head. report hears where the
// head starts and, when it asks for fields, where each byte of the head
// came from; pLine stands at nOffset of the reader's line. Made for the
// two reports (DevdefLineReport, DevdefNoReport).
template <class Report>
bool DevdefSplitDefinitionLine(const char* pLine, int nLength, DEVICE_KVRXDEF_ITEM& def, CString& strHead,
                               Report& report, int nOffset);

// Keeps a function out of its caller: a definition line reader reads its
// line with reports in a function of its own, so that the reader itself is
// compiled as if the reports were not there.
#if defined(__GNUC__)
#define DEVDEF_READER_NOINLINE __attribute__((noinline))
#else
#define DEVDEF_READER_NOINLINE
#endif

// What a definition line reader tells the observer of the read: each field
// it reads (when the observer asks for fields) and, once, its verdict on
// the line. A reader reads its line through a function made twice, with
// this report and with DevdefNoReport, which reports nothing and compiles to
// nothing, so that a read with no observer pays one test per line.
class DevdefLineReport {
 public:
  explicit DevdefLineReport(DevdefReadObserver* pObserver) : m_pObserver(pObserver) {}

  // Room for the head's map to the line (nLength bytes) when fields are
  // reported, else null. nOffset is where the split text starts in the
  // reader's line.
  int* Sources(int nLength, int nOffset) { return m_pObserver->m_bFields ? MapFor(nLength, nOffset) : nullptr; }
  // The keyword starts at nBegin of the reader's line (reported when fields
  // are asked for).
  void Keyword(int nBegin) {
    if (m_pObserver->m_bFields) m_pObserver->DefinitionKeyword(nBegin);
  }
  // The head starts at nHead of the reader's line.
  void Head(int nHead) { m_nHead = nHead; }
  // The field read at pAt of the head pHead (as "%x" when bHex) and stored
  // as nValue, when fields are asked for.
  void Field(int nField, int nIndex, const char* pHead, const char* pAt, bool bHex, DWORD nValue) {
    if (m_pSources != nullptr) ReportField(nField, nIndex, pHead, pAt, bHex, nValue);
  }
  // A refusal at a field: keeps where, gives the verdict.
  int Fail(int nVerdict, int nField, int nIndex) {
    m_nField = nField;
    m_nIndex = nIndex;
    return nVerdict;
  }
  // The verdict on a line that DevdefSplitDefinitionLine refused: no
  // keyword, or no colon behind it.
  int SplitRefused(const char* pLine) {
    return DevdefDefinitionKeyword(pLine) == 0 ? kDevdefLineNoKeyword : kDevdefLineNoColon;
  }
  // Reports the verdict on the line (with the field of a refusal).
  void Verdict(int nVerdict) { m_pObserver->DefinitionLine(nVerdict, m_nField, m_nIndex, m_nHead); }

 private:
  int* MapFor(int nLength, int nOffset);
  void ReportField(int nField, int nIndex, const char* pHead, const char* pAt, bool bHex, DWORD nValue);

  DevdefReadObserver* m_pObserver;
  int* m_pSources = nullptr;
  int m_nOffset = 0;
  int m_nField = -1;
  int m_nIndex = -1;
  int m_nHead = -1;
};

// The report of a definition line reader when nothing observes the read.
struct DevdefNoReport {
  int* Sources(int, int) { return nullptr; }
  void Keyword(int) {}
  void Head(int) {}
  void Field(int, int, const char*, const char*, bool, DWORD) {}
  int Fail(int nVerdict, int, int) { return nVerdict; }
  // No keyword or no colon: a refusal, whichever it is.
  int SplitRefused(const char*) { return kDevdefLineNoKeyword; }
};

// A definition line reader's result for a verdict: 1 when the line is
// accepted, else 0.
inline int DevdefLineResult(int nVerdict) { return nVerdict <= kDevdefLinePassedKeyword ? 1 : 0; }

// A definition line read with reports to observer: read(report) reads it
// and gives the verdict, add() adds the definition it made; the verdict is
// reported once the definition is in its device. Kept out of the readers,
// so that they are compiled as if the reports were not there.
template <class Read, class Add>
DEVDEF_READER_NOINLINE int DevdefReadReportedLine(DevdefReadObserver* observer, const Read& read, const Add& add) {
  DevdefLineReport report(observer);
  const int verdict = read(report);
  if (verdict == kDevdefLineAdded) add();
  report.Verdict(verdict);
  return DevdefLineResult(verdict);
}

// A definition line reader of layouts 1 and 2: splits strLine and reads
// its number fields into def with readFields(head, def, report), a generic
// function made for both reports; add() adds the definition made. Gives
// the reader's result.
template <class ReadFields, class Add>
int DevdefReadSplitLine(const CString& strLine, DEVICE_KVRXDEF_ITEM& def, ReadFields readFields, Add add) {
  // One head buffer per thread, reused line after line.
  static thread_local CString head;
  auto read = [&strLine, &def, &readFields](auto& report) -> int {
    if (!DevdefSplitDefinitionLine(strLine, strLine.GetLength(), def, head, report, 0)) {
      return report.SplitRefused(strLine);
    }
    return readFields(head, def, report);
  };
  if (DevdefReadObserver* observer = DevdefActiveReadObserver()) return DevdefReadReportedLine(observer, read, add);
  DevdefNoReport silent;
  const int verdict = read(silent);
  if (verdict == kDevdefLineAdded) add();
  return DevdefLineResult(verdict);
}

// The header list that a keyword names, compared without regard to case:
// "HOUSING_LIST", "ADAPTER_LIST", "MODUL_LIST", or null.
CStringArray* DevdefHeaderList(const CString& strKeyword);

// What AddDevice does for a definition that a reader built and drops
// afterwards: sets its hidden bit by nKvrType and its owner, then moves it
// into the device's array instead of copying it.
void DevdefAddReadDefinition(DEVICE_ITEM& device, int nKvrType, DEVICE_KVRXDEF_ITEM& def);

// Appends to pList the piece of a one-line header list that starts at
// nPieceStart in strLine, trimmed of white space at its start and of blanks,
// tabs, "," and ";" at its end; an empty piece is passed over. With pList
// null the piece is only reported, as lost. pObserver (when not null) hears
// of the piece as an entry of list nList, strLine standing at nBase of the
// read buffer.
void DevdefAppendListPiece(CStringArray* pList, const CString& strLine, int nPieceStart, DevdefReadObserver* pObserver,
                           int nList, DWORD nBase);

// Which of the three header lists pList is: kDevdefHousingList,
// kDevdefAdapterList or kDevdefModulList; kDevdefDeviceHousingList for any
// other list.
int DevdefListName(const CStringArray* pList);

#endif  // DEVDEF_READER_DEFINITION_HEAD_H_
