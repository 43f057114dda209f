// One file's catalogue as the comparison sees it: its devices in the order
// of the file with their paths, indexes by path, and the fields of a
// definition or a device with numbers named by this file's own lists.
#ifndef DEVDEF_TOOLS_DIFF_DIFF_SIDE_H_
#define DEVDEF_TOOLS_DIFF_DIFF_SIDE_H_

#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "tools/analysis/analysis.h"
#include "tools/diff/diff_value.h"

// A field of a definition or a device with its value.
using DiffField = std::pair<std::string, DiffValue>;

struct DeviceRef {
  TAG_KIND_OF_DEVICE* kind;
  TAG_DEVICE_MANUF* manuf;
  DEVICE_ITEM* device;
  std::uint32_t record;  // in the analysis
  std::string key;       // kind, manufacturer and device name, each ended by a NUL
};

std::string Bytes(const CString& text);

// The kind and manufacturer of a device, and its name.
std::vector<std::string> PathOf(const DeviceRef& ref);
std::string NameOf(const DeviceRef& ref);

class DiffSide {
 public:
  // visibleOnly: only the definitions of the generation in force take part.
  DiffSide(Analysis& analysis, bool visibleOnly);

  Analysis& File() { return m_a; }
  const std::vector<DeviceRef>& Devices() const { return m_devices; }
  // The devices of a path (DeviceRef::key), in the order of the file.
  const std::vector<size_t>* DevicesAt(const std::string& key) const;
  // The line of each kind and manufacturer by its key, and their order.
  const std::unordered_map<std::string, long>& Kinds() const { return m_kinds; }
  const std::unordered_map<std::string, long>& Manufacturers() const { return m_manufacturers; }
  const std::vector<TAG_KIND_OF_DEVICE*>& KindOrder() const { return m_kindOrder; }
  const std::vector<std::pair<TAG_KIND_OF_DEVICE*, TAG_DEVICE_MANUF*>>& ManufOrder() const { return m_manufOrder; }

  // The indexes of the definitions of a device that take part.
  std::vector<int> Definitions(DEVICE_ITEM& device) const;

  // A number by the name it has in this file's list; "#N" without one.
  DiffValue Named(int list, unsigned number) const;
  DiffValue NamedList(int list, const CWordArray& numbers) const;

  // Every field of a definition that a change can name, in a fixed order:
  // generation, packages, module, adapters, "value 0" to "value 10" (named
  // as check names them: value N is values[N] of show --json), text, marks.
  std::vector<DiffField> Fields(DEVICE_KVRXDEF_ITEM& def) const;
  // The fields a definition's line gives, in that order: the values its
  // line holds and no others, the marks when it has any.
  std::vector<DiffField> LineFields(const DeviceRef& ref, int index);
  // A device's marks and housings; withEmpty: also when it has none.
  std::vector<DiffField> DeviceFields(const DeviceRef& ref, bool withEmpty) const;

  // What identifies a device's content: its definitions with names resolved.
  std::string Signature(DEVICE_ITEM& device) const;

  long DeviceLine(const DeviceRef& ref) const;
  long DefinitionLine(const DeviceRef& ref, int index) const;
  // The line of the list entry of that number, or 0.
  long EntryLine(int list, long number) const;

 private:
  long Line(ByteSpan span) const { return m_a.Map().PointOf(span.begin).line; }
  // The fields of a definition; with held, only the values held marks.
  std::vector<DiffField> FieldsOf(DEVICE_KVRXDEF_ITEM& def, const bool* held) const;

  Analysis& m_a;
  bool m_visibleOnly;
  std::vector<DeviceRef> m_devices;
  std::unordered_map<std::string, std::vector<size_t>> m_byKey;
  std::unordered_map<std::string, long> m_kinds;
  std::unordered_map<std::string, long> m_manufacturers;
  std::vector<TAG_KIND_OF_DEVICE*> m_kindOrder;
  std::vector<std::pair<TAG_KIND_OF_DEVICE*, TAG_DEVICE_MANUF*>> m_manufOrder;
};

#endif  // DEVDEF_TOOLS_DIFF_DIFF_SIDE_H_
