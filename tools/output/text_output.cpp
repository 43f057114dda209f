#include "tools/output/text_output.h"

#include <cstring>
#include <string>

#include "tools/analysis/package_name.h"
#include "tools/text/control_escape.h"
#include "tools/text/text_encoding.h"

namespace {

// A name or text of the file as shown: decoded, control characters escaped.
void AppendShown(OutputBuffer& out, const char* bytes, size_t length) {
  size_t plain = 0;
  while (plain < length && bytes[plain] >= 0x20 && bytes[plain] < 0x7F) ++plain;
  // Printable ASCII reads the same in every encoding and needs no escape.
  if (plain == length) {
    out.Append(bytes, length);
    return;
  }
  thread_local std::string decoded;
  thread_local std::string shown;
  decoded.clear();
  shown.clear();
  AppendDecoded(ShownEncoding(), bytes, length, &decoded);
  AppendEscapedControls(decoded, &shown);
  out.Append(shown);
}

void AppendShown(OutputBuffer& out, const CString& text) {
  AppendShown(out, static_cast<LPCTSTR>(text), static_cast<size_t>(text.GetLength()));
}

// "3 (DIP8)", or "3" when the list has no name for the number.
void AppendNamed(OutputBuffer& out, unsigned number, const char* name) {
  out.AppendUnsigned(number);
  if (name == nullptr) return;
  out.Append(" (", 2);
  AppendShown(out, name, std::strlen(name));
  out.Append(')');
}

// The numbers of a list with their names, or "none".
template <typename Numbers, typename NameOf>
void AppendNamedList(OutputBuffer& out, const Numbers& numbers, NameOf nameOf) {
  if (numbers.GetSize() == 0) out.Append("none", 4);
  for (int i = 0; i < numbers.GetSize(); ++i) {
    if (i > 0) out.Append(", ", 2);
    AppendNamed(out, numbers[i], nameOf(numbers[i]));
  }
}

void AppendPackages(OutputBuffer& out, const CWordArray& numbers) {
  AppendNamedList(out, numbers, [](WORD number) { return DEVICE_ITEM::GetPackageName(number); });
}

void AppendAdapters(OutputBuffer& out, const DEVICE_KVRXDEF_ITEM& def) {
  AppendNamedList(out, def.m_AdapterIds, [](WORD number) { return DEVICE_ITEM::GetAdapterName(number); });
}

void AppendModule(OutputBuffer& out, const DEVICE_KVRXDEF_ITEM& def) {
  AppendNamed(out, def.m_ModulId, DEVICE_ITEM::GetModulName(static_cast<int>(def.m_ModulId)));
}

void AppendValues(OutputBuffer& out, const DEVICE_KVRXDEF_ITEM& def) {
  bool first = true;
  for (DWORD value : def.m_DefValues) {
    if (!first) out.Append(' ');
    first = false;
    out.AppendSigned(static_cast<int>(value));
  }
}

void AppendMarks(OutputBuffer& out, DWORD flags) {
  if (flags & 1) out.Append("0xB0", 4);
  if (flags & 2) out.Append(flags & 1 ? " 0xDF" : "0xDF", flags & 1 ? 5 : 4);
}

long LineOf(const Analysis& analysis, ByteSpan place) { return analysis.Map().PointOf(place.begin).line; }

// " (line N)" behind a name.
void AppendLineInParens(OutputBuffer& out, long line) {
  out.Append(" (line ", 7);
  out.AppendSigned(line);
  out.Append(')');
}

DEVICE_KVRXDEF_ITEM& DefinitionAt(const Analysis& analysis, std::uint32_t device, int index) {
  return analysis.DefinitionOf(analysis.Devices()[device].firstDefinition + static_cast<std::uint32_t>(index));
}

long DefinitionLine(const Analysis& analysis, std::uint32_t device, int index) {
  const std::uint32_t record = analysis.Devices()[device].firstDefinition + static_cast<std::uint32_t>(index);
  return LineOf(analysis, analysis.Definitions()[record].line);
}

// "id 1  KVR5  package ...  module ...  adapters ..." with "  line N"
// behind it where line is above 0.
void AppendDefinitionLine(OutputBuffer& out, const char* indent, const DEVICE_KVRXDEF_ITEM& def, long line) {
  out.Append(indent);
  out.Append("id ", 3);
  out.AppendUnsigned(def.m_DefID);
  out.Append("  KVR", 5);
  out.AppendUnsigned(def.m_KvrType);
  if (def.IsHidden()) out.Append("  (hidden)", 10);
  out.Append("  package ", 10);
  AppendPackages(out, def.m_PackageIds);
  out.Append("  module ", 9);
  AppendModule(out, def);
  out.Append("  adapters ", 11);
  AppendAdapters(out, def);
  if (line > 0) {
    out.Append("  line ", 7);
    out.AppendSigned(line);
  }
  out.Append('\n');
}

DEVICE_ITEM& DeviceOf(const Analysis& analysis, std::uint32_t device) {
  return *analysis.Devices()[device].device;
}

const ManufacturerRecord& ManufacturerOf(const Analysis& analysis, std::uint32_t device) {
  return analysis.Manufacturers()[analysis.Devices()[device].manufacturer];
}

void AppendKindName(OutputBuffer& out, const Analysis& analysis, std::uint32_t device) {
  AppendShown(out, analysis.Kinds()[ManufacturerOf(analysis, device).kind].kind->m_Name);
}

void AppendManufacturerName(OutputBuffer& out, const Analysis& analysis, std::uint32_t device) {
  AppendShown(out, ManufacturerOf(analysis, device).manufacturer->m_Name);
}

void AppendPath(OutputBuffer& out, const Analysis& analysis, std::uint32_t device) {
  AppendKindName(out, analysis, device);
  out.Append(" / ", 3);
  AppendManufacturerName(out, analysis, device);
  out.Append(" / ", 3);
  AppendShown(out, DeviceOf(analysis, device).m_DeviceName);
}

void WriteTreeDevice(OutputBuffer& out, const Analysis& analysis, std::uint32_t device) {
  DEVICE_ITEM& item = *analysis.Devices()[device].device;
  out.Append("    ", 4);
  AppendShown(out, item.m_DeviceName);
  out.Append("  (", 3);
  out.AppendSigned(item.GetNumDevDefs());
  out.Append(" visible of ", 12);
  out.AppendUnsigned(static_cast<unsigned>(item.m_DefArray.GetSize()));
  out.Append(" definitions)\n", 14);
  for (int i = 0; i < item.m_DefArray.GetSize(); ++i) {
    const DEVICE_KVRXDEF_ITEM& def = item.m_DefArray[i];
    if (def.IsHidden()) continue;
    AppendDefinitionLine(out, "      ", def, 0);
    out.Append("        text:", 13);
    AppendShown(out, def.m_DefLine);
    out.Append('\n');
  }
}

}  // namespace

void WriteTreeText(OutputBuffer& out, const Analysis& analysis) {
  // Kinds and manufacturers without devices are part of the tree too.
  for (const KindRecord& kind : analysis.Kinds()) {
    AppendShown(out, kind.kind->m_Name);
    out.Append('\n');
    for (std::uint32_t m = kind.firstManufacturer; m < kind.firstManufacturer + kind.manufacturerCount; ++m) {
      const ManufacturerRecord& manufacturer = analysis.Manufacturers()[m];
      out.Append("  ", 2);
      AppendShown(out, manufacturer.manufacturer->m_Name);
      out.Append('\n');
      for (std::uint32_t d = manufacturer.firstDevice; d < manufacturer.firstDevice + manufacturer.deviceCount; ++d) {
        WriteTreeDevice(out, analysis, d);
      }
    }
  }
}

std::string DevicePathText(const Analysis& analysis, std::uint32_t device) {
  std::string text;
  {
    OutputBuffer out(&text);
    AppendPath(out, analysis, device);
  }
  return text;
}

void WriteListLine(OutputBuffer& out, const Analysis& analysis, std::uint32_t device) {
  AppendPath(out, analysis, device);
  out.Append(" (", 2);
  out.AppendSigned(DeviceOf(analysis, device).GetNumDevDefs());
  out.Append(" visible)\n", 10);
}

void WriteDeviceText(OutputBuffer& out, const Analysis& analysis, std::uint32_t device) {
  DEVICE_ITEM& item = *analysis.Devices()[device].device;
  out.Append("device: ", 8);
  AppendShown(out, item.m_DeviceName);
  AppendLineInParens(out, LineOf(analysis, analysis.Devices()[device].name));
  out.Append("\nkind: ", 7);
  AppendKindName(out, analysis, device);
  out.Append("\nmanufacturer: ", 15);
  AppendManufacturerName(out, analysis, device);
  out.Append('\n');
  if (item.m_DeviceFlags & 3) {
    out.Append("marks: ", 7);
    AppendMarks(out, item.m_DeviceFlags);
    out.Append('\n');
  }
  out.Append("housings: ", 10);
  AppendPackages(out, item.m_HousingIds);
  out.Append("\ndefinitions: ", 14);
  out.AppendUnsigned(static_cast<unsigned>(item.m_DefArray.GetSize()));
  out.Append(", ", 2);
  out.AppendSigned(item.GetNumDevDefs());
  out.Append(" visible\n", 9);
  for (int i = 0; i < item.m_DefArray.GetSize(); ++i) {
    DEVICE_KVRXDEF_ITEM& def = item.m_DefArray[i];
    AppendDefinitionLine(out, "  ", def, DefinitionLine(analysis, device, i));
    const char* packageName = def.IsHidden() ? nullptr : PackageNameOf(def);
    if (packageName != nullptr) {
      out.Append("    package name: ", 18);
      AppendShown(out, packageName, std::strlen(packageName));
      out.Append('\n');
    }
    out.Append("    values: ", 12);
    AppendValues(out, def);
    out.Append('\n');
    if (def.m_MarkFlags & 3) {
      out.Append("    marks: ", 11);
      AppendMarks(out, def.m_MarkFlags);
      out.Append('\n');
    }
    out.Append("    text:", 9);
    AppendShown(out, def.m_DefLine);
    out.Append('\n');
  }
}

void WriteFoundText(OutputBuffer& out, const Analysis& analysis, std::uint32_t device, int index) {
  const DEVICE_ITEM& item = DeviceOf(analysis, device);
  DEVICE_KVRXDEF_ITEM& def = DefinitionAt(analysis, device, index);
  int visible = 0;
  for (int i = 0; i < index; ++i) visible += item.m_DefArray[i].IsHidden() ? 0 : 1;
  out.Append("kind: ", 6);
  AppendKindName(out, analysis, device);
  out.Append("\nmanufacturer: ", 15);
  AppendManufacturerName(out, analysis, device);
  out.Append("\ndevice: ", 9);
  AppendShown(out, item.m_DeviceName);
  AppendLineInParens(out, LineOf(analysis, analysis.Devices()[device].name));
  out.Append("\nvisible index: ", 16);
  out.AppendSigned(visible);
  out.Append("\nid: ", 5);
  out.AppendUnsigned(def.m_DefID);
  AppendLineInParens(out, DefinitionLine(analysis, device, index));
  out.Append("\ngeneration: ", 13);
  out.AppendUnsigned(def.m_KvrType);
  out.Append("\npackage: ", 10);
  const char* packageName = PackageNameOf(def);
  if (packageName != nullptr) AppendShown(out, packageName, std::strlen(packageName));
  out.Append("\npackage numbers: ", 18);
  AppendPackages(out, def.m_PackageIds);
  out.Append("\nmodule: ", 9);
  AppendModule(out, def);
  out.Append("\nadapters: ", 11);
  AppendAdapters(out, def);
  out.Append("\nvalues: ", 9);
  AppendValues(out, def);
  out.Append("\ntext:", 6);
  AppendShown(out, def.m_DefLine);
  out.Append('\n');
}
