#include "devdef/reader/definition_head.h"

#include <cstring>

#include "devdef/catalogue/device_item.h"
#include "devdef/platform/crt.h"

namespace {

// Whether [pBegin, pEnd) has neither a tab nor two blanks in a row.
bool IsNormal(const char* pBegin, const char* pEnd) {
  if (std::memchr(pBegin, '\t', static_cast<size_t>(pEnd - pBegin)) != nullptr) return false;
  for (const char* p = pBegin; p < pEnd;) {
    const char* blank = static_cast<const char*>(std::memchr(p, ' ', static_cast<size_t>(pEnd - p)));
    if (blank == nullptr) return true;
    if (blank + 1 < pEnd && blank[1] == ' ') return false;
    p = blank + 1;
  }
  return true;
}

}  // namespace

int DevdefDefinitionKeyword(const char* pszLine) {
  static const char* const kKeywords[] = {"KVR3DEF:", "KVR4DEF:", "KVR5DEF:"};
  for (int i = 0; i < 3; ++i) {
    if (std::strncmp(pszLine, kKeywords[i], 8) == 0) return 3 + i;
  }
  return 0;
}

bool DevdefSplitDefinitionLine(const char* pLine, int nLength, DEVICE_KVRXDEF_ITEM& def, CString& strHead) {
  const int generation = DevdefDefinitionKeyword(pLine);
  if (generation == 0) return false;  // so the line has at least 8 bytes
  const void* found = std::memchr(pLine + 8, ':', static_cast<size_t>(nLength - 8));
  if (found == nullptr) return false;
  const int colon = static_cast<int>(static_cast<const char*>(found) - pLine);
  def.m_KvrType = static_cast<BYTE>(generation);
  def.m_DefLine = CString(pLine + colon + 1, nLength - colon - 1);

  int in = 8;
  while (in < colon && DevdefIsSpace(static_cast<unsigned char>(pLine[in]))) ++in;
  const char* from = pLine + in;
  const char* const end = pLine + colon;
  LPTSTR head = strHead.GetBuffer(colon - in);
  char* out = head;
  if (IsNormal(from, end)) {
    // Most heads are already normal: one copy.
    std::memcpy(head, from, static_cast<size_t>(end - from));
    out += end - from;
  } else {
    // The first byte kept is no blank, so a blank is dropped exactly when
    // the byte kept before it is a blank.
    char previous = '\0';
    for (const char* p = from; p < end; ++p) {
      const char c = *p == '\t' ? ' ' : *p;
      if (c == ' ' && previous == ' ') continue;
      *out++ = c;
      previous = c;
    }
  }
  strHead.ReleaseBuffer(static_cast<int>(out - head));
  return true;
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

void DevdefAppendListPiece(CStringArray* pList, const CString& strLine, int nPieceStart) {
  if (strLine.GetLength() <= nPieceStart) return;
  CString piece = strLine.Mid(nPieceStart);
  piece.TrimLeft();
  piece.TrimRight(" \t,;");
  if (!piece.IsEmpty()) pList->SetAtGrow(pList->GetSize(), piece);
}

void DevdefAddReadDefinition(DEVICE_ITEM& device, int nKvrType, DEVICE_KVRXDEF_ITEM& def) {
  def.RefreshKvrType(nKvrType);
  def.m_pDevice = &device;
  const int index = device.m_DefArray.GetSize();
  device.m_DefArray.SetSize(index + 1);  // the same growth as SetAtGrow
  device.m_DefArray[index] = static_cast<DEVICE_KVRXDEF_ITEM&&>(def);
}
