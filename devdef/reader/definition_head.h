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
// came from; pLine stands at nOffset of the reader's line.
bool DevdefSplitDefinitionLine(const char* pLine, int nLength, DEVICE_KVRXDEF_ITEM& def, CString& strHead,
                               DevdefLineReport& report, int nOffset);

// Keeps a function out of its caller: a definition line reader reads its
// fields with reports in a function of its own, so that the reader itself
// is compiled as if the reports were not there.
#if defined(__GNUC__)
#define DEVDEF_READER_NOINLINE __attribute__((noinline))
#else
#define DEVDEF_READER_NOINLINE
#endif

// What a definition line reader tells the observer of the read, if there is
// one: each field it reads (when the observer asks for fields) and, once,
// its verdict on the line. A reader reads its fields through a function
// made twice, with and without the reports of fields, so that a read with
// no observer pays a test or two per line.
class DevdefLineReport {
 public:
  DevdefLineReport() : m_pObserver(DevdefActiveReadObserver()) {}

  // Whether anything observes the read.
  bool Observed() const { return m_pObserver != nullptr; }
  // Room for the head's map to the line (nLength bytes) when fields are
  // reported, else null. nOffset is where the split text starts in the
  // reader's line.
  int* Sources(int nLength, int nOffset) {
    return m_pObserver != nullptr && m_pObserver->m_bFields ? MapFor(nLength, nOffset) : nullptr;
  }
  // The head starts at nHead of the reader's line.
  void Head(int nHead) { m_nHead = nHead; }
  // Whether fields are reported (Sources gave a map).
  bool Fields() const { return m_pSources != nullptr; }
  // The field read at pAt of the head pHead (as "%x" when bHex) and stored
  // as nValue; only when Fields().
  void Field(int nField, int nIndex, const char* pHead, const char* pAt, bool bHex, DWORD nValue);
  // A refusal at a field: keeps where, gives the verdict.
  int Fail(int nVerdict, int nField, int nIndex) {
    m_nField = nField;
    m_nIndex = nIndex;
    return nVerdict;
  }
  // The verdict on the line (with the field of a refusal); gives the
  // reader's result for it: 1 when the line is accepted, else 0.
  int Verdict(int nVerdict) {
    if (m_pObserver != nullptr) m_pObserver->DefinitionLine(nVerdict, m_nField, m_nIndex, m_nHead);
    return nVerdict <= kDevdefLinePassedKeyword ? 1 : 0;
  }
  // The verdict on a line that DevdefSplitDefinitionLine refused: no
  // keyword, or no colon behind it.
  int SplitRefused(const char* pLine) {
    if (m_pObserver == nullptr) return 0;
    return Verdict(DevdefDefinitionKeyword(pLine) == 0 ? kDevdefLineNoKeyword : kDevdefLineNoColon);
  }

 private:
  int* MapFor(int nLength, int nOffset);

  DevdefReadObserver* m_pObserver;
  int* m_pSources = nullptr;
  int m_nOffset = 0;
  int m_nField = -1;
  int m_nIndex = -1;
  int m_nHead = -1;
};

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
void DevdefAppendListPiece(CStringArray* pList, const CString& strLine, int nPieceStart,
                           DevdefReadObserver* pObserver, int nList, DWORD nBase);

// Which of the three header lists pList is: kDevdefHousingList,
// kDevdefAdapterList or kDevdefModulList; kDevdefDeviceHousingList for any
// other list.
int DevdefListName(const CStringArray* pList);

#endif  // DEVDEF_READER_DEFINITION_HEAD_H_
