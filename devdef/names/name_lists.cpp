#include "devdef/catalogue/device_item.h"

CStringArray DEVICE_ITEM::m_PackageList;
CStringArray DEVICE_ITEM::m_AdapterList;
CStringArray DEVICE_ITEM::m_ModulList;

namespace {

const char* NameAt(const CStringArray& list, int nIndex) {
  if (nIndex < 0 || nIndex >= list.GetSize()) return nullptr;
  return list[nIndex];
}

}  // namespace

const char* DEVICE_ITEM::GetPackageName(int nIndex) { return NameAt(m_PackageList, nIndex); }
const char* DEVICE_ITEM::GetAdapterName(int nIndex) { return NameAt(m_AdapterList, nIndex); }
const char* DEVICE_ITEM::GetModulName(int nIndex) { return NameAt(m_ModulList, nIndex); }

CString DEVICE_ITEM::GetAdaptPackage(CString strName) {
  // first "_" second "_" package "/" rest
  int at = strName.Find('_');
  if (at < 0) return CString();
  strName = strName.Mid(at + 1);
  at = strName.Find('_');
  if (at < 0) return CString();
  strName = strName.Mid(at + 1);
  at = strName.Find('/');
  if (at < 0) return CString();
  return strName.Left(at);
}
