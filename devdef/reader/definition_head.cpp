#include "devdef/reader/definition_head.h"

#include <cstring>
#include <vector>

#include "devdef/catalogue/device_item.h"
#include "devdef/platform/crt.h"
#include "devdef/platform/number_scan.h"

int DevdefDefinitionKeyword(const char* pszLine) {
  // Byte by byte, so the comparison stops at the first byte that differs and
  // never reads past a line's terminating zero.
  const char* p = pszLine;
  if (p[0] != 'K' || p[1] != 'V' || p[2] != 'R') return 0;
  const char generation = p[3];
  if (generation < '3' || generation > '5') return 0;
  if (p[4] != 'D' || p[5] != 'E' || p[6] != 'F' || p[7] != ':') return 0;
  return generation - '0';
}

template <class Report>
bool DevdefSplitDefinitionLine(const char* pLine, int nLength, DEVICE_KVRXDEF_ITEM& def, CString& strHead,
                               Report& report, int nOffset) {
  const int generation = DevdefDefinitionKeyword(pLine);
  if (generation == 0) return false;  // so the line has at least 8 bytes
  const void* found = std::memchr(pLine + 8, ':', static_cast<size_t>(nLength - 8));
  if (found == nullptr) return false;
  report.Keyword(nOffset);
  const int colon = static_cast<int>(static_cast<const char*>(found) - pLine);
  def.m_KvrType = static_cast<BYTE>(generation);
  def.m_DefLine = CString(pLine + colon + 1, nLength - colon - 1);

  int in = 8;
  while (in < colon && DevdefIsSpace(static_cast<unsigned char>(pLine[in]))) ++in;
  report.Head(in + nOffset);
  int* const pSources = report.Sources(nLength, nOffset);
  const char* const end = pLine + colon;
  LPTSTR head = strHead.GetBuffer(colon - in);
  char* out = head;
  // The first byte kept is no blank, so a blank is dropped exactly when the
  // byte kept before it is a blank.
  char previous = '\0';
  if (pSources == nullptr) {
    for (const char* p = pLine + in; p < end; ++p) {
      const char c = *p == '\t' ? ' ' : *p;
      if (c == ' ' && previous == ' ') continue;
      *out++ = c;
      previous = c;
    }
  } else {
    for (const char* p = pLine + in; p < end; ++p) {
      const char c = *p == '\t' ? ' ' : *p;
      if (c == ' ' && previous == ' ') continue;
      pSources[out - head] = static_cast<int>(p - pLine);
      *out++ = c;
      previous = c;
    }
  }
  strHead.ReleaseBuffer(static_cast<int>(out - head));
  return true;
}

template bool DevdefSplitDefinitionLine(const char*, int, DEVICE_KVRXDEF_ITEM&, CString&, DevdefLineReport&, int);
template bool DevdefSplitDefinitionLine(const char*, int, DEVICE_KVRXDEF_ITEM&, CString&, DevdefNoReport&, int);

int* DevdefLineReport::MapFor(int nLength, int nOffset) {
  // One map per thread, reused line after line.
  static thread_local std::vector<int> sources;
  if (sources.size() < static_cast<size_t>(nLength) + 1) sources.resize(static_cast<size_t>(nLength) + 1);
  m_pSources = sources.data();
  m_nOffset = nOffset;
  return m_pSources;
}

void DevdefLineReport::ReportField(int nField, int nIndex, const char* pHead, const char* pAt, bool bHex,
                                   DWORD nValue) {
  // Where the number ends: a run of digits right at the field, as nearly
  // every number is, read here; anything else by the reader's own scanner.
  const char* first = pAt;
  const char* end = pAt;
  if (bHex ? DevdefHexDigit(static_cast<unsigned char>(*end)) >= 0 && !(end[0] == '0' && (end[1] == 'x' || end[1] == 'X'))
           : static_cast<unsigned char>(*end - '0') <= 9) {
    if (bHex) {
      while (DevdefHexDigit(static_cast<unsigned char>(*end)) >= 0) ++end;
    } else {
      while (static_cast<unsigned char>(*end - '0') <= 9) ++end;
    }
  } else {
    unsigned int number = 0;
    end = DevdefScanNumber(pAt, bHex, &number, &first);
    if (end == nullptr || end == first) return;
  }
  const int begin = m_pSources[first - pHead] + m_nOffset;
  const int stop = m_pSources[end - pHead - 1] + 1 + m_nOffset;
  m_pObserver->DefinitionField(nField, nIndex, begin, stop, bHex, nValue);
}

CStringArray* DevdefHeaderList(const CString& strKeyword) {
  if (strKeyword.CompareNoCase("HOUSING_LIST") == 0 && strKeyword.GetLength() == 12) {
    return &DEVICE_ITEM::m_PackageList;
  }
  if (strKeyword.CompareNoCase("ADAPTER_LIST") == 0 && strKeyword.GetLength() == 12) {
    return &DEVICE_ITEM::m_AdapterList;
  }
  if (strKeyword.CompareNoCase("MODUL_LIST") == 0 && strKeyword.GetLength() == 10) {
    return &DEVICE_ITEM::m_ModulList;
  }
  return nullptr;
}

void DevdefAppendListPiece(CStringArray* pList, const CString& strLine, int nPieceStart, DevdefReadObserver* pObserver,
                           int nList, DWORD nBase) {
  if (strLine.GetLength() <= nPieceStart) return;
  CString piece = strLine.Mid(nPieceStart);
  const int untrimmed = piece.GetLength();
  piece.TrimLeft();
  const int first = nPieceStart + untrimmed - piece.GetLength();
  piece.TrimRight(" \t,;");
  if (piece.IsEmpty()) return;
  if (pList != nullptr) pList->SetAtGrow(pList->GetSize(), piece);
  if (pObserver != nullptr) {
    pObserver->ListEntry(nList, nBase + static_cast<DWORD>(first),
                         nBase + static_cast<DWORD>(first + piece.GetLength()), pList != nullptr);
  }
}

int DevdefListName(const CStringArray* pList) {
  if (pList == &DEVICE_ITEM::m_PackageList) return kDevdefHousingList;
  if (pList == &DEVICE_ITEM::m_AdapterList) return kDevdefAdapterList;
  if (pList == &DEVICE_ITEM::m_ModulList) return kDevdefModulList;
  return kDevdefDeviceHousingList;
}

void DevdefAddReadDefinition(DEVICE_ITEM& device, int nKvrType, DEVICE_KVRXDEF_ITEM& def) {
  def.RefreshKvrType(nKvrType);
  def.m_pDevice = &device;
  const int index = device.m_DefArray.GetSize();
  device.m_DefArray.SetSize(index + 1);  // the same growth as SetAtGrow
  device.m_DefArray[index] = static_cast<DEVICE_KVRXDEF_ITEM&&>(def);
}
