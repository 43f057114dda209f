#include "tools/analysis/catalogue_checks.h"

#include <algorithm>
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

void CheckDefinitions(const std::string& bytes, const std::vector<DefinitionSpan>& order, int layout,
                      const SourceMap& map, std::vector<RawFinding>& out) {
  // A number is pointed at where it stands, when its field is found with the
  // number the reader stored; else the whole line is. The line is split only
  // for a definition that has something to say.
  std::vector<DefinitionField> fields;
  const DefinitionSpan* split = nullptr;
  auto numberSpan = [&](const DefinitionSpan& at, DefinitionField::Kind kind, int index, unsigned long value,
                        unsigned long mask) {
    if (split != &at) {
      fields = SplitDefinitionFields(bytes, at.span, layout);
      split = &at;
    }
    const DefinitionField* field = FindField(fields, bytes, kind, index, value, mask);
    return field != nullptr ? field->span : at.span;
  };
  auto defOf = [](const DefinitionSpan& at) -> DEVICE_KVRXDEF_ITEM& { return at.device->m_DefArray[at.index]; };

  // Ids used more than once: the definitions sorted by id, in file order
  // within an id.
  std::vector<std::pair<DWORD, size_t>> ids;
  ids.reserve(order.size());
  for (size_t i = 0; i < order.size(); ++i) ids.emplace_back(defOf(order[i]).m_DefID, i);
  std::sort(ids.begin(), ids.end());
  for (size_t run = 0; run < ids.size();) {
    size_t end = run + 1;
    while (end < ids.size() && ids[end].first == ids[run].first) ++end;
    if (end - run > 1) {
      const std::string id = std::to_string(ids[run].first);
      const DefinitionSpan& first = order[ids[run].second];
      const ByteSpan firstSpan = numberSpan(first, DefinitionField::kId, 0, ids[run].first, 0xFFFFFFFF);
      RawFinding used{"duplicate-id", firstSpan, std::string(), {}};
      for (size_t i = run + 1; i < end; ++i) {
        const ByteSpan again = numberSpan(order[ids[i].second], DefinitionField::kId, 0, ids[i].first, 0xFFFFFFFF);
        if (used.message.empty()) used.message = "id " + id + " is used again at line " + LineOf(map, again);
        used.related.push_back(RelatedSpan{again, "id " + id + " used again"});
        Add(out, "duplicate-id", again, "id " + id + " is already used at line " + LineOf(map, firstSpan));
        out.back().related.push_back(RelatedSpan{firstSpan, "id " + id + " first used here"});
      }
      out.push_back(std::move(used));
    }
    run = end;
  }

  const int packages = DEVICE_ITEM::m_PackageList.GetSize();
  const int adapters = DEVICE_ITEM::m_AdapterList.GetSize();
  const int modules = DEVICE_ITEM::m_ModulList.GetSize();
  for (const DefinitionSpan& at : order) {
    DEVICE_KVRXDEF_ITEM& def = defOf(at);
    for (int i = 0; i < def.m_PackageIds.GetSize(); ++i) {
      if (def.m_PackageIds[i] >= packages) {
        Add(out, "bad-number", numberSpan(at, DefinitionField::kPackage, i, def.m_PackageIds[i], 0xFFFF),
            "package " + std::to_string(def.m_PackageIds[i]) + " has no name in HOUSING_LIST");
      }
    }
    if (def.m_ModulId >= static_cast<DWORD>(modules)) {
      Add(out, "bad-number", numberSpan(at, DefinitionField::kModule, 0, def.m_ModulId, 0xFFFFFFFF),
          "module " + std::to_string(def.m_ModulId) + " has no name in MODUL_LIST");
    }
    for (int i = 0; i < def.m_AdapterIds.GetSize(); ++i) {
      if (def.m_AdapterIds[i] >= adapters) {
        Add(out, "bad-number", numberSpan(at, DefinitionField::kAdapter, i, def.m_AdapterIds[i], 0xFFFF),
            "adapter " + std::to_string(def.m_AdapterIds[i]) + " has no name in ADAPTER_LIST");
      }
    }
    if (layout != 7) continue;
    if ((def.m_MarkFlags & ~at.device->m_DeviceFlags) != 0) {
      Add(out, "layout7-writer", at.span, "the mark in front of the definition line is not written back");
    }
    if (def.m_PackageIds.GetSize() > 1) {
      Add(out, "layout7-writer", at.span, "only the first of the package numbers is written back");
    }
    if (def.m_DefValues[10] > 9) {
      Add(out, "layout7-writer", numberSpan(at, DefinitionField::kValue, 10, 0, 0),
          "value 10 (" + std::to_string(def.m_DefValues[10]) +
              ") is written in decimal and read in hexadecimal: it will not read back the same");
    }
  }
}
