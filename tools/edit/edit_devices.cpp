// The operations on the tree of the catalogue: rename, rename-kind,
// rename-manufacturer, move, add-device and remove. New lines take the form
// of their neighbours: their line end, and an empty line in front where the
// neighbours have one.
#include "tools/edit/edit_address.h"
#include "tools/edit/edit_step.h"
#include "tools/edit/edit_values.h"

namespace {

std::string BytesOf(const CString& text) { return std::string(text, static_cast<size_t>(text.GetLength())); }

// A new name (UTF-8) as the file is to spell it; refused, at place (what
// gets the name), when it cannot.
bool NameBytes(EditStep& step, const char* what, const std::string& name, std::string* bytes,
               ByteSpan place = ByteSpan{}) {
  std::string problem;
  if (name.empty()) return step.Refuse(std::string("a ") + what + " needs a name", place);
  if (!FileBytesOf(name, true, bytes, &problem)) return step.Refuse("the name '" + name + "': " + problem, place);
  return true;
}

// Whether the line in front of the line of offset is empty: the neighbours
// stand apart by an empty line.
bool Spaced(EditStep& step, std::uint32_t offset) {
  const std::uint32_t start = step.lines.LineStart(offset);
  return start > 0 && step.lines.IsEmptyLine(step.lines.PreviousLineStart(start));
}

// The lines of a device: from its name's line to its "}" line with its line
// end; refused for a device whose block does not end at its "}".
bool DeviceLines(EditStep& step, std::uint32_t device, ByteSpan* lines) {
  const DeviceRecord& d = step.a.Devices()[device];
  if (!d.closed) {
    return step.Refuse("the block of device '" + BytesOf(d.device->m_DeviceName) +
                           "' does not end at its \"}\", so its lines cannot be told from those around it",
                       d.name);
  }
  *lines = ByteSpan{step.lines.LineStart(d.name.begin), step.lines.NextLineStart(d.block.end - 1)};
  return true;
}

// Where the lines of a manufacturer end: behind its last device, else
// behind its own line; and the offset of its last line.
std::uint32_t ManufacturerEnd(EditStep& step, std::uint32_t manufacturer, std::uint32_t* lastLine) {
  const ManufacturerRecord& m = step.a.Manufacturers()[manufacturer];
  if (m.deviceCount == 0) {
    *lastLine = m.name.begin;
    return step.lines.NextLineStart(m.name.end);
  }
  const DeviceRecord& d = step.a.Devices()[m.firstDevice + m.deviceCount - 1];
  *lastLine = d.name.begin;
  return step.lines.NextLineStart(std::max(d.block.end, d.name.end + 1) - 1);
}

std::uint32_t KindEnd(EditStep& step, std::uint32_t kind, std::uint32_t* lastLine) {
  const KindRecord& k = step.a.Kinds()[kind];
  if (k.manufacturerCount == 0) {
    *lastLine = k.name.begin;
    return step.lines.NextLineStart(k.name.end);
  }
  return ManufacturerEnd(step, k.firstManufacturer + k.manufacturerCount - 1, lastLine);
}

// Where a device goes under KIND / MANUFACTURER (made when missing), and
// the lines in front of it that make them; the expected catalogue gets
// the manufacturer and kind, and the device is added by the caller at
// *place.
bool PlaceUnder(EditStep& step, const std::string& kindName, const std::string& manufacturerName, std::uint32_t* at,
                std::string* head, DevicePlace* place) {
  std::uint32_t kind = kNoRecord, manufacturer = kNoRecord;
  if (!FindKind(step, kindName, true, &kind)) return false;
  if (kind != kNoRecord && !FindManufacturer(step, kind, manufacturerName, true, &manufacturer)) return false;
  std::string kindBytes, manufacturerBytes;
  if (kind == kNoRecord && !NameBytes(step, "kind", kindName, &kindBytes)) return false;
  if (manufacturer == kNoRecord && !NameBytes(step, "manufacturer", manufacturerName, &manufacturerBytes)) return false;
  std::uint32_t lastLine = 0;
  if (manufacturer != kNoRecord) {
    *at = ManufacturerEnd(step, manufacturer, &lastLine);
  } else if (kind != kNoRecord) {
    *at = KindEnd(step, kind, &lastLine);
  } else {
    *at = step.lines.Size();
    lastLine = step.a.Devices().empty() ? *at : step.a.Devices().back().name.begin;
  }
  const std::string end = step.lines.LineEndBefore(*at);
  // An empty line in front where the neighbours have one, unless the line
  // in front of the new ones is empty already.
  const bool emptyBefore =
      *at > 0 && *at == step.lines.LineStart(*at) && step.lines.IsEmptyLine(step.lines.PreviousLineStart(*at));
  const std::string gap = Spaced(step, lastLine) ? end : std::string();
  if (*at == step.lines.Size() && !step.lines.EndsWithLineEnd()) *head += end;
  if (!emptyBefore) *head += gap;
  if (kind == kNoRecord) {
    *head += kindBytes + ":" + end + gap;
    ExpectedKind added;
    added.name = ReadName(kindBytes);
    step.expect.kinds.push_back(added);
    kind = static_cast<std::uint32_t>(step.expect.kinds.size() - 1);
  }
  ExpectedKind& expectedKind = step.expect.kinds[kind];
  place->kind = kind;
  if (manufacturer == kNoRecord) {
    *head += ":" + manufacturerBytes + end + gap;
    ExpectedManufacturer added;
    added.name = ReadName(manufacturerBytes);
    expectedKind.manufacturers.push_back(added);
    place->manufacturer = static_cast<std::uint32_t>(expectedKind.manufacturers.size() - 1);
  } else {
    place->manufacturer = manufacturer - step.a.Kinds()[kind].firstManufacturer;
  }
  place->device = static_cast<std::uint32_t>(expectedKind.manufacturers[place->manufacturer].devices.size());
  return true;
}

// Takes the device at place out of the expected catalogue.
ExpectedDevice TakeOut(EditStep& step, const DevicePlace& place) {
  std::vector<ExpectedDevice>& devices = step.expect.kinds[place.kind].manufacturers[place.manufacturer].devices;
  ExpectedDevice device = std::move(devices[place.device]);
  devices.erase(devices.begin() + place.device);
  return device;
}

// The lines of a device and the empty line in front of them that set it
// apart, which go with it.
ByteSpan WithGap(EditStep& step, ByteSpan lines) {
  if (Spaced(step, lines.begin)) lines.begin = step.lines.PreviousLineStart(lines.begin);
  return lines;
}

}  // namespace

bool PlanRename(EditStep& step, const EditOperation& op) {
  std::uint32_t device = 0;
  if (!FindDevice(step, op.device, op.deviceRecord, &device)) return false;
  const DeviceRecord& d = step.a.Devices()[device];
  std::string bytes;
  if (!NameBytes(step, "device", op.newName, &bytes, d.name)) return false;
  // A mark byte in front of the name stays.
  ByteSpan span = d.name;
  if ((d.device->m_DeviceFlags & 3) != 0 && span.begin < span.end) ++span.begin;
  step.Replace(span, bytes);
  step.expect.DeviceAt(step.expect.PlaceOf(device)).name = ReadName(bytes);
  return true;
}

bool PlanRenameKind(EditStep& step, const EditOperation& op) {
  std::uint32_t kind = op.kindRecord;
  std::string bytes;
  if (kind >= step.a.Kinds().size() && !FindKind(step, op.kindName, false, &kind)) return false;
  if (!NameBytes(step, "kind", op.newName, &bytes, step.a.Kinds()[kind].name)) {
    return false;
  }
  step.Replace(step.a.Kinds()[kind].name, bytes);
  step.expect.kinds[kind].name = ReadName(bytes);
  return true;
}

bool PlanRenameManufacturer(EditStep& step, const EditOperation& op) {
  std::uint32_t kind = 0, manufacturer = op.manufacturerRecord;
  std::string bytes;
  if (manufacturer < step.a.Manufacturers().size()) {
    kind = step.a.Manufacturers()[manufacturer].kind;
  } else if (!FindKind(step, op.kindName, false, &kind) ||
             !FindManufacturer(step, kind, op.manufacturer, false, &manufacturer)) {
    return false;
  }
  if (!NameBytes(step, "manufacturer", op.newName, &bytes, step.a.Manufacturers()[manufacturer].name)) {
    return false;
  }
  step.Replace(step.a.Manufacturers()[manufacturer].name, bytes);
  step.expect.kinds[kind].manufacturers[manufacturer - step.a.Kinds()[kind].firstManufacturer].name = ReadName(bytes);
  return true;
}

bool PlanMove(EditStep& step, const EditOperation& op) {
  std::uint32_t device = 0;
  ByteSpan lines;
  if (!FindDevice(step, op.device, op.deviceRecord, &device) || !DeviceLines(step, device, &lines)) return false;
  const DevicePlace from = step.expect.PlaceOf(device);
  std::uint32_t at = 0;
  std::string head;
  DevicePlace to;
  if (!PlaceUnder(step, op.kindName, op.manufacturer, &at, &head, &to)) return false;
  if (to.kind == from.kind && to.manufacturer == from.manufacturer) {
    return step.Refuse("the device is already under that kind and manufacturer", step.a.Devices()[device].name);
  }
  std::string moved = step.Text(lines);
  if (lines.end == step.lines.Size() && !step.lines.EndsWithLineEnd()) moved += step.lines.LineEndBefore(at);
  step.Replace(WithGap(step, lines), std::string());
  step.Insert(at, head + moved);
  ExpectedDevice taken = TakeOut(step, from);
  step.expect.kinds[to.kind].manufacturers[to.manufacturer].devices.push_back(std::move(taken));
  return true;
}

bool PlanAddDevice(EditStep& step, const EditOperation& op) {
  std::string bytes;
  if (!NameBytes(step, "device", op.newName, &bytes)) return false;
  std::uint32_t at = 0;
  std::string head;
  DevicePlace to;
  if (!PlaceUnder(step, op.kindName, op.manufacturer, &at, &head, &to)) return false;
  const std::string end = step.lines.LineEndBefore(at);
  step.Insert(at, head + bytes + end + "{" + end + "}" + end);
  ExpectedDevice added;
  added.name = ReadName(bytes);
  step.expect.kinds[to.kind].manufacturers[to.manufacturer].devices.push_back(std::move(added));
  return true;
}

bool PlanRemove(EditStep& step, const EditOperation& op) {
  std::uint32_t device = 0;
  ByteSpan lines;
  if (!FindDevice(step, op.device, op.deviceRecord, &device) || !DeviceLines(step, device, &lines)) return false;
  step.Replace(WithGap(step, lines), std::string());
  TakeOut(step, step.expect.PlaceOf(device));
  return true;
}
