#include "tools/analysis/catalogue_checks.h"

#include <string>

#include "tools/analysis/definition_fields.h"

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

void CheckDefinitions(const std::string& bytes, const std::vector<std::pair<DEVICE_ITEM*, int>>& order,
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
    // A number is pointed at where it stands, when its field is found with
    // the number the reader stored; else the whole line is.
    std::vector<DefinitionField> fields;
    auto numberSpan = [&](DefinitionField::Kind kind, int index, unsigned long value, unsigned long mask) {
      if (fields.empty()) fields = SplitDefinitionFields(bytes, span, layout);
      const DefinitionField* field = FindField(fields, bytes, kind, index, value, mask);
      return field != nullptr ? field->span : span;
    };
    const std::string id = std::to_string(def.m_DefID);
    const ByteSpan idSpan = numberSpan(DefinitionField::kId, 0, def.m_DefID, 0xFFFFFFFF);
    auto seen = firsts.emplace(def.m_DefID, First{idSpan, -1});
    if (!seen.second) {
      First& first = seen.first->second;
      if (first.finding < 0) {
        Add(out, "duplicate-id", first.span, "id " + id + " is used again at line " + LineOf(map, idSpan));
        first.finding = static_cast<long>(out.size() - 1);
      }
      out[static_cast<size_t>(first.finding)].related.push_back(RelatedSpan{idSpan, "id " + id + " used again"});
      Add(out, "duplicate-id", idSpan, "id " + id + " is already used at line " + LineOf(map, first.span));
      out.back().related.push_back(RelatedSpan{first.span, "id " + id + " first used here"});
    }
    for (int i = 0; i < def.m_PackageIds.GetSize(); ++i) {
      if (DEVICE_ITEM::GetPackageName(def.m_PackageIds[i]) == nullptr) {
        Add(out, "bad-number", numberSpan(DefinitionField::kPackage, i, def.m_PackageIds[i], 0xFFFF),
            "package " + std::to_string(def.m_PackageIds[i]) + " has no name in HOUSING_LIST");
      }
    }
    if (DEVICE_ITEM::GetModulName(static_cast<int>(def.m_ModulId)) == nullptr) {
      Add(out, "bad-number", numberSpan(DefinitionField::kModule, 0, def.m_ModulId, 0xFFFFFFFF),
          "module " + std::to_string(def.m_ModulId) + " has no name in MODUL_LIST");
    }
    for (int i = 0; i < def.m_AdapterIds.GetSize(); ++i) {
      if (DEVICE_ITEM::GetAdapterName(def.m_AdapterIds[i]) == nullptr) {
        Add(out, "bad-number", numberSpan(DefinitionField::kAdapter, i, def.m_AdapterIds[i], 0xFFFF),
            "adapter " + std::to_string(def.m_AdapterIds[i]) + " has no name in ADAPTER_LIST");
      }
    }
    if (layout != 7) continue;
    if ((def.m_MarkFlags & ~device.m_DeviceFlags) != 0) {
      Add(out, "layout7-writer", span, "the mark in front of the definition line is not written back");
    }
    if (def.m_PackageIds.GetSize() > 1) {
      Add(out, "layout7-writer", span, "only the first of the package numbers is written back");
    }
    if (def.m_DefValues[10] > 9) {
      Add(out, "layout7-writer", numberSpan(DefinitionField::kValue, 10, 0, 0),
          "value 10 (" + std::to_string(def.m_DefValues[10]) +
              ") is written in decimal and read in hexadecimal: it will not read back the same");
    }
  }
}
