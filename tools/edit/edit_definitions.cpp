// The operations on definitions: set, add-definition, remove-definition and
// renumber-ids.
#include <algorithm>
#include <unordered_map>

#include "tools/edit/definition_changes.h"
#include "tools/edit/edit_address.h"
#include "tools/edit/edit_step.h"
#include "tools/edit/edit_values.h"

namespace {

std::string BytesOf(const CString& text) { return std::string(text, static_cast<size_t>(text.GetLength())); }

// The expected definition of an old definition record.
ExpectedDefinition& ExpectedOf(EditStep& step, std::uint32_t definition) {
  const DefinitionRecord& record = step.a.Definitions()[definition];
  ExpectedDevice& device = step.expect.DeviceAt(step.expect.PlaceOf(record.device));
  return device.definitions[definition - step.a.Devices()[record.device].firstDefinition];
}

// A device block line to insert at lineStart (a line's first byte, or the
// end of the file): the line with the file's line end there.
std::string LineAt(EditStep& step, std::uint32_t lineStart, const std::string& line) {
  const std::string end = step.lines.LineEndBefore(lineStart);
  const bool openLastLine = lineStart == step.lines.Size() && !step.lines.EndsWithLineEnd();
  return (openLastLine ? end : std::string()) + line + end;
}

}  // namespace

bool PlanSet(EditStep& step, const EditOperation& op) {
  std::uint32_t definition = 0;
  if (!FindDefinition(step, op.definition, op.definitionRecord, &definition)) return false;
  if (op.assignments.empty()) return step.Unknown("set needs FIELD=VALUE", {});
  DefinitionChanges changes;
  if (!ReadAssignments(step, op.assignments, &changes)) return false;
  const LinePieces pieces = PiecesOf(step.a, definition);
  std::vector<ByteReplacement> written;
  if (!WriteChanges(step, pieces, changes, &written)) return false;
  for (ByteReplacement& r : written) step.replacements.push_back(std::move(r));
  ExpectedDefinition& expected = ExpectedOf(step, definition);
  DefinitionFields& fields = step.expect.Own(expected);
  ApplyChanges(changes, BytesOf(step.a.DefinitionOf(definition).m_DefLine), &fields, &expected.id);
  return true;
}

bool PlanAddDefinition(EditStep& step, const EditOperation& op) {
  Analysis& a = step.a;
  std::uint32_t device = 0;
  if (!FindDevice(step, op.device, op.deviceRecord, &device)) return false;
  const DeviceRecord& d = a.Devices()[device];
  if (d.block.begin >= d.block.end) {
    return step.Refuse("device '" + BytesOf(d.device->m_DeviceName) + "' has no block to add a definition to", d.name);
  }
  // The new line takes the form of the device's last definition, else of
  // the nearest one in the file.
  const std::uint32_t count = static_cast<std::uint32_t>(a.Definitions().size());
  std::uint32_t like = kNoRecord;
  if (d.definitionCount > 0) {
    like = d.firstDefinition + d.definitionCount - 1;
  } else if (d.firstDefinition > 0) {
    like = d.firstDefinition - 1;
  } else if (count > 0) {
    like = 0;
  }
  DWORD largest = 0;
  for (std::uint32_t i = 0; i < count; ++i) largest = std::max(largest, a.DefinitionOf(i).m_DefID);

  // Fields not given are 0, the adapters and packages one 0, the text
  // empty, the id one above the largest of the file.
  DefinitionChanges changes;
  changes.id = changes.packages = changes.module = changes.adapters = changes.text = true;
  changes.newId = largest + 1;
  changes.to.packages = {0};
  changes.to.adapters = {0};
  for (bool& value : changes.values) value = true;
  if (!ReadAssignments(step, op.assignments, &changes)) return false;

  DefinitionFields fields;
  // Only layout 7 gives a definition its device's marks.
  fields.marks = a.Layout() == 7 ? d.device->m_DeviceFlags : 0;
  std::string line;
  if (like == kNoRecord) {
    if (!changes.generation) changes.to.generation = 5;
    DWORD id = 0;
    ApplyChanges(changes, " ", &fields, &id);
    fields.generation = changes.to.generation;
    line = DefinitionLineOf(a.Layout(), id, fields);
  } else {
    const LinePieces pieces = PiecesOf(a, like);
    // Only the values the line holds can be written.
    DefinitionChanges written = changes;
    for (int i = 0; i < 11; ++i) {
      bool held = false;
      for (const FieldRecord& f : pieces.fields) held = held || (f.field == kDevdefFieldValue && f.index == i);
      if (!held && changes.to.values[i] == 0) written.values[i] = false;
    }
    std::vector<ByteReplacement> replacements;
    if (!WriteChanges(step, pieces, written, &replacements)) return false;
    // The line's own mark is not copied: the new definition has none.
    if (pieces.keyword > pieces.line.begin) {
      replacements.push_back(ByteReplacement{ByteSpan{pieces.line.begin, pieces.keyword}, std::string()});
    }
    std::sort(replacements.begin(), replacements.end(),
              [](const ByteReplacement& x, const ByteReplacement& y) { return x.span.begin < y.span.begin; });
    const std::uint32_t lineStart = step.lines.LineStart(pieces.line.begin);
    std::uint32_t at = lineStart;
    for (const ByteReplacement& r : replacements) {
      line += step.Text(ByteSpan{at, r.span.begin}) + r.bytes;
      at = r.span.end;
    }
    line += step.Text(ByteSpan{at, pieces.line.end});
    const DEVICE_KVRXDEF_ITEM& template_ = a.DefinitionOf(like);
    fields.generation = template_.m_KvrType;
    DWORD id = 0;
    ApplyChanges(changes, BytesOf(template_.m_DefLine), &fields, &id);
    changes.newId = id;
  }
  const std::uint32_t at =
      d.definitionCount > 0
          ? step.lines.NextLineStart(a.Definitions()[d.firstDefinition + d.definitionCount - 1].line.end)
          : step.lines.NextLineStart(d.block.begin);
  step.Insert(at, LineAt(step, at, line));
  ExpectedDevice& expected = step.expect.DeviceAt(step.expect.PlaceOf(device));
  ExpectedDefinition added;
  added.id = changes.newId;
  added.fields = static_cast<int>(step.expect.fields.size());
  step.expect.fields.push_back(fields);
  expected.definitions.push_back(added);
  return true;
}

bool PlanRemoveDefinition(EditStep& step, const EditOperation& op) {
  std::uint32_t definition = 0;
  if (!FindDefinition(step, op.definition, op.definitionRecord, &definition)) return false;
  const ByteSpan line = step.a.Definitions()[definition].line;
  const std::uint32_t start = step.lines.LineStart(line.begin);
  step.Replace(ByteSpan{start, step.lines.NextLineStart(line.end)}, std::string());
  const DefinitionRecord& record = step.a.Definitions()[definition];
  ExpectedDevice& device = step.expect.DeviceAt(step.expect.PlaceOf(record.device));
  device.definitions.erase(device.definitions.begin() + (definition - step.a.Devices()[record.device].firstDefinition));
  return true;
}

bool PlanRenumberIds(EditStep& step, const EditOperation& op) {
  Analysis& a = step.a;
  if (op.from < 0 || op.from > 0xFFFFFFFFL) return step.Unknown("renumber-ids needs --from N, a number from 0", {});
  if (op.step < 1) return step.Unknown("--step must be 1 or more", {});
  // The definitions in scope: [first, first + count) of the records, which
  // stand in the order of the file.
  std::uint32_t first = 0;
  std::uint32_t count = static_cast<std::uint32_t>(a.Definitions().size());
  if (!op.device.empty() || op.deviceRecord != kNoRecord) {
    std::uint32_t device = 0;
    if (!FindDevice(step, op.device, op.deviceRecord, &device)) return false;
    first = a.Devices()[device].firstDefinition;
    count = a.Devices()[device].definitionCount;
  } else if (!op.kindName.empty() && !op.manufacturer.empty()) {
    std::uint32_t kind = 0, manufacturer = 0;
    if (!FindKind(step, op.kindName, false, &kind)) return false;
    if (!FindManufacturer(step, kind, op.manufacturer, false, &manufacturer)) return false;
    const ManufacturerRecord& m = a.Manufacturers()[manufacturer];
    if (m.deviceCount == 0) return step.Refuse("the manufacturer has no devices", m.name);
    const DeviceRecord& firstDevice = a.Devices()[m.firstDevice];
    const DeviceRecord& lastDevice = a.Devices()[m.firstDevice + m.deviceCount - 1];
    first = firstDevice.firstDefinition;
    count = lastDevice.firstDefinition + lastDevice.definitionCount - first;
  }
  const unsigned long long last =
      static_cast<unsigned long long>(op.from) + static_cast<unsigned long long>(op.step) * (count > 0 ? count - 1 : 0);
  if (last > 0xFFFFFFFFull) return step.Refuse("the new ids would pass 4294967295", ByteSpan{});
  std::unordered_map<DWORD, std::uint32_t> others;
  for (std::uint32_t i = 0; i < a.Definitions().size(); ++i) {
    if (i < first || i >= first + count) others.emplace(a.DefinitionOf(i).m_DefID, i);
  }
  for (std::uint32_t i = 0; i < count; ++i) {
    const std::uint32_t definition = first + i;
    const DWORD id = static_cast<DWORD>(op.from + op.step * static_cast<long>(i));
    const auto clash = others.find(id);
    if (clash != others.end()) {
      return step.Refuse(
          "the new id " + std::to_string(id) + " is already the id of a definition outside the ids " + "renumbered",
          a.Definitions()[definition].line, {a.Definitions()[clash->second].line});
    }
    for (const FieldRecord& f : a.Fields(definition)) {
      if (f.field != kDevdefFieldId) continue;
      step.Replace(f.taken, FormatLike(step.Bytes().substr(f.taken.begin, f.taken.end - f.taken.begin), id, false));
    }
    ExpectedOf(step, definition).id = id;
  }
  return true;
}
