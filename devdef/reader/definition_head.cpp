#include "devdef/reader/definition_head.h"

#include <cstring>

#include "devdef/catalogue/device_item.h"

int DevdefDefinitionKeyword(const char* pszLine) {
  static const char* const kKeywords[] = {"KVR3DEF:", "KVR4DEF:", "KVR5DEF:"};
  for (int i = 0; i < 3; ++i) {
    if (std::strncmp(pszLine, kKeywords[i], 8) == 0) return 3 + i;
  }
  return 0;
}

bool DevdefSplitDefinitionLine(const CString& strLine, DEVICE_KVRXDEF_ITEM& def, CString& strHead) {
  const int generation = DevdefDefinitionKeyword(strLine);
  if (generation == 0) return false;
  const int colon = strLine.Find(':', 8);
  if (colon < 0) return false;
  def.m_KvrType = static_cast<BYTE>(generation);
  strHead = strLine.Mid(8, colon - 8);
  def.m_DefLine = strLine.Mid(colon + 1);
  DevdefNormaliseHead(strHead);
  return true;
}

void DevdefNormaliseHead(CString& strHead) {
  strHead.TrimLeft();
  strHead.Replace('\t', ' ');
  // Replacing two blanks by one until nothing changes leaves every run of
  // blanks as one blank; doing it in one pass gives the same text.
  const int length = strHead.GetLength();
  LPTSTR text = strHead.GetBuffer(length);
  int out = 0;
  for (int in = 0; in < length; ++in) {
    if (text[in] == ' ' && out > 0 && text[out - 1] == ' ') continue;
    text[out++] = text[in];
  }
  strHead.ReleaseBuffer(out);
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
