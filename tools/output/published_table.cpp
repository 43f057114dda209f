#include "tools/output/published_table.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "tools/analysis/package_name.h"
#include "tools/output/catalogue_json.h"
#include "tools/output/json_writer.h"
#include "tools/text/text_encoding.h"
#include "tools/text/utf8.h"

namespace {

// Calls row(kind, manufacturer, device, index) for each definition in the
// catalogue's order, the hidden ones left out when visibleOnly.
template <typename Row>
void ForEachDefinition(const Analysis& analysis, bool visibleOnly, const Row& row) {
  for (std::uint32_t k = 0; k < analysis.Kinds().size(); ++k) {
    const KindRecord& kind = analysis.Kinds()[k];
    for (std::uint32_t m = kind.firstManufacturer; m < kind.firstManufacturer + kind.manufacturerCount; ++m) {
      const ManufacturerRecord& manufacturer = analysis.Manufacturers()[m];
      for (std::uint32_t d = manufacturer.firstDevice; d < manufacturer.firstDevice + manufacturer.deviceCount; ++d) {
        const DEVICE_ITEM& device = *analysis.Devices()[d].device;
        for (int i = 0; i < device.m_DefArray.GetSize(); ++i) {
          if (visibleOnly && device.m_DefArray[i].IsHidden()) continue;
          row(k, m, d, i);
        }
      }
    }
  }
}

long LineOf(const Analysis& analysis, ByteSpan place) { return analysis.Map().PointOf(place.begin).line; }

// The fields of one CSV row, written as they come. The buffers are kept
// from row to row, so a row allocates nothing once they have grown.
class CsvRow {
 public:
  explicit CsvRow(OutputBuffer& out) : out_(out) {}

  // A field of UTF-8 text, in quotes when it needs them.
  void Field(std::string_view text) {
    Separate();
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
      out_.Append(text);
      return;
    }
    out_.Append('"');
    size_t from = 0;
    for (size_t quote = text.find('"'); quote != std::string_view::npos; quote = text.find('"', from)) {
      out_.Append(text.substr(from, quote + 1 - from));
      out_.Append('"');
      from = quote + 1;
    }
    out_.Append(text.substr(from));
    out_.Append('"');
  }
  // A field of the file's bytes, decoded as the run shows them.
  void Shown(const char* bytes, size_t length) {
    // ASCII reads the same in every encoding.
    if (AsciiRun(bytes, length) == length) {
      Field(std::string_view(bytes, length));
      return;
    }
    decoded_.clear();
    AppendDecoded(ShownEncoding(), bytes, length, &decoded_);
    Field(decoded_);
  }
  void Shown(const CString& text) { Shown(static_cast<LPCTSTR>(text), static_cast<size_t>(text.GetLength())); }
  void Number(std::int64_t value) {
    Separate();
    out_.AppendSigned(value);
  }
  // Names of a header list: each entry's name, or #N where the list has
  // none, joined with ';'.
  template <typename Numbers, typename NameOf>
  void Names(const Numbers& numbers, const NameOf& nameOf) {
    list_.clear();
    for (int i = 0; i < numbers.GetSize(); ++i) {
      if (i > 0) list_ += ';';
      AppendName(numbers[i], nameOf(numbers[i]));
    }
    Field(list_);
  }
  void Name(unsigned number, const char* name) {
    list_.clear();
    AppendName(number, name);
    Field(list_);
  }
  void End() {
    out_.Append("\r\n", 2);
    first_ = true;
  }

 private:
  void Separate() {
    if (!first_) out_.Append(',');
    first_ = false;
  }
  void AppendName(unsigned number, const char* name) {
    if (name == nullptr) {
      list_ += '#';
      list_ += std::to_string(number);
    } else {
      AppendDecoded(ShownEncoding(), name, std::strlen(name), &list_);
    }
  }

  OutputBuffer& out_;
  bool first_ = true;
  std::string decoded_;
  std::string list_;
};

constexpr const char* kCsvColumns[] = {"kind",       "manufacturer", "device",       "device_line", "id",
                                       "generation", "hidden",       "package_name", "packages",    "module",
                                       "adapters",   "text",         "line"};

}  // namespace

void WritePublishedCsv(OutputBuffer& out, const Analysis& analysis, const PublishOptions& options) {
  CsvRow row(out);
  for (const char* column : kCsvColumns) row.Field(column);
  row.End();
  ForEachDefinition(analysis, options.visibleOnly, [&](std::uint32_t k, std::uint32_t m, std::uint32_t d, int i) {
    const DeviceRecord& device = analysis.Devices()[d];
    const std::uint32_t record = device.firstDefinition + static_cast<std::uint32_t>(i);
    DEVICE_KVRXDEF_ITEM& def = analysis.DefinitionOf(record);
    row.Shown(analysis.Kinds()[k].kind->m_Name);
    row.Shown(analysis.Manufacturers()[m].manufacturer->m_Name);
    row.Shown(device.device->m_DeviceName);
    row.Number(LineOf(analysis, device.name));
    row.Number(def.m_DefID);
    row.Number(def.m_KvrType);
    row.Field(def.IsHidden() ? "true" : "false");
    const char* packageName = def.IsHidden() ? nullptr : PackageNameOf(def);
    if (packageName != nullptr) {
      row.Shown(packageName, std::strlen(packageName));
    } else {
      row.Field("");
    }
    row.Names(def.m_PackageIds, [](WORD number) { return DEVICE_ITEM::GetPackageName(number); });
    row.Name(def.m_ModulId, DEVICE_ITEM::GetModulName(static_cast<int>(def.m_ModulId)));
    row.Names(def.m_AdapterIds, [](WORD number) { return DEVICE_ITEM::GetAdapterName(number); });
    row.Shown(def.m_DefLine);
    row.Number(LineOf(analysis, analysis.Definitions()[record].line));
    row.End();
  });
}

void WritePublishedJsonLines(OutputBuffer& out, const Analysis& analysis, const PublishOptions& options) {
  JsonWriter writer(out, JsonWriter::Layout::kCompact);
  ForEachDefinition(analysis, options.visibleOnly, [&](std::uint32_t k, std::uint32_t m, std::uint32_t d, int i) {
    const DeviceRecord& device = analysis.Devices()[d];
    writer.BeginObject();
    writer.Key("definition");
    WriteDefinition(writer, analysis, d, i);
    writer.Key("device");
    writer.BeginObject();
    writer.Key("line");
    writer.Signed(LineOf(analysis, device.name));
    WriteShownText(writer, "name", device.device->m_DeviceName);
    writer.EndObject();
    writer.Key("kind");
    WriteKind(writer, analysis, k);
    writer.Key("manufacturer");
    WriteManufacturer(writer, analysis, m);
    writer.EndObject();
    writer.EndDocument();
  });
}
