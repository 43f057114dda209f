#include "tools/output/json_document.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "tools/text/utf8.h"

using nlohmann::json;

namespace {

// bytes decoded as encoding into text; when some cannot be decoded, false
// and all the bytes in lowercase hex in hex.
bool Decode(TextEncoding encoding, const char* bytes, size_t length, std::string* text, std::string* hex) {
  text->clear();
  if (AppendDecoded(encoding, bytes, length, text)) return true;
  static constexpr char kHex[] = "0123456789abcdef";
  hex->clear();
  hex->reserve(2 * length);
  for (size_t i = 0; i < length; ++i) {
    const unsigned char c = static_cast<unsigned char>(bytes[i]);
    hex->push_back(kHex[c >> 4]);
    hex->push_back(kHex[c & 0x0F]);
  }
  return false;
}

}  // namespace

void WriteText(JsonWriter& writer, const char* field, TextEncoding encoding, const char* bytes, size_t length) {
  writer.Key(field);
  // ASCII reads the same in every encoding.
  if (AsciiRun(bytes, length) == length) {
    writer.String(std::string_view(bytes, length));
    return;
  }
  thread_local std::string text;
  thread_local std::string hex;
  const bool lossless = Decode(encoding, bytes, length, &text, &hex);
  writer.String(text);
  if (lossless) return;
  writer.Key(std::string(field) + "_bytes");
  writer.String(hex);
}

void WriteShownText(JsonWriter& writer, const char* field, const char* bytes, size_t length) {
  WriteText(writer, field, ShownEncoding(), bytes, length);
}

void WriteShownText(JsonWriter& writer, const char* field, const CString& text) {
  WriteShownText(writer, field, static_cast<LPCTSTR>(text), static_cast<size_t>(text.GetLength()));
}

void WriteDocument(JsonWriter& writer, const Analysis& analysis, std::vector<DocumentField> fields) {
  fields.push_back({"schema", [](JsonWriter& out) { out.Signed(kJsonSchema); }});
  // Paths come from the command line, which is UTF-8.
  fields.push_back({"file",
                    [&analysis](JsonWriter& out) {
                      WriteText(out, "file", TextEncoding::kUtf8, analysis.Path().data(), analysis.Path().size());
                    },
                    true});
  fields.push_back({"layout", [&analysis](JsonWriter& out) { out.Signed(analysis.Layout()); }});
  fields.push_back({"encoding", [](JsonWriter& out) { out.String(TextEncodingName(ShownEncoding())); }});
  std::sort(fields.begin(), fields.end(),
            [](const DocumentField& a, const DocumentField& b) { return std::strcmp(a.key, b.key) < 0; });
  writer.BeginObject();
  for (const DocumentField& field : fields) {
    if (!field.text) writer.Key(field.key);
    field.value(writer);
  }
  writer.EndObject();
  writer.EndDocument();
}

void PutText(json& object, const char* field, TextEncoding encoding, const char* bytes, size_t length) {
  std::string text;
  std::string hex;
  const bool lossless = Decode(encoding, bytes, length, &text, &hex);
  object[field] = std::move(text);
  if (!lossless) object[std::string(field) + "_bytes"] = std::move(hex);
}

void PutShownText(json& object, const char* field, const char* bytes, size_t length) {
  PutText(object, field, ShownEncoding(), bytes, length);
}

void PutShownText(json& object, const char* field, const std::string& bytes) {
  PutShownText(object, field, bytes.data(), bytes.size());
}

void PutShownText(json& object, const char* field, const CString& text) {
  PutShownText(object, field, static_cast<LPCTSTR>(text), static_cast<size_t>(text.GetLength()));
}

json DocumentFrame(const Analysis& analysis) {
  std::string text;
  {
    OutputBuffer buffer(&text);
    JsonWriter writer(buffer);
    WriteDocument(writer, analysis, {});
  }
  return json::parse(text);
}
