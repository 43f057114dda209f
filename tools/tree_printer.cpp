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

std::string AdapterNames(DEVICE_KVRXDEF_ITEM& def) {
  std::string adapters;
  for (int i = 0; i < def.m_AdapterIds.GetSize(); ++i) {
    if (i > 0) adapters += ", ";
    adapters += Named(def.m_AdapterIds[i], DEVICE_ITEM::GetAdapterName(def.m_AdapterIds[i]));
  }
  return adapters.empty() ? "none" : adapters;
}

void PrintDefinition(std::FILE* out, DEVICE_KVRXDEF_ITEM& def) {
  const std::string adapters = AdapterNames(def);
  const std::string package =
      def.m_PackageIds.GetSize() > 0 ? Named(def.m_PackageIds[0], DEVICE_ITEM::GetPackageName(def.m_PackageIds[0]))
                                     : std::string("none");
  std::fprintf(out, "      id %u  KVR%u  package %s  module %s  adapters %s  value %d\n", static_cast<unsigned>(def.m_DefID),
               static_cast<unsigned>(def.m_KvrType), package.c_str(),
               Named(def.m_ModulId, DEVICE_ITEM::GetModulName(static_cast<int>(def.m_ModulId))).c_str(),
               adapters.c_str(), static_cast<int>(def.m_DefValues[2]));
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

bool PrintFoundId(std::FILE* out, KCDeviceDefCtrl& ctrl, int nId) {
  POSITION posKind = nullptr;
  POSITION posManuf = nullptr;
  POSITION posDevice = nullptr;
  int index = -1;
  DEVICE_ITEM* device = nullptr;
  DEVICE_KVRXDEF_ITEM* def = nullptr;
  if (!ctrl.FindDeviceItem(nId, &posKind, &posManuf, &posDevice, &index, &device, &def)) return false;
  const TAG_KIND_OF_DEVICE& kind = ctrl.getDeviceList().GetAt(posKind);
  const TAG_DEVICE_MANUF& manuf = CList<TAG_DEVICE_MANUF, TAG_DEVICE_MANUF&>::GetAtPosition(posManuf);
  std::fprintf(out, "kind: %s\n", static_cast<const char*>(kind.m_Name));
  std::fprintf(out, "manufacturer: %s\n", static_cast<const char*>(manuf.m_Name));
  std::fprintf(out, "device: %s\n", device->GetDeviceName());
  std::fprintf(out, "visible index: %d\n", index);
  std::fprintf(out, "id: %u\n", static_cast<unsigned>(def->m_DefID));
  std::fprintf(out, "generation: %u\n", static_cast<unsigned>(def->m_KvrType));
  const char* packageName = device->GetDevicePackage(index);
  std::fprintf(out, "package: %s\n", packageName != nullptr ? packageName : "");
  std::string numbers;
  for (int i = 0; i < def->m_PackageIds.GetSize(); ++i) {
    numbers += (i > 0 ? ", " : "") + std::to_string(def->m_PackageIds[i]);
  }
  std::fprintf(out, "package numbers: %s\n", numbers.empty() ? "none" : numbers.c_str());
  std::fprintf(out, "module: %s\n",
               Named(def->m_ModulId, DEVICE_ITEM::GetModulName(static_cast<int>(def->m_ModulId))).c_str());
  std::fprintf(out, "adapters: %s\n", AdapterNames(*def).c_str());
  std::string values;
  for (int i = 0; i < 11; ++i) values += (i > 0 ? " " : "") + std::to_string(static_cast<int>(def->m_DefValues[i]));
  std::fprintf(out, "values: %s\n", values.c_str());
  std::fprintf(out, "text:%s\n", static_cast<const char*>(def->m_DefLine));
  return true;
}
