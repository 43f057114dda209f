#include "tools/lsp/features/hover.h"

#include <string>

#include "tools/lsp/features/definition_field_at.h"

using nlohmann::json;

namespace {

// A name as the file's bytes; the hover's text is decoded as a whole.
std::string RawName(const CString& name) {
  if (name.GetLength() == 0) return "(no name)";
  return std::string(static_cast<LPCTSTR>(name), static_cast<size_t>(name.GetLength()));
}

std::string Count(long count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

// Definitions of a device: all of them and the visible ones.
struct DefinitionCounts {
  long all = 0;
  long visible = 0;
  long devices = 0;

  void Add(DEVICE_ITEM& device) {
    ++devices;
    all += device.m_DefArray.GetSize();
    visible += device.GetNumDevDefs();
  }
  void Add(TAG_DEVICE_MANUF& manuf) {
    if (manuf.m_pDeviceList == nullptr) return;
    for (POSITION d = manuf.m_pDeviceList->GetHeadPosition(); d != nullptr;) Add(manuf.m_pDeviceList->GetNext(d));
  }
  std::string Text(int generation) const {
    return Count(all, "definition", "definitions") + ", " + std::to_string(visible) + " visible in generation " +
           std::to_string(generation);
  }
};

std::string KindText(const DocumentView& view, TAG_KIND_OF_DEVICE& kind) {
  DefinitionCounts counts;
  long manufacturers = 0;
  if (kind.m_pManufList != nullptr) {
    for (POSITION m = kind.m_pManufList->GetHeadPosition(); m != nullptr; ++manufacturers) {
      counts.Add(kind.m_pManufList->GetNext(m));
    }
  }
  return "kind " + RawName(kind.m_Name) + "\n" + Count(manufacturers, "manufacturer", "manufacturers") + ", " +
         Count(counts.devices, "device", "devices") + ", " + counts.Text(view.generation);
}

std::string ManufacturerText(const DocumentView& view, const IndexedPlace& place) {
  DefinitionCounts counts;
  counts.Add(*place.manufacturer);
  return "manufacturer " + RawName(place.manufacturer->m_Name) + " (" + RawName(place.kindItem->m_Name) + ")\n" +
         Count(counts.devices, "device", "devices") + ", " + counts.Text(view.generation);
}

std::string DeviceText(const DocumentView& view, const IndexedPlace& place) {
  DefinitionCounts counts;
  counts.Add(*place.device);
  return "device " + RawName(place.device->m_DeviceName) + " (" + RawName(place.kindItem->m_Name) + " / " +
         RawName(place.manufacturer->m_Name) + ")\n" + counts.Text(view.generation);
}

std::string EntryText(const DocumentView& view, int list, unsigned long number) {
  const std::vector<std::string>& names = view.analysis.ListNames(list);
  if (number >= names.size()) {
    return std::string("no entry ") + std::to_string(number) + " in " + ListKeyword(list) + " (it has " +
           Count(static_cast<long>(names.size()), "entry", "entries") + ")";
  }
  std::string text = names[number] + "\nentry " + std::to_string(number) + " of " + ListKeyword(list);
  const std::vector<TextRange>& entries = view.analysis.ListPlace(list).entries;
  if (number < entries.size()) text += " (line " + std::to_string(entries[number].start.line) + ")";
  return text;
}

std::string FieldName(const DefinitionField& field) {
  switch (field.kind) {
    case DefinitionField::kId:
      return "id";
    case DefinitionField::kPackage:
      return "package";
    case DefinitionField::kModule:
      return "module";
    case DefinitionField::kAdapter:
      return "adapter";
    case DefinitionField::kValue:
      return "value " + std::to_string(field.index + 1) + " of 11";
  }
  return "field";
}

std::string FieldText(const DocumentView& view, const StoredField& field) {
  const std::string name = FieldName(field.field);
  if (!field.stored) return name + ": not read";
  std::string text = name + (field.field.kind == DefinitionField::kValue ? ": " : " ") + std::to_string(field.value);
  if (field.list >= 0) text += ": " + EntryText(view, field.list, field.value);
  if (field.list >= 0 && field.field.index > 0) {
    text += "\n" + name + " " + std::to_string(field.field.index + 1) + " of the line";
  }
  if (!field.asWritten) {
    const std::string& bytes = view.analysis.Bytes();
    text += "\nthe reader took " + std::to_string(field.value) + " from '" +
            bytes.substr(field.field.span.begin, field.field.span.end - field.field.span.begin) + "'";
  }
  return text;
}

std::string KeywordText(const DocumentView& view, const IndexedPlace& place, const DEVICE_KVRXDEF_ITEM& def) {
  std::string text = "generation " + std::to_string(def.m_KvrType) + ": ";
  text += def.IsHidden() ? "hidden in generation " : "visible in generation ";
  text += std::to_string(view.generation) + ", the generation in force";
  text += "\ndefinition " + std::to_string(def.m_DefID) + " of " + RawName(place.device->m_DeviceName);
  return text;
}

json Hover(const DocumentView& view, const std::string& text, const TextRange& range) {
  return json{{"contents", {{"kind", "plaintext"}, {"value", view.Shown(text)}}},
              {"range", view.positions.RangeJson(range)}};
}

}  // namespace

json HoverAt(const DocumentView& view, size_t offset) {
  const IndexedPlace* place = view.index.At(offset);
  if (place == nullptr) return nullptr;
  switch (place->kind) {
    case IndexedPlace::kKind:
      return Hover(view, KindText(view, *place->kindItem), *place->range);
    case IndexedPlace::kManufacturer:
      return Hover(view, ManufacturerText(view, *place), *place->range);
    case IndexedPlace::kDevice:
      return Hover(view, DeviceText(view, *place), *place->range);
    case IndexedPlace::kListEntry: {
      const std::vector<std::string>& names = view.analysis.ListNames(place->list);
      const size_t number = static_cast<size_t>(place->index);
      return Hover(view,
                   std::string(ListKeyword(place->list)) + " entry " + std::to_string(number) +
                       (number < names.size() ? ": " + names[number] : std::string()),
                   *place->range);
    }
    case IndexedPlace::kDefinition:
      break;
  }
  const DEVICE_KVRXDEF_ITEM& def = place->device->m_DefArray[place->index];
  const ByteSpan line{place->range->begin, place->range->end};
  const int layout = DefinitionLayout(view.analysis.Layout());
  const ByteSpan keyword = KeywordSpan(view.analysis.Bytes(), line, layout);
  if (offset < keyword.end) return Hover(view, KeywordText(view, *place, def), view.RangeOf(keyword));
  const std::vector<StoredField> fields = StoredFields(view.analysis.Bytes(), line, layout, def);
  const StoredField* field = FieldAt(fields, offset);
  if (field == nullptr) return nullptr;
  return Hover(view, FieldText(view, *field), view.RangeOf(field->field.span));
}
