// What every JSON document of the tool shares: the frame that says which
// schema it follows and which file it is about, and text fields that keep
// every byte of the file.
#ifndef DEVDEF_TOOLS_OUTPUT_JSON_DOCUMENT_H_
#define DEVDEF_TOOLS_OUTPUT_JSON_DOCUMENT_H_

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>

#include "devdef/devdef.h"
#include "tools/analysis/analysis.h"
#include "tools/text/text_encoding.h"

// The version of the documents' shape; it grows when a field changes
// meaning or goes away, not when one is added.
constexpr int kJsonSchema = 1;

// Sets object[field] to bytes decoded as encoding. When some bytes cannot
// be decoded (U+FFFD stands for them in the text), object[field + "_bytes"]
// holds all the field's bytes in lowercase hex, so no byte is lost.
void PutText(nlohmann::json& object, const char* field, TextEncoding encoding, const char* bytes, size_t length);
// The same with the run's encoding, for the file's bytes.
void PutShownText(nlohmann::json& object, const char* field, const char* bytes, size_t length);
void PutShownText(nlohmann::json& object, const char* field, const std::string& bytes);
void PutShownText(nlohmann::json& object, const char* field, const CString& text);

// {"schema": 1, "file", "layout", "encoding"}: the file as the command line
// named it (UTF-8; "<stdin>" for standard input), the layout it was read as
// and the run's encoding.
nlohmann::json DocumentFrame(const Analysis& analysis);

#endif  // DEVDEF_TOOLS_OUTPUT_JSON_DOCUMENT_H_
