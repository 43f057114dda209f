#include "tools/output/json_document.h"

using nlohmann::json;

void PutText(json& object, const char* field, TextEncoding encoding, const char* bytes, size_t length) {
  std::string text;
  if (AppendDecoded(encoding, bytes, length, &text)) {
    object[field] = std::move(text);
    return;
  }
  object[field] = std::move(text);
  static constexpr char kHex[] = "0123456789abcdef";
  std::string hex;
  hex.reserve(2 * length);
  for (size_t i = 0; i < length; ++i) {
    const unsigned char c = static_cast<unsigned char>(bytes[i]);
    hex.push_back(kHex[c >> 4]);
    hex.push_back(kHex[c & 0x0F]);
  }
  object[std::string(field) + "_bytes"] = std::move(hex);
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
  json frame = json::object();
  frame["schema"] = kJsonSchema;
  // Paths come from the command line, which is UTF-8.
  PutText(frame, "file", TextEncoding::kUtf8, analysis.Path().data(), analysis.Path().size());
  frame["layout"] = analysis.Layout();
  frame["encoding"] = TextEncodingName(ShownEncoding());
  return frame;
}
