#include "tools/analysis/catalogue_checks.h"

#include <string>

namespace {

void Add(std::vector<RawFinding>& out, const char* kind, ByteSpan span, std::string message) {
  out.push_back(RawFinding{kind, span, std::move(message), {}});
}

std::string LineOf(const SourceMap& map, ByteSpan span) { return std::to_string(map.PointOf(span.begin).line); }

}  // namespace

void CheckNames(const std::vector<NamePlace>& names, std::vector<RawFinding>& out) {
  for (const NamePlace& place : names) {
    if (place.name->Find(' ') < 0) continue;
    Add(out, "name", place.span,
        std::string(place.what) + " name '" + static_cast<LPCTSTR>(*place.name) +
            "' holds a blank, which the writer keeps: the name will not read back whole");
  }
}

void CheckDefinitions(const std::vector<std::pair<DEVICE_ITEM*, int>>& order,
                      const std::unordered_map<const DEVICE_ITEM*, DeviceSpans>& devices, int layout,
                      const SourceMap& map, std::vector<RawFinding>& out) {
  // The first definition of each id: its place and whether its finding is out.
  struct First {
    ByteSpan span;
    long finding;
  };
  std::unordered_map<DWORD, First> firsts;
  firsts.reserve(order.size());
  for (const auto& entry : order) {
    DEVICE_ITEM& device = *entry.first;
    DEVICE_KVRXDEF_ITEM& def = device.m_DefArray[entry.second];
    const ByteSpan span = devices.at(&device).definitions[static_cast<size_t>(entry.second)];
    const std::string id = std::to_string(def.m_DefID);
    auto seen = firsts.emplace(def.m_DefID, First{span, -1});
    if (!seen.second) {
      First& first = seen.first->second;
      if (first.finding < 0) {
        Add(out, "duplicate-id", first.span, "id " + id + " is used again at line " + LineOf(map, span));
        first.finding = static_cast<long>(out.size() - 1);
      }
      out[static_cast<size_t>(first.finding)].related.push_back(RelatedSpan{span, "id " + id + " used again"});
      Add(out, "duplicate-id", span, "id " + id + " is already used at line " + LineOf(map, first.span));
      out.back().related.push_back(RelatedSpan{first.span, "id " + id + " first used here"});
    }
    for (int i = 0; i < def.m_PackageIds.GetSize(); ++i) {
      if (DEVICE_ITEM::GetPackageName(def.m_PackageIds[i]) == nullptr) {
        Add(out, "bad-number", span, "package " + std::to_string(def.m_PackageIds[i]) + " has no name in HOUSING_LIST");
      }
    }
    for (int i = 0; i < def.m_AdapterIds.GetSize(); ++i) {
      if (DEVICE_ITEM::GetAdapterName(def.m_AdapterIds[i]) == nullptr) {
        Add(out, "bad-number", span, "adapter " + std::to_string(def.m_AdapterIds[i]) + " has no name in ADAPTER_LIST");
      }
    }
    if (DEVICE_ITEM::GetModulName(static_cast<int>(def.m_ModulId)) == nullptr) {
      Add(out, "bad-number", span, "module " + std::to_string(def.m_ModulId) + " has no name in MODUL_LIST");
    }
    if (layout != 7) continue;
    if ((def.m_MarkFlags & ~device.m_DeviceFlags) != 0) {
      Add(out, "layout7-writer", span, "the mark in front of the definition line is not written back");
    }
    if (def.m_PackageIds.GetSize() > 1) {
      Add(out, "layout7-writer", span, "only the first of the package numbers is written back");
    }
    if (def.m_DefValues[10] > 9) {
      Add(out, "layout7-writer", span,
          "value 10 (" + std::to_string(def.m_DefValues[10]) +
              ") is written in decimal and read in hexadecimal: it will not read back the same");
    }
  }
}
