// ScanFormatted over arbitrary text and format. The input is the format, a
// NUL byte, then the text. Every destination is a buffer as long as the text
// (and at least eight bytes), so any word or number fits.
#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "fuzz/fuzz_support.h"

namespace {

constexpr int kDestinations = 16;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
  const char* begin = reinterpret_cast<const char*>(pData);
  const char* split = static_cast<const char*>(std::memchr(begin, '\0', nSize));
  std::string format(begin, split != nullptr ? split : begin + nSize);
  const std::string text = split != nullptr ? std::string(split + 1, begin + nSize) : std::string();
  // No more conversions than destinations: the format ends before the
  // percent sign that would be one too many.
  int percents = 0;
  for (size_t i = 0; i < format.size(); ++i) {
    if (format[i] == '%' && ++percents > kDestinations) {
      format.resize(i);
      break;
    }
  }
  // Both strings end at their first NUL, as C strings do.
  const std::string cText(text.c_str());
  std::vector<std::vector<char>> dest(kDestinations, std::vector<char>(std::max<size_t>(cText.size() + 1, 8)));
  unsigned short count = 0;
  const char* after = ScanFormatted(&count, cText.c_str(), format.c_str(), dest[0].data(), dest[1].data(),
                                    dest[2].data(), dest[3].data(), dest[4].data(), dest[5].data(), dest[6].data(),
                                    dest[7].data(), dest[8].data(), dest[9].data(), dest[10].data(), dest[11].data(),
                                    dest[12].data(), dest[13].data(), dest[14].data(), dest[15].data());
  // Null when a conversion found nothing to convert.
  DEVDEF_FUZZ_CHECK(after == nullptr || (after >= cText.c_str() && after <= cText.c_str() + cText.size()));
  DEVDEF_FUZZ_CHECK(count == 65535 || count <= kDestinations);
  return 0;
}
