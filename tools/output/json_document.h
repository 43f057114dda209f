// What every JSON document of the tool shares: the frame that says which
// schema it follows and which file it is about, and text fields that keep
// every byte of the file. The writer functions are the shape; the
// nlohmann::json forms are made from them for the code that still builds
// documents in memory.
#ifndef DEVDEF_TOOLS_OUTPUT_JSON_DOCUMENT_H_
#define DEVDEF_TOOLS_OUTPUT_JSON_DOCUMENT_H_

#include <cstddef>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "devdef/devdef.h"
#include "tools/analysis/analysis.h"
#include "tools/output/json_writer.h"
#include "tools/text/text_encoding.h"

// The version of the documents' shape; it grows when a field changes
// meaning or goes away, not when one is added.
constexpr int kJsonSchema = 1;

// The member field: bytes decoded as encoding. When some bytes cannot be
// decoded (U+FFFD stands for them in the text), the member field + "_bytes"
// follows with all the field's bytes in lowercase hex, so no byte is lost.
void WriteText(JsonWriter& writer, const char* field, TextEncoding encoding, const char* bytes, size_t length);
// The same with the run's encoding, for the file's bytes.
void WriteShownText(JsonWriter& writer, const char* field, const char* bytes, size_t length);
void WriteShownText(JsonWriter& writer, const char* field, const CString& text);

// A member of a document: its key and what writes its value, or, for a
// text, its members (WriteText).
struct DocumentField {
  const char* key;
  std::function<void(JsonWriter&)> value;
  bool text = false;
};

// A whole document: the frame, {"schema": 1, "file", "layout",
// "encoding"} (the file as the command line named it, UTF-8, "<stdin>" for
// standard input; the layout it was read as; the run's encoding), and
// fields, all in the order of their keys; then a line end.
void WriteDocument(JsonWriter& writer, const Analysis& analysis, std::vector<DocumentField> fields);

// Sets object[field] (and object[field + "_bytes"]) as WriteText writes
// them.
void PutText(nlohmann::json& object, const char* field, TextEncoding encoding, const char* bytes, size_t length);
void PutShownText(nlohmann::json& object, const char* field, const char* bytes, size_t length);
void PutShownText(nlohmann::json& object, const char* field, const std::string& bytes);
void PutShownText(nlohmann::json& object, const char* field, const CString& text);

// The frame alone as an object, for documents built in memory.
nlohmann::json DocumentFrame(const Analysis& analysis);

#endif  // DEVDEF_TOOLS_OUTPUT_JSON_DOCUMENT_H_
