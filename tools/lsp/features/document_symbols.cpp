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

Symbol MakeSymbol(std::string name, std::string detail, int kind, ByteSpan span) {
  return Symbol{std::move(name), std::move(detail), kind, span, span, {}};
}

// Adds child below parent, whose extent grows to hold it.
void Adopt(Symbol& parent, Symbol child) {
  parent.extent.begin = std::min(parent.extent.begin, child.extent.begin);
  parent.extent.end = std::max(parent.extent.end, child.extent.end);
  parent.children.push_back(std::move(child));
}

Symbol DeviceSymbol(const DocumentView& view, const DeviceRecord& record) {
  DEVICE_ITEM& device = *record.device;
  Symbol symbol = MakeSymbol(
      view.Name(device.m_DeviceName),
      std::to_string(device.GetNumDevDefs()) + " of " + std::to_string(device.m_DefArray.GetSize()) + " visible",
      kClass, record.name);
  if (record.block.end > record.block.begin) symbol.extent.end = std::max(symbol.extent.end, record.block.end);
  for (std::uint32_t i = 0; i < record.definitionCount; ++i) {
    const std::uint32_t definition = record.firstDefinition + i;
    const DEVICE_KVRXDEF_ITEM& def = device.m_DefArray[static_cast<int>(i)];
    std::string detail = "generation " + std::to_string(def.m_KvrType);
    if (def.IsHidden()) detail += ", hidden in " + std::to_string(view.generation);
    Symbol item = MakeSymbol("id " + std::to_string(def.m_DefID), detail, kField,
                             view.analysis.Definitions()[definition].line);
    // The id is the definition's name.
    item.selection = view.analysis.IdWord(definition);
    Adopt(symbol, std::move(item));
  }
  return symbol;
}

std::vector<Symbol> Outline(const DocumentView& view) {
  const Analysis& analysis = view.analysis;
  std::vector<Symbol> kinds;
  for (const KindRecord& kind : analysis.Kinds()) {
    Symbol kindSymbol = MakeSymbol(view.Name(kind.kind->m_Name), "kind", kNamespace, kind.name);
    for (std::uint32_t m = kind.firstManufacturer; m < kind.firstManufacturer + kind.manufacturerCount; ++m) {
      const ManufacturerRecord& manufacturer = analysis.Manufacturers()[m];
      Symbol manufSymbol =
          MakeSymbol(view.Name(manufacturer.manufacturer->m_Name), "manufacturer", kPackage, manufacturer.name);
      for (std::uint32_t d = manufacturer.firstDevice; d < manufacturer.firstDevice + manufacturer.deviceCount; ++d) {
        Adopt(manufSymbol, DeviceSymbol(view, analysis.Devices()[d]));
      }
      Adopt(kindSymbol, std::move(manufSymbol));
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
  // About what a symbol takes.
  out.reserve((view.analysis.Devices().size() + view.analysis.Definitions().size()) * 200);
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
