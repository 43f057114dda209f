// The file's bytes as UTF-8 under the older name: the run's encoding
// decodes them (tools/text_encoding.h). New code calls ShownText.
#ifndef DEVDEF_TOOLS_UTF8_TEXT_H_
#define DEVDEF_TOOLS_UTF8_TEXT_H_

#include <string>

#include "tools/text_encoding.h"

// bytes decoded with the run's encoding, as ShownText does.
inline std::string ToUtf8(const std::string& bytes) { return ShownText(bytes); }
// text decoded with the run's encoding, as ShownText does.
inline std::string ToUtf8(const CString& text) { return ShownText(text); }

#endif  // DEVDEF_TOOLS_UTF8_TEXT_H_
