#include "tools/lsp/features/document_symbols.h"

#include <algorithm>
#include <string>

#include "tools/lsp/features/definition_field_at.h"
#include "tools/lsp/protocol/json_text.h"

namespace {

// The protocol's symbol kinds used for the levels of the catalogue.
enum SymbolKind { kNamespace = 3, kPackage = 4, kClass = 5, kField = 8 };

// One symbol while the outline is made: its name's place and the bytes it
// spans with everything below it.
struct Symbol {
  std::string name;
  std::string detail;
  int kind;
  ByteSpan selection;
  ByteSpan extent;
  std::vector<Symbol> children;
};

Symbol MakeSymbol(std::string name, std::string detail, int kind, const TextRange& place) {
  const ByteSpan span{place.begin, place.end};
  return Symbol{std::move(name), std::move(detail), kind, span, span, {}};
}

// Adds child below parent, whose extent grows to hold it.
void Adopt(Symbol& parent, Symbol child) {
  parent.extent.begin = std::min(parent.extent.begin, child.extent.begin);
  parent.extent.end = std::max(parent.extent.end, child.extent.end);
  parent.children.push_back(std::move(child));
}

Symbol DeviceSymbol(const DocumentView& view, DEVICE_ITEM& device, const DevicePlace& place) {
  Symbol symbol = MakeSymbol(
      view.Name(device.m_DeviceName),
      std::to_string(device.GetNumDevDefs()) + " of " + std::to_string(device.m_DefArray.GetSize()) + " visible",
      kClass, place.name);
  if (place.block.end > place.block.begin) symbol.extent.end = std::max(symbol.extent.end, place.block.end);
  const int layout = DefinitionLayout(view.analysis.Layout());
  for (size_t i = 0; i < place.definitions.size(); ++i) {
    const DEVICE_KVRXDEF_ITEM& def = device.m_DefArray[static_cast<int>(i)];
    std::string detail = "generation " + std::to_string(def.m_KvrType);
    if (def.IsHidden()) detail += ", hidden in " + std::to_string(view.generation);
    const TextRange& line = place.definitions[i];
    Symbol definition = MakeSymbol("id " + std::to_string(def.m_DefID), detail, kField, line);
    // The id is the definition's name, where the line shows it.
    const std::vector<DefinitionField> fields =
        SplitDefinitionFields(view.analysis.Bytes(), ByteSpan{line.begin, line.end}, layout);
    const DefinitionField* id =
        FindField(fields, view.analysis.Bytes(), DefinitionField::kId, 0, def.m_DefID, 0xFFFFFFFF);
    if (id != nullptr) definition.selection = id->span;
    Adopt(symbol, std::move(definition));
  }
  return symbol;
}

std::vector<Symbol> Outline(const DocumentView& view) {
  std::vector<Symbol> kinds;
  CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>& list = view.analysis.Controller().getDeviceList();
  for (POSITION k = list.GetHeadPosition(); k != nullptr;) {
    const TextRange* kindPlace = view.analysis.KindPlace(k);
    TAG_KIND_OF_DEVICE& kind = list.GetNext(k);
    if (kindPlace == nullptr) continue;
    Symbol kindSymbol = MakeSymbol(view.Name(kind.m_Name), "kind", kNamespace, *kindPlace);
    if (kind.m_pManufList != nullptr) {
      for (POSITION m = kind.m_pManufList->GetHeadPosition(); m != nullptr;) {
        const TextRange* manufPlace = view.analysis.ManufacturerPlace(m);
        TAG_DEVICE_MANUF& manuf = kind.m_pManufList->GetNext(m);
        if (manufPlace == nullptr) continue;
        Symbol manufSymbol = MakeSymbol(view.Name(manuf.m_Name), "manufacturer", kPackage, *manufPlace);
        if (manuf.m_pDeviceList != nullptr) {
          for (POSITION d = manuf.m_pDeviceList->GetHeadPosition(); d != nullptr;) {
            DEVICE_ITEM& device = manuf.m_pDeviceList->GetNext(d);
            const DevicePlace* place = view.analysis.PlaceOf(device);
            if (place != nullptr) Adopt(manufSymbol, DeviceSymbol(view, device, *place));
          }
        }
        Adopt(kindSymbol, std::move(manufSymbol));
      }
    }
    kinds.push_back(std::move(kindSymbol));
  }
  return kinds;
}

// The name and kind members shared by both forms.
void AppendNameAndKind(std::string& out, const Symbol& symbol) {
  out += "{\"name\":";
  AppendJsonString(out, symbol.name);
  out += ",\"kind\":";
  AppendJsonNumber(out, symbol.kind);
}

void AppendTree(std::string& out, const DocumentView& view, const Symbol& symbol) {
  AppendNameAndKind(out, symbol);
  out += ",\"detail\":";
  AppendJsonString(out, symbol.detail);
  out += ",\"range\":";
  AppendJsonRange(out, view.positions, view.RangeOf(symbol.extent));
  out += ",\"selectionRange\":";
  AppendJsonRange(out, view.positions, view.RangeOf(symbol.selection));
  out += ",\"children\":[";
  for (size_t i = 0; i < symbol.children.size(); ++i) {
    if (i > 0) out += ',';
    AppendTree(out, view, symbol.children[i]);
  }
  out += "]}";
}

void AppendFlat(std::string& out, const DocumentView& view, const Symbol& symbol, const std::string* container) {
  if (out.size() > 1) out += ',';
  AppendNameAndKind(out, symbol);
  out += ",\"location\":{\"uri\":";
  AppendJsonString(out, view.uri);
  out += ",\"range\":";
  AppendJsonRange(out, view.positions, view.RangeOf(symbol.extent));
  out += '}';
  if (container != nullptr) {
    out += ",\"containerName\":";
    AppendJsonString(out, *container);
  }
  out += '}';
  for (const Symbol& child : symbol.children) AppendFlat(out, view, child, &symbol.name);
}

}  // namespace

std::string DocumentSymbols(const DocumentView& view, bool hierarchical) {
  std::string out = "[";
  out.reserve(view.index.Places().size() * 200);  // about what a symbol takes
  const std::vector<Symbol> kinds = Outline(view);
  for (size_t i = 0; i < kinds.size(); ++i) {
    if (hierarchical) {
      if (i > 0) out += ',';
      AppendTree(out, view, kinds[i]);
    } else {
      AppendFlat(out, view, kinds[i], nullptr);
    }
  }
  out += ']';
  return out;
}
