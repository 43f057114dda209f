#include "tools/output/published_page.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "tools/output/page_assets.h"
#include "tools/text/text_encoding.h"

namespace {

// The page's data is one JSON document inside a <script> element. Besides
// what JSON escapes, "<", ">" and "&" are written as \u escapes, so no
// name or text of the file can end the element ("</script") or open a
// comment ("<!--") in it.
void AppendJsonString(std::string& out, std::string_view text) {
  static const char kHex[] = "0123456789abcdef";
  out += '"';
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      out += '\\';
      out += c;
    } else if (byte < 0x20 || c == '<' || c == '>' || c == '&') {
      out += "\\u00";
      out += kHex[byte >> 4];
      out += kHex[byte & 15];
    } else {
      out += c;
    }
  }
  out += '"';
}

void AppendHtmlEscaped(OutputBuffer& out, std::string_view text) {
  for (const char c : text) {
    switch (c) {
      case '&': out.Append("&amp;", 5); break;
      case '<': out.Append("&lt;", 4); break;
      case '>': out.Append("&gt;", 4); break;
      case '"': out.Append("&quot;", 6); break;
      default: out.Append(c); break;
    }
  }
}

// Names and texts, each once: a row refers to them by their index here.
// Keyed by the file's bytes, so each is decoded once.
class StringTable {
 public:
  std::uint32_t IndexOf(const char* bytes, size_t length) {
    auto [at, added] = m_index.try_emplace(std::string(bytes, length), static_cast<std::uint32_t>(m_shown.size()));
    if (added) m_shown.push_back(ShownText(bytes, length));
    return at->second;
  }
  std::uint32_t IndexOf(const CString& text) {
    return IndexOf(static_cast<LPCTSTR>(text), static_cast<size_t>(text.GetLength()));
  }
  const std::vector<std::string>& Shown() const { return m_shown; }

 private:
  std::unordered_map<std::string, std::uint32_t> m_index;
  std::vector<std::string> m_shown;
};

// A column of numbers as one JSON string, which the page parses far faster
// than an array and which takes a byte for most numbers: each number in
// base-64 digits of five bits, least significant first, where a digit of
// 32 or more says that another follows (as source maps write numbers). A
// signed column zigzags its numbers first: 0, -1, 1, -2 as 0, 1, 2, 3.
class NumberColumn {
 public:
  explicit NumberColumn(bool isSigned = false) : m_signed(isSigned) {}
  void Add(std::int64_t value) {
    static const char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::uint64_t rest = static_cast<std::uint64_t>(value);
    if (m_signed) rest = value < 0 ? (static_cast<std::uint64_t>(-(value + 1)) << 1) | 1 : rest << 1;
    while (rest >= 32) {
      m_text += kDigits[32 | (rest & 31)];
      rest >>= 5;
    }
    m_text += kDigits[rest];
  }
  // "key":"digits"
  void AppendTo(std::string& out, const char* key) const {
    AppendJsonString(out, key);
    out += ":\"";
    out += m_text;
    out += '"';
  }

 private:
  bool m_signed;
  std::string m_text;
};

void AppendStrings(std::string& out, const char* key, const std::vector<std::string>& strings) {
  AppendJsonString(out, key);
  out += ":[";
  for (size_t i = 0; i < strings.size(); ++i) {
    if (i > 0) out += ',';
    AppendJsonString(out, strings[i]);
  }
  out += ']';
}

std::vector<std::string> ShownList(const std::vector<std::string>& names) {
  std::vector<std::string> shown;
  shown.reserve(names.size());
  for (const std::string& name : names) shown.push_back(ShownText(name));
  return shown;
}

// The columns of the devices and of their definitions. Every row refers
// to shared tables by index; lines and ids are written as the difference
// from the one before, which is mostly one digit. A row's line is its
// device's. The page's script
// (page.js, readData) undoes that.
struct PageColumns {
  NumberColumn deviceGroup{true};  // the manufacturer record, from the previous device's
  NumberColumn deviceLine{true};   // from the previous device's line
  NumberColumn deviceDefinitions;  // how many of its definitions follow
  std::vector<std::string> deviceName;
  NumberColumn id{true};    // from the previous definition's id
  NumberColumn generation;  // generation * 2, + 1 when hidden
  NumberColumn module;
  NumberColumn text;        // into the texts
  NumberColumn packages;    // per definition: their count, then the numbers
  NumberColumn adapters;
};

std::string PageData(const Analysis& analysis, const PublishOptions& options) {
  StringTable kinds;
  StringTable makers;
  StringTable texts;
  NumberColumn groups;  // per manufacturer record: its kind, its name
  for (const ManufacturerRecord& maker : analysis.Manufacturers()) {
    groups.Add(kinds.IndexOf(analysis.Kinds()[maker.kind].kind->m_Name));
    groups.Add(makers.IndexOf(maker.manufacturer->m_Name));
  }
  // Kinds without manufacturers still name a kind of the filter.
  for (const KindRecord& kind : analysis.Kinds()) kinds.IndexOf(kind.kind->m_Name);

  PageColumns columns;
  const SourceMap& map = analysis.Map();
  std::int64_t lastGroup = 0;
  std::int64_t lastDeviceLine = 0;
  std::int64_t lastId = 0;
  for (const DeviceRecord& at : analysis.Devices()) {
    const DEVICE_ITEM& item = *at.device;
    columns.deviceName.push_back(ShownText(item.m_DeviceName));
    columns.deviceGroup.Add(static_cast<std::int64_t>(at.manufacturer) - lastGroup);
    lastGroup = at.manufacturer;
    const std::int64_t deviceLine = map.PointOf(at.name.begin).line;
    columns.deviceLine.Add(deviceLine - lastDeviceLine);
    lastDeviceLine = deviceLine;
    int shown = 0;
    for (std::uint32_t i = 0; i < at.definitionCount; ++i) {
      const std::uint32_t record = at.firstDefinition + i;
      const DEVICE_KVRXDEF_ITEM& def = analysis.DefinitionOf(record);
      const bool hidden = def.IsHidden();
      if (hidden && options.visibleOnly) continue;
      ++shown;
      columns.id.Add(static_cast<std::int64_t>(def.m_DefID) - lastId);
      lastId = def.m_DefID;
      columns.generation.Add(static_cast<std::int64_t>(def.m_KvrType) * 2 + (hidden ? 1 : 0));
      columns.module.Add(def.m_ModulId);
      columns.text.Add(texts.IndexOf(def.m_DefLine));
      columns.packages.Add(def.m_PackageIds.GetSize());
      for (int p = 0; p < def.m_PackageIds.GetSize(); ++p) columns.packages.Add(def.m_PackageIds[p]);
      columns.adapters.Add(def.m_AdapterIds.GetSize());
      for (int a = 0; a < def.m_AdapterIds.GetSize(); ++a) columns.adapters.Add(def.m_AdapterIds[a]);
    }
    columns.deviceDefinitions.Add(shown);
  }

  std::string data = "{";
  AppendJsonString(data, "file");
  data += ':';
  AppendJsonString(data, options.file);
  data += ",\"layout\":" + std::to_string(analysis.Layout());
  data += ",\"generation\":" + std::to_string(options.generation);
  data += ",\"visibleOnly\":";
  data += options.visibleOnly ? "true" : "false";
  data += ',';
  AppendStrings(data, "kinds", kinds.Shown());
  data += ',';
  AppendStrings(data, "makers", makers.Shown());
  data += ',';
  groups.AppendTo(data, "groups");
  data += ',';
  AppendStrings(data, "packages", ShownList(analysis.ListNames(0)));
  data += ',';
  AppendStrings(data, "adapters", ShownList(analysis.ListNames(1)));
  data += ',';
  AppendStrings(data, "modules", ShownList(analysis.ListNames(2)));
  data += ',';
  AppendStrings(data, "texts", texts.Shown());
  data += ",\"device\":{";
  AppendStrings(data, "name", columns.deviceName);
  data += ',';
  columns.deviceGroup.AppendTo(data, "group");
  data += ',';
  columns.deviceLine.AppendTo(data, "line");
  data += ',';
  columns.deviceDefinitions.AppendTo(data, "definitions");
  data += "},\"definition\":{";
  columns.id.AppendTo(data, "id");
  data += ',';
  columns.generation.AppendTo(data, "generation");
  data += ',';
  columns.module.AppendTo(data, "module");
  data += ',';
  columns.text.AppendTo(data, "text");
  data += ',';
  columns.packages.AppendTo(data, "packages");
  data += ',';
  columns.adapters.AppendTo(data, "adapters");
  data += "}}";
  return data;
}

// The title the page goes by: the option's, else one made of the file's
// name.
std::string TitleOf(const PublishOptions& options) {
  if (!options.title.empty()) return options.title;
  const size_t slash = options.file.find_last_of("/\\");
  return "Devices of " + (slash == std::string::npos ? options.file : options.file.substr(slash + 1));
}

}  // namespace

void WritePublishedPage(OutputBuffer& out, const Analysis& analysis, const PublishOptions& options) {
  // The template's placeholders are {{name}}; each is the HTML-escaped
  // value of a header field, or the style, the script or the data.
  const std::string_view page(kPageHTML, kPageHTMLLength);
  size_t at = 0;
  while (at < page.size()) {
    const size_t open = page.find("{{", at);
    const size_t close = open == std::string_view::npos ? open : page.find("}}", open);
    if (close == std::string_view::npos) {
      out.Append(page.substr(at));
      break;
    }
    out.Append(page.substr(at, open - at));
    const std::string_view name = page.substr(open + 2, close - open - 2);
    if (name == "title") {
      AppendHtmlEscaped(out, TitleOf(options));
    } else if (name == "file") {
      AppendHtmlEscaped(out, options.file);
    } else if (name == "layout") {
      out.AppendSigned(analysis.Layout());
    } else if (name == "generation") {
      out.AppendSigned(options.generation);
    } else if (name == "date") {
      AppendHtmlEscaped(out, options.date);
    } else if (name == "version") {
      AppendHtmlEscaped(out, DEVDEF_VERSION);
    } else if (name == "style") {
      out.Append(kPageCSS, kPageCSSLength);
    } else if (name == "script") {
      out.Append(kPageJS, kPageJSLength);
    } else if (name == "data") {
      out.Append(PageData(analysis, options));
    } else {
      out.Append(page.substr(open, close + 2 - open));
    }
    at = close + 2;
  }
}
