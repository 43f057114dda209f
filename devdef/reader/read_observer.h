// What a read reports, step by step, to an observer of the project's own
// tools: the bytes each step of the reader took and what it made of them.
// Hosts never see it: the header is not installed, and with no observer the
// read only tests a null pointer at each line.
//
// Positions are offsets into the read buffer unless an event says otherwise:
// the definition line readers and the housing lines work on the trimmed,
// comment-free text of one block line (the block reader's BlockLine event
// says where it starts), and a housing list is scanned in a copy of the part
// of that line behind its keyword.
//
// An observer is installed for the reads of the process with
// DevdefReadObserverScope (reads never overlap: the name lists they fill are
// the process's); the readers find it with DevdefActiveReadObserver. It must
// not change the catalogue or the reader's state: it watches.
#ifndef DEVDEF_READER_READ_OBSERVER_H_
#define DEVDEF_READER_READ_OBSERVER_H_

#include "devdef/platform/export.h"
#include "devdef/platform/typed_arrays.h"
#include "devdef/platform/types.h"

// The fields of a definition line, in the order of DEVICE_KVRXDEF_ITEM.
enum DevdefDefinitionField {
  kDevdefFieldId = 0,
  kDevdefFieldPackage = 1,  // an entry of m_PackageIds
  kDevdefFieldModule = 2,
  kDevdefFieldAdapter = 3,  // an entry of m_AdapterIds
  kDevdefFieldValue = 4,    // an entry of m_DefValues
};

// What a definition line reader made of its line.
enum DevdefLineVerdict {
  kDevdefLineAdded = 0,           // a definition, added to the device
  kDevdefLineNoDefinition = 1,    // accepted without a definition: nothing behind the adapters
  kDevdefLinePassedKeyword = 2,   // accepted and passed over: a keyword the reader drops (layout 7)
  kDevdefLineNoKeyword = 3,       // refused: it does not open with KVR3DEF:, KVR4DEF: or KVR5DEF:
  kDevdefLineNoColon = 4,         // refused: no ":" behind the keyword
  kDevdefLineNoNumber = 5,        // refused: a field holds no number
  kDevdefLineNoBlank = 6,         // refused: no blank behind a field, which needs one
};

// The steps of the block reader, one per line it looked at (empty lines are
// passed over without a report).
enum DevdefBlockStep {
  kDevdefBlockOpen = 0,     // the "{" line
  kDevdefBlockNotOpen = 1,  // the first line is no "{": the block ends, taking it
  kDevdefBlockClose = 2,    // the "}" line
  kDevdefBlockLine = 3,     // a line handed to the block line reader
  kDevdefBlockCutOff = 4,   // the buffer ends inside the line: the block ends unread
};

// The lists that ListEntry and ListRead name.
enum DevdefListName {
  kDevdefHousingList = 0,        // HOUSING_LIST, the package names
  kDevdefAdapterList = 1,        // ADAPTER_LIST
  kDevdefModulList = 2,          // MODUL_LIST
  kDevdefDeviceHousingList = 3,  // a DEVICE_HOUSING_LIST line of a device block
};

class DEVDEF_API DevdefReadObserver {
 public:
  virtual ~DevdefReadObserver();

  // Set when the definition line readers are to report every field they
  // read (DefinitionField); else only their verdicts.
  bool m_bFields = false;

  // The read loop starts on nSize bytes at pBuffer, which stay valid up to
  // EndRead.
  virtual void BeginRead(const BYTE* pBuffer, DWORD nSize);
  // The read is over (whatever its result); buffer holds its bytes, which
  // the read lets go of right after this call, so the observer may take
  // them (move them out) instead of copying them.
  virtual void EndRead(CByteArray& buffer);
  // The read loop met the line end at nPos with nLineState: 0 nothing was
  // taken on the line, 1 a comment ran to the line end, 2 something was
  // taken and the rest of the line passed over.
  virtual void LineEnd(DWORD nPos, int nLineState);

  // The version recogniser took the line [nBegin, nEnd); nEnd is its line
  // end or, when bEnded is false, the end of the buffer. bKeyword: the line
  // opens with the keyword; nEquals: the first "=" of the line, or -1;
  // bTaken: the line is the version line, of layout nLayout.
  virtual void VersionLine(DWORD nBegin, DWORD nEnd, bool bEnded, bool bKeyword, long nEquals, bool bTaken,
                           int nLayout);
  // A kind was made of the bytes the loop took from nBegin, where its line
  // started, up to the ":" at nColon: all of them, unless a list in braces
  // read in between took some.
  virtual void Kind(DWORD nBegin, DWORD nColon, POSITION posKind);
  // The ":" at nColon opened a manufacturer name up to nEnd; posManuf is the
  // manufacturer made, or null when no kind is current or the buffer ended
  // in the name.
  virtual void Manufacturer(DWORD nColon, DWORD nEnd, POSITION posManuf);
  // A device named by the bytes [nBegin, nEnd) (its mark byte included) was
  // made under posManuf.
  virtual void Device(DWORD nBegin, DWORD nEnd, POSITION posManuf, POSITION posDevice);

  // A header list keyword [nBegin, nDelimiter) opened a list.
  virtual void ListKeyword(int nList, DWORD nBegin, DWORD nDelimiter);
  // An entry [nBegin, nEnd) of a list, stored or lost (a one-line list's
  // last piece without a delimiter, or an entry ended by "}" or ";").
  virtual void ListEntry(int nList, DWORD nBegin, DWORD nEnd, bool bStored);
  // A list in braces: the scan stopped at nStop (its "}", or the end of the
  // text), having met "{" (bOpened) and "}" (bClosed); nResult is the list
  // reader's result.
  virtual void BraceList(int nList, DWORD nStop, bool bOpened, bool bClosed, int nResult);

  // The block reader took the line whose bytes without comment and white
  // space are [nFirst, nLast), ended at nLineEnd, as step.
  virtual void BlockLine(DWORD nFirst, DWORD nLast, DWORD nLineEnd, int nStep);
  // The block reader returned nResult with the loop's position at nPos.
  virtual void BlockEnd(int nResult, DWORD nPos);
  // A definition line reader read field nField (entry nIndex of its list
  // or of m_DefValues) as nValue from [nBegin, nEnd) of its line: from the
  // field's first byte to the end of what the number took, in hexadecimal
  // when bHex. Only when m_bFields is set.
  virtual void DefinitionField(int nField, int nIndex, int nBegin, int nEnd, bool bHex, DWORD nValue);
  // A definition line reader found the keyword of a definition (KVR3DEF:,
  // KVR4DEF: or KVR5DEF:) at nBegin of its line: 1 behind a mark byte, else
  // 0. Only when m_bFields is set, ahead of the line's fields.
  virtual void DefinitionKeyword(int nBegin);
  // A definition line reader finished its line with verdict; for a refused
  // line, nField and nIndex name the field it failed at (else -1). The
  // number fields start at nHead of the line (the id's first byte), or -1
  // when the line has no keyword and colon.
  virtual void DefinitionLine(int nVerdict, int nField, int nIndex, int nHead);
  // A housing line: the text of its list starts at nListStart of the line.
  // The list's entries and result follow (ListEntry, BraceList).
  virtual void HousingLine(int nListStart);
  // The list of the housing line was read: its first nTaken entries were
  // numbers and went to the device, if bDevice; with no device none is
  // looked at.
  virtual void HousingNumbers(int nTaken, bool bDevice);
};

// The observer of the reads, or null (always, in a host). Set only through
// DevdefReadObserverScope.
extern DEVDEF_API DevdefReadObserver* g_pDevdefReadObserver;

// The observer of the reads, or null.
inline DevdefReadObserver* DevdefActiveReadObserver() { return g_pDevdefReadObserver; }

// Installs an observer for the reads of the process while it lives, and
// puts back the one before.
class DEVDEF_API DevdefReadObserverScope {
 public:
  explicit DevdefReadObserverScope(DevdefReadObserver* pObserver);
  ~DevdefReadObserverScope();
  DevdefReadObserverScope(const DevdefReadObserverScope&) = delete;
  DevdefReadObserverScope& operator=(const DevdefReadObserverScope&) = delete;

 private:
  DevdefReadObserver* m_pPrevious;
};

#endif  // DEVDEF_READER_READ_OBSERVER_H_
