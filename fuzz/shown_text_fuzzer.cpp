// The file's bytes as the tool's text output shows them: decoded in each
// encoding, then with control characters escaped. Whatever the bytes, the
// result holds no control character, is well-formed UTF-8, and differs from
// the decoded text only where one stood.
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/fuzz_support.h"
#include "tools/text/control_escape.h"
#include "tools/text/text_encoding.h"
#include "tools/text/utf8.h"

namespace {

bool IsControl(char32_t c) { return c < 0x20 || (c >= 0x7f && c <= 0x9f); }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
  const char* bytes = reinterpret_cast<const char*>(pData);
  for (TextEncoding encoding : {TextEncoding::kUtf8, TextEncoding::kWindows1252, TextEncoding::kLatin1}) {
    std::string decoded;
    AppendDecoded(encoding, bytes, nSize, &decoded);
    const std::string shown = EscapeControls(decoded);
    // Walk both: each character of the decoded text is in the shown one,
    // as it is or, for a control character, as its escape.
    size_t at = 0;
    bool anyControl = false;
    for (size_t i = 0; i < decoded.size();) {
      char32_t c = 0;
      const size_t length = NextCodePoint(decoded.data() + i, decoded.size() - i, &c);
      DEVDEF_FUZZ_CHECK(c < kIllFormedBase);  // the decoders give UTF-8
      if (IsControl(c)) {
        anyControl = true;
        static const char kHex[] = "0123456789abcdef";
        const std::string escape = c < 0x80 ? std::string("\\x") + kHex[c >> 4] + kHex[c & 0xF]
                                            : std::string("\\u00") + kHex[c >> 4] + kHex[c & 0xF];
        DEVDEF_FUZZ_CHECK(shown.compare(at, escape.size(), escape) == 0);
        at += escape.size();
      } else {
        DEVDEF_FUZZ_CHECK(shown.compare(at, length, decoded, i, length) == 0);
        at += length;
      }
      i += length;
    }
    DEVDEF_FUZZ_CHECK(at == shown.size());
    DEVDEF_FUZZ_CHECK(anyControl || shown == decoded);
  }
  return 0;
}
