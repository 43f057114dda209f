// Layout 7 header lists (in braces, or on one line for "MODUL_LIST") and
// device blocks with housing lines.
#include "devdef/catalogue/device_def_ctrl_v3.h"
#include "devdef/platform/crt.h"
#include "devdef/reader/definition_head.h"

namespace {

const char kHousingKeyword[] = "DEVICE_HOUSING_LIST:";

bool IsHeaderDelimiter(unsigned char c) { return c == ' ' || c == ',' || c == ';' || c == '{'; }
bool IsEntrySeparator(unsigned char c) { return c == '\t' || c == ' ' || c == ',' || c == '\r' || c == '\n'; }

}  // namespace

int KCDeviceDefCtrlV3::RDF_ReadListsInfo(POSITION posKind, POSITION posManuf, POSITION posDevice, CString& strToken,
                                         unsigned char& cCurrent, int& nLineState) {
  if (!strToken.IsEmpty() || posKind != nullptr || posManuf != nullptr || posDevice != nullptr) return 0;
  const DWORD savedPos = m_nBufPos;
  const unsigned char savedCurrent = cCurrent;
  const BYTE* buffer = m_FileBuf.GetData();
  CStringArray* target = nullptr;
  DevdefReadObserver* observer = nullptr;
  int pieceStart = -1;
  for (;;) {
    if (m_nBufPos >= m_nBufSize) return 0;
    cCurrent = buffer[m_nBufPos];
    if (IsHeaderDelimiter(cCurrent)) {
      if (pieceStart == -1) {
        CStringArray* list = DevdefHeaderList(strToken);
        if (list == nullptr) break;
        observer = DevdefActiveReadObserver();
        if (observer != nullptr) observer->ListKeyword(DevdefListName(list), savedPos, m_nBufPos);
        // The two lists in braces are read from the delimiter on, which may
        // be the opening brace itself.
        if (list != &DEVICE_ITEM::m_ModulList) return RDF_BuildList(list, nullptr);
        target = list;
      } else {
        DevdefAppendListPiece(target, strToken, pieceStart, observer, kDevdefModulList, savedPos);
      }
      pieceStart = strToken.GetLength() + 1;
    }
    if (cCurrent == '\r' || cCurrent == '\n') {
      if (target == nullptr) break;
      // The piece behind the last delimiter is not stored.
      if (observer != nullptr)
        DevdefAppendListPiece(nullptr, strToken, pieceStart, observer, kDevdefModulList, savedPos);
      --m_nBufPos;
      nLineState = 2;
      return 1;
    }
    strToken += cCurrent;
    ++m_nBufPos;
  }
  m_nBufPos = savedPos;
  cCurrent = savedCurrent;
  strToken.Empty();
  return 0;
}

int KCDeviceDefCtrlV3::RDF_BuildList(CStringArray* pList, CByteArray* pText) {
  enum State { kBefore, kBetween, kInEntry, kInComment };
  // A text of its own is scanned with a position of its own; the read buffer
  // is scanned at m_nBufPos, which moves with the scan.
  DWORD ownPos = 0;
  DWORD& pos = pText != nullptr ? ownPos : m_nBufPos;
  const DWORD end = pText != nullptr ? static_cast<DWORD>(pText->GetSize()) : m_nBufSize;
  const BYTE* bytes = pText != nullptr ? pText->GetData() : m_FileBuf.GetData();
  State state = kBefore;
  CString pending;
  DWORD pendingStart = 0;
  bool opened = false;
  bool stored = false;
  DevdefReadObserver* const observer = DevdefActiveReadObserver();
  const int list = observer != nullptr ? DevdefListName(pList) : 0;
  for (; pos < end; ++pos) {
    const unsigned char c = bytes[pos];
    if (c == '{' && state == kBefore) {
      opened = true;
      state = kBetween;
    } else if (c == '}') {
      // "}" ends the list wherever it stands, a comment included.
      const int result = opened && stored ? 1 : 0;
      if (observer != nullptr) {
        if (state == kInEntry) observer->ListEntry(list, pendingStart, pos, false);
        observer->BraceList(list, pos, opened, true, result);
      }
      return result;
    } else if (c == ';' || (c == '/' && state != kInEntry)) {
      if (observer != nullptr && state == kInEntry) observer->ListEntry(list, pendingStart, pos, false);
      pending.Empty();
      state = kInComment;
    } else if (state == kInComment) {
      if (c == '\r' || c == '\n') state = kBetween;
    } else if (state == kBetween) {
      if (opened && !IsEntrySeparator(c)) {
        pending = CString(static_cast<TCHAR>(c));
        pendingStart = pos;
        state = kInEntry;
      }
    } else if (state == kInEntry) {
      if (IsEntrySeparator(c)) {
        pList->SetAtGrow(pList->GetSize(), pending);
        if (observer != nullptr) observer->ListEntry(list, pendingStart, pos, true);
        pending.Empty();
        stored = true;
        state = kBetween;
      } else {
        pending += c;
      }
    }
  }
  if (observer != nullptr) observer->BraceList(list, pos, opened, false, 0);
  return 0;
}

int KCDeviceDefCtrlV3::RDF_ReadKvr3DefLine(POSITION posKind, POSITION posManuf, POSITION posDevice, CString& strToken,
                                           unsigned char& cCurrent, int& nLineState) {
  return RDF_ReadBlockLines(posKind, posManuf, posDevice, strToken, cCurrent, nLineState,
                            static_cast<BlockLineReader>(&KCDeviceDefCtrlV3::RDF_ReadBlockLine));
}

int KCDeviceDefCtrlV3::RDF_ReadBlockLine(POSITION posKind, POSITION posManuf, POSITION posDevice,
                                         const CString& strLine) {
  const int at = strLine.Find(kHousingKeyword);
  if (at < 0) return RDF_ReadKvrXDefLine(posKind, posManuf, posDevice, strLine);

  // A housing line: a list in braces that closes on this line. A list that
  // gives nothing makes the line count for nothing; the block goes on.
  const int start = at + static_cast<int>(sizeof kHousingKeyword) - 1;
  DevdefReadObserver* const observer = DevdefActiveReadObserver();
  if (observer != nullptr) observer->HousingLine(start);
  CByteArray text;
  text.SetSize(strLine.GetLength() - start);
  for (int i = start; i < strLine.GetLength(); ++i) text[i - start] = static_cast<BYTE>(strLine[i]);
  CStringArray entries;
  if (!RDF_BuildList(&entries, &text)) return 1;
  DEVICE_ITEM* device = GetDeviceItem(posKind, posManuf, posDevice);
  if (device == nullptr) {
    if (observer != nullptr) observer->HousingNumbers(0, false);
    return 1;
  }
  int taken = 0;
  for (; taken < entries.GetSize(); ++taken) {
    int number = 0;
    if (DevdefScanDecimal(entries[taken], &number) != 1) break;
    device->m_HousingIds.SetAtGrow(device->m_HousingIds.GetSize(), static_cast<WORD>(number));
  }
  if (observer != nullptr) observer->HousingNumbers(taken, true);
  return 1;
}
