#include "tools/tree_printer.h"

#include <string>

namespace {

// A number with its name from a name list, or the number alone when the list
// has no such entry.
std::string Named(unsigned number, const char* name) {
  std::string text = std::to_string(number);
  if (name != nullptr) text += " (" + std::string(name) + ")";
  return text;
}

void PrintDefinition(std::FILE* out, DEVICE_KVRXDEF_ITEM& def) {
  std::string adapters;
  for (int i = 0; i < def.m_AdapterIds.GetSize(); ++i) {
    if (i > 0) adapters += ", ";
    adapters += Named(def.m_AdapterIds[i], DEVICE_ITEM::GetAdapterName(def.m_AdapterIds[i]));
  }
  const std::string package =
      def.m_PackageIds.GetSize() > 0 ? Named(def.m_PackageIds[0], DEVICE_ITEM::GetPackageName(def.m_PackageIds[0]))
                                     : std::string("none");
  std::fprintf(out, "      id %u  KVR%u  package %s  module %s  adapters %s  value %d\n", static_cast<unsigned>(def.m_DefID),
               static_cast<unsigned>(def.m_KvrType), package.c_str(),
               Named(def.m_ModulId, DEVICE_ITEM::GetModulName(static_cast<int>(def.m_ModulId))).c_str(),
               adapters.empty() ? "none" : adapters.c_str(), static_cast<int>(def.m_DefValues[2]));
  std::fprintf(out, "        text:%s\n", static_cast<const char*>(def.m_DefLine));
}

}  // namespace

void PrintTree(std::FILE* out, KCDeviceDefCtrl& ctrl) {
  CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>& kinds = ctrl.getDeviceList();
  POSITION posKind = kinds.GetHeadPosition();
  while (posKind != nullptr) {
    TAG_KIND_OF_DEVICE& kind = kinds.GetNext(posKind);
    std::fprintf(out, "%s\n", static_cast<const char*>(kind.m_Name));
    if (kind.m_pManufList == nullptr) continue;
    POSITION posManuf = kind.m_pManufList->GetHeadPosition();
    while (posManuf != nullptr) {
      TAG_DEVICE_MANUF& manuf = kind.m_pManufList->GetNext(posManuf);
      std::fprintf(out, "  %s\n", static_cast<const char*>(manuf.m_Name));
      if (manuf.m_pDeviceList == nullptr) continue;
      POSITION posDevice = manuf.m_pDeviceList->GetHeadPosition();
      while (posDevice != nullptr) {
        DEVICE_ITEM& device = manuf.m_pDeviceList->GetNext(posDevice);
        const int visible = device.GetNumDevDefs();
        std::fprintf(out, "    %s  (%d visible of %d definitions)\n", device.GetDeviceName(), visible,
                     device.m_DefArray.GetSize());
        for (int i = 0; i < visible; ++i) PrintDefinition(out, device.GetDeviceXItemRef(i));
      }
    }
  }
}
