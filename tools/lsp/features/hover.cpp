#include "tools/lsp/features/hover.h"

#include <string>

#include "tools/analysis/number_look.h"
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

// Definitions of devices: all of them and the visible ones.
struct DefinitionCounts {
  long all = 0;
  long visible = 0;
  long devices = 0;

  void AddDevice(const DeviceRecord& device) {
    ++devices;
    all += device.device->m_DefArray.GetSize();
    visible += device.device->GetNumDevDefs();
  }
  void AddManufacturer(const Analysis& analysis, const ManufacturerRecord& manufacturer) {
    for (std::uint32_t d = manufacturer.firstDevice; d < manufacturer.firstDevice + manufacturer.deviceCount; ++d) {
      AddDevice(analysis.Devices()[d]);
    }
  }
  std::string Text(int generation) const {
    return Count(all, "definition", "definitions") + ", " + std::to_string(visible) + " visible in generation " +
           std::to_string(generation);
  }
};

std::string KindText(const DocumentView& view, std::uint32_t record) {
  const KindRecord& kind = view.analysis.Kinds()[record];
  DefinitionCounts counts;
  for (std::uint32_t m = kind.firstManufacturer; m < kind.firstManufacturer + kind.manufacturerCount; ++m) {
    counts.AddManufacturer(view.analysis, view.analysis.Manufacturers()[m]);
  }
  return "kind " + RawName(kind.kind->m_Name) + "\n" +
         Count(static_cast<long>(kind.manufacturerCount), "manufacturer", "manufacturers") + ", " +
         Count(counts.devices, "device", "devices") + ", " + counts.Text(view.generation);
}

std::string ManufacturerText(const DocumentView& view, std::uint32_t record) {
  const ManufacturerRecord& manufacturer = view.analysis.Manufacturers()[record];
  DefinitionCounts counts;
  counts.AddManufacturer(view.analysis, manufacturer);
  return "manufacturer " + RawName(manufacturer.manufacturer->m_Name) + " (" +
         RawName(view.analysis.Kinds()[manufacturer.kind].kind->m_Name) + ")\n" +
         Count(counts.devices, "device", "devices") + ", " + counts.Text(view.generation);
}

std::string DeviceText(const DocumentView& view, std::uint32_t record) {
  const DeviceRecord& device = view.analysis.Devices()[record];
  const ManufacturerRecord& manufacturer = view.analysis.Manufacturers()[device.manufacturer];
  DefinitionCounts counts;
  counts.AddDevice(device);
  return "device " + RawName(device.device->m_DeviceName) + " (" +
         RawName(view.analysis.Kinds()[manufacturer.kind].kind->m_Name) + " / " +
         RawName(manufacturer.manufacturer->m_Name) + ")\n" + counts.Text(view.generation);
}

std::string EntryText(const DocumentView& view, int list, unsigned long number) {
  const std::vector<std::string>& names = view.analysis.ListNames(list);
  if (number >= names.size()) {
    return std::string("no entry ") + std::to_string(number) + " in " + ListKeyword(list) + " (it has " +
           Count(static_cast<long>(names.size()), "entry", "entries") + ")";
  }
  std::string text = names[number] + "\nentry " + std::to_string(number) + " of " + ListKeyword(list);
  const std::vector<ByteSpan>& entries = view.analysis.ListEntries(list);
  if (number < entries.size()) text += " (line " + std::to_string(view.RangeOf(entries[number]).start.line) + ")";
  return text;
}

std::string FieldText(const DocumentView& view, const FieldRecord& field) {
  const std::string name = FieldName(field.field, field.index);
  const int list = ListOfField(field.field);
  std::string text = name + (field.field == kDevdefFieldValue ? ": " : " ") + std::to_string(field.value);
  if (list >= 0) text += ": " + EntryText(view, list, field.value);
  if (list >= 0 && field.index > 0) text += "\n" + name + " " + std::to_string(field.index + 1) + " of the line";
  if (field.hex) text += ", read in hexadecimal";
  // A number its word does not show as it stands.
  if (LookOfNumber(view.analysis.Bytes(), field) != NumberMisread::kNone) {
    const std::string_view bytes = view.analysis.Bytes();
    text += "\nthe reader took " + std::to_string(field.value) + " from '" +
            std::string(bytes.substr(field.word.begin, field.word.end - field.word.begin)) + "'";
  }
  return text;
}

std::string KeywordText(const DocumentView& view, std::uint32_t definition) {
  const DEVICE_KVRXDEF_ITEM& def = view.analysis.DefinitionOf(definition);
  const DEVICE_ITEM& device = *view.analysis.Devices()[view.analysis.Definitions()[definition].device].device;
  std::string text = "generation " + std::to_string(def.m_KvrType) + ": ";
  text += def.IsHidden() ? "hidden in generation " : "visible in generation ";
  text += std::to_string(view.generation) + ", the generation in force";
  text += "\ndefinition " + std::to_string(def.m_DefID) + " of " + RawName(device.m_DeviceName);
  return text;
}

json Hover(const DocumentView& view, const std::string& text, const TextRange& range) {
  return json{{"contents", {{"kind", "plaintext"}, {"value", view.Shown(text)}}},
              {"range", view.positions.RangeJson(range)}};
}

}  // namespace

json HoverAt(const DocumentView& view, size_t offset) {
  IndexedPlace place;
  if (!view.index.At(offset, &place)) return nullptr;
  switch (place.kind) {
    case IndexedPlace::kKind:
      return Hover(view, KindText(view, place.record), view.RangeOf(place.span));
    case IndexedPlace::kManufacturer:
      return Hover(view, ManufacturerText(view, place.record), view.RangeOf(place.span));
    case IndexedPlace::kDevice:
      return Hover(view, DeviceText(view, place.record), view.RangeOf(place.span));
    case IndexedPlace::kListEntry: {
      const std::vector<std::string>& names = view.analysis.ListNames(place.list);
      const size_t number = place.record;
      return Hover(view,
                   std::string(ListKeyword(place.list)) + " entry " + std::to_string(number) +
                       (number < names.size() ? ": " + names[number] : std::string()),
                   view.RangeOf(place.span));
    }
    case IndexedPlace::kDefinition:
      break;
  }
  const ByteSpan keyword = KeywordSpan(view.analysis.Bytes(), place.span, view.analysis.Layout());
  if (offset < keyword.end) return Hover(view, KeywordText(view, place.record), view.RangeOf(keyword));
  const std::vector<FieldRecord> fields = view.analysis.Fields(place.record);
  const FieldRecord* field = FieldAt(fields, offset);
  if (field == nullptr) return nullptr;
  return Hover(view, FieldText(view, *field), view.RangeOf(field->word));
}
