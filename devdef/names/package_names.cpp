#include <string>

#include "devdef/catalogue/device_item.h"

namespace {

// What stands behind the last "/", or the whole text.
std::string BehindLastSlash(const std::string& text) {
  const size_t slash = text.rfind('/');
  return slash == std::string::npos ? text : text.substr(slash + 1);
}

// What stands behind the first "#", or the text unchanged.
std::string BehindHash(const std::string& text) {
  const size_t hash = text.find('#');
  return hash == std::string::npos ? text : text.substr(hash + 1);
}

// What stands in front of the first "#", or the empty text without one.
std::string BeforeHash(const std::string& text) {
  const size_t hash = text.find('#');
  return hash == std::string::npos ? std::string() : text.substr(0, hash);
}

bool HasHash(const std::string& text) { return text.find('#') != std::string::npos; }

}  // namespace

std::string DEVICE_ITEM::GetK5PackageName(std::string strName) {
  return BeforeHash(BehindHash(BehindLastSlash(strName)));
}

std::string DEVICE_ITEM::GetK5ModuleName(std::string strName) {
  const std::string rest = BehindHash(BehindHash(BehindLastSlash(strName)));
  if (!HasHash(rest)) return std::string();
  return "@(MODULE = " + BeforeHash(rest) + ")";
}

const char* DEVICE_ITEM::GetDevicePackage(int nIndex) {
  // Built on the first call, shared by every device of every controller.
  static CString s_strPackage;
  DEVICE_KVRXDEF_ITEM* def = find_by_index(nIndex);
  if (def == nullptr) return nullptr;
  const std::string name(static_cast<LPCTSTR>(def->m_XDefName), static_cast<size_t>(def->m_XDefName.GetLength()));
  const unsigned generation = def->m_KvrType;
  if (generation >= 9 && generation <= 12) {
    s_strPackage = (GetK5PackageName(name) + GetK5ModuleName(name)).c_str();
  } else if (generation == 5 && !def->m_XDefName.IsEmpty()) {
    s_strPackage = GetK5PackageName(name).c_str();
  } else if (def->m_PackageIds.GetSize() == 0) {
    s_strPackage = "No PackageId";
  } else {
    const WORD package = def->m_PackageIds[0];
    if (package < m_PackageList.GetSize()) {
      s_strPackage = m_PackageList[package];
    } else {
      s_strPackage.Format("##%d", static_cast<int>(package));
    }
  }
  return s_strPackage;
}
