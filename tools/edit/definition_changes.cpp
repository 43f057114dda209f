#include "tools/edit/definition_changes.h"

#include <cctype>

#include "tools/edit/edit_address.h"
#include "tools/edit/edit_values.h"

namespace {

const char* const kFieldHelp = "id, generation, package, module, adapters, text or 'value N'";

std::string Lower(std::string word) {
  for (char& c : word) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return word;
}

// "value N", "valueN" or "value_N": N, else -1.
int ValueIndex(const std::string& field) {
  if (field.compare(0, 5, "value") != 0) return -1;
  size_t at = 5;
  if (at < field.size() && (field[at] == ' ' || field[at] == '_')) ++at;
  if (at == field.size() || field.size() - at > 2) return -1;
  int n = 0;
  for (; at < field.size(); ++at) {
    if (!std::isdigit(static_cast<unsigned char>(field[at]))) return -1;
    n = n * 10 + (field[at] - '0');
  }
  return n <= 10 ? n : -1;
}

// A comma list of numbers of a list, by names or numbers.
bool ReadNumberList(EditStep& step, int list, const std::string& value, std::vector<WORD>* numbers) {
  size_t at = 0;
  while (at <= value.size()) {
    size_t comma = value.find(',', at);
    if (comma == std::string::npos) comma = value.size();
    std::string item = value.substr(at, comma - at);
    while (!item.empty() && item.front() == ' ') item.erase(item.begin());
    while (!item.empty() && item.back() == ' ') item.pop_back();
    DWORD number = 0;
    if (!ResolveNumber(step, list, item, &number)) return false;
    if (number > 0xFFFF) return step.Refuse("the number " + std::to_string(number) + " does not fit a list field", {});
    numbers->push_back(static_cast<WORD>(number));
    at = comma + 1;
  }
  return true;
}

// The number fields of pieces of one kind, in the order of the line.
std::vector<const FieldRecord*> FieldsOfKind(const LinePieces& pieces, int kind) {
  std::vector<const FieldRecord*> out;
  for (const FieldRecord& f : pieces.fields) {
    if (f.field == kind) out.push_back(&f);
  }
  return out;
}

}  // namespace

bool ReadAssignments(EditStep& step, const std::vector<std::pair<std::string, std::string>>& assignments,
                     DefinitionChanges* c) {
  for (const auto& assignment : assignments) {
    const std::string field = Lower(assignment.first);
    const std::string& value = assignment.second;
    const int valueIndex = ValueIndex(field);
    DWORD number = 0;
    if (field == "id") {
      if (!ParseEditNumber(value, &number)) return step.Unknown("id: '" + value + "' is not a number", {});
      c->id = true;
      c->newId = number;
    } else if (field == "generation" || field == "gen") {
      std::string g = Lower(value);
      if (g.compare(0, 3, "kvr") == 0) g = g.substr(3);
      if (g != "3" && g != "4" && g != "5") return step.Unknown("generation: '" + value + "' is not 3, 4 or 5", {});
      c->generation = true;
      c->to.generation = static_cast<BYTE>(g[0] - '0');
    } else if (field == "package" || field == "packages") {
      c->packages = true;
      c->to.packages.clear();
      if (!ReadNumberList(step, 0, value, &c->to.packages)) return false;
      if (step.a.Layout() != 7 && c->to.packages.size() != 1) {
        return step.Refuse("a layout " + std::to_string(step.a.Layout()) + " definition holds one package", {});
      }
    } else if (field == "module") {
      if (!ResolveNumber(step, 2, value, &number)) return false;
      c->module = true;
      c->to.module = number;
    } else if (field == "adapter" || field == "adapters") {
      c->adapters = true;
      c->to.adapters.clear();
      if (!ReadNumberList(step, 1, value, &c->to.adapters)) return false;
    } else if (field == "text") {
      std::string problem;
      if (!FileBytesOf(value, false, &c->textBytes, &problem)) return step.Refuse("text: " + problem, {});
      c->text = true;
    } else if (valueIndex >= 0) {
      if (!ParseEditNumber(value, &number)) return step.Unknown(field + ": '" + value + "' is not a number", {});
      c->values[valueIndex] = true;
      c->to.values[valueIndex] = number;
    } else {
      return step.Unknown("no field '" + assignment.first + "'; the fields are " + kFieldHelp, {});
    }
  }
  return true;
}

LinePieces PiecesOf(Analysis& a, std::uint32_t definition) {
  LinePieces pieces;
  pieces.line = a.Definitions()[definition].line;
  pieces.fields = a.Fields(definition, &pieces.keyword);
  const std::uint32_t textLength = static_cast<std::uint32_t>(a.DefinitionOf(definition).m_DefLine.GetLength());
  pieces.text = ByteSpan{pieces.line.end - textLength, pieces.line.end};
  return pieces;
}

void ApplyChanges(const DefinitionChanges& c, const std::string& oldText, DefinitionFields* f, DWORD* id) {
  if (c.id) *id = c.newId;
  if (c.generation) f->generation = c.to.generation;
  if (c.packages) f->packages = c.to.packages;
  if (c.module) f->module = c.to.module;
  if (c.adapters) f->adapters = c.to.adapters;
  for (int i = 0; i < 11; ++i) {
    if (c.values[i]) f->values[i] = c.to.values[i];
  }
  if (c.text) {
    size_t lead = 0;
    while (lead < oldText.size() && (oldText[lead] == ' ' || oldText[lead] == '\t')) ++lead;
    const std::string blank = lead > 0 ? oldText.substr(0, lead) : " ";
    f->text = c.textBytes.empty() ? std::string() : blank + c.textBytes;
  }
}

bool WriteChanges(EditStep& step, const LinePieces& pieces, const DefinitionChanges& c,
                  std::vector<ByteReplacement>* out) {
  const std::string_view bytes = step.Bytes();
  auto text = [&](ByteSpan span) { return bytes.substr(span.begin, span.end - span.begin); };
  auto one = [&](int kind, int index, DWORD value, const char* name) {
    for (const FieldRecord& f : pieces.fields) {
      if (f.field != kind || f.index != index) continue;
      out->push_back(ByteReplacement{f.taken, FormatLike(text(f.taken), value, f.hex)});
      return true;
    }
    return step.Refuse(std::string("a layout ") + std::to_string(step.a.Layout()) + " definition line holds no " + name,
                       pieces.line);
  };
  auto list = [&](int kind, const std::vector<WORD>& numbers) {
    const std::vector<const FieldRecord*> fields = FieldsOfKind(pieces, kind);
    if (fields.empty()) return step.Refuse("the definition line holds no such list", pieces.line);
    // The list is written with the separator its first two entries have;
    // layouts 1 and 2 read a blank behind a comma as the end of the list.
    std::string separator = ",";
    if (step.a.Layout() == 7 && fields.size() >= 2) {
      separator = std::string(text(ByteSpan{fields[0]->taken.end, fields[1]->taken.begin}));
    }
    std::string written;
    for (size_t i = 0; i < numbers.size(); ++i) {
      const FieldRecord& like = *fields[std::min(i, fields.size() - 1)];
      written += (i > 0 ? separator : std::string()) + FormatLike(text(like.taken), numbers[i], false);
    }
    out->push_back(ByteReplacement{ByteSpan{fields.front()->taken.begin, fields.back()->taken.end}, written});
    return true;
  };
  if (c.id && !one(kDevdefFieldId, 0, c.newId, "id")) return false;
  if (c.generation) {
    out->push_back(ByteReplacement{ByteSpan{pieces.keyword + 3, pieces.keyword + 4},
                                   std::string(1, static_cast<char>('0' + c.to.generation))});
  }
  if (c.packages && !list(kDevdefFieldPackage, c.to.packages)) return false;
  if (c.module && !one(kDevdefFieldModule, 0, c.to.module, "module")) return false;
  if (c.adapters && !list(kDevdefFieldAdapter, c.to.adapters)) return false;
  for (int i = 0; i < 11; ++i) {
    if (c.values[i] && !one(kDevdefFieldValue, i, c.to.values[i], ("value " + std::to_string(i)).c_str())) {
      return false;
    }
  }
  if (c.text) {
    const std::string old(text(pieces.text));
    size_t lead = 0;
    while (lead < old.size() && (old[lead] == ' ' || old[lead] == '\t')) ++lead;
    const std::string blank = lead > 0 ? old.substr(0, lead) : " ";
    out->push_back(ByteReplacement{pieces.text, c.textBytes.empty() ? std::string() : blank + c.textBytes});
  }
  return true;
}

std::string DefinitionLineOf(int layout, DWORD id, const DefinitionFields& f) {
  auto joined = [](const std::vector<WORD>& numbers) {
    std::string out;
    for (const WORD n : numbers) out += (out.empty() ? "" : ",") + std::to_string(n);
    return out;
  };
  std::string line = "KVR" + std::to_string(f.generation) + "DEF: " + std::to_string(id) + " ";
  line += (layout == 7 ? joined(f.packages) : std::to_string(f.packages.empty() ? 0 : f.packages[0])) + " ";
  line += std::to_string(f.module) + " " + joined(f.adapters);
  if (layout == 1) line += " " + std::to_string(f.values[2]);
  if (layout == 2) {
    for (int i = 0; i < 3; ++i) line += " " + std::to_string(f.values[i]);
  }
  if (layout == 7) {
    for (int i = 0; i < 11; ++i) {
      const bool hex = i == 4 || i == 5 || i == 8 || i == 10;
      line += " " + FormatLike(hex ? "0" : "", f.values[i], hex);
    }
  }
  return line + " :" + f.text;
}
