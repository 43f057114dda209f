#include "tools/analysis/line_look.h"

#include <cstring>

#include "tools/text/line_end.h"

namespace {

bool OpensWith(const unsigned char* text, size_t length, const char* word) {
  const size_t size = std::strlen(word);
  return length >= size && std::memcmp(text, word, size) == 0;
}

const char* const kBlockKeywords[] = {"KVR3DEF:", "KVR4DEF:", "KVR5DEF:"};
const char* const kLayout7Keywords[] = {"KVR5M_DEF:", "KVR5D_DEF:", "KVR5P_DEF:", "DEVICE_HOUSING_LIST:"};

}  // namespace

std::uint32_t LineLooks::LineEnd(std::uint32_t pos) const {
  return static_cast<std::uint32_t>(
      FindLineEnd(reinterpret_cast<const unsigned char*>(m_bytes.data()), pos, m_bytes.size()));
}

ByteSpan LineLooks::Trimmed(std::uint32_t begin, std::uint32_t end) const {
  const unsigned char* b = reinterpret_cast<const unsigned char*>(m_bytes.data());
  while (begin < end && DevdefIsSpace(b[begin])) ++begin;
  while (end > begin && DevdefIsSpace(b[end - 1])) --end;
  return ByteSpan{begin, end};
}

bool LineLooks::OpensWithNoCase(std::uint32_t pos, std::uint32_t end, const char* word) const {
  const size_t size = std::strlen(word);
  if (end - pos < size) return false;
  for (size_t i = 0; i < size; ++i) {
    if (DevdefToLower(static_cast<unsigned char>(m_bytes[pos + i])) != DevdefToLower(static_cast<unsigned char>(word[i]))) {
      return false;
    }
  }
  return true;
}

std::uint32_t LineLooks::HiddenVersionLine(std::uint32_t* keyword) const {
  const unsigned char* b = reinterpret_cast<const unsigned char*>(m_bytes.data());
  const std::uint32_t size = static_cast<std::uint32_t>(m_bytes.size());
  std::uint32_t start = 0;
  while (start < size) {
    const std::uint32_t end = LineEnd(start);
    std::uint32_t at = start;
    if (start == 0 && OpensWith(b, size, "\xEF\xBB\xBF")) at = 3;
    while (at < end && DevdefIsSpace(b[at])) ++at;
    if (at > start && OpensWithNoCase(at, end, "DEF_LAYOUT_VERSION")) {
      *keyword = at;
      return start;
    }
    start = end < size && b[end] == '\r' && end + 1 < size && b[end + 1] == '\n' ? end + 2 : end + 1;
  }
  return kNoRecord;
}

LineLook LineLooks::Of(std::uint32_t lineStart) const {
  const unsigned char* b = reinterpret_cast<const unsigned char*>(m_bytes.data());
  const std::uint32_t end = LineEnd(lineStart);
  const ByteSpan trimmed = Trimmed(lineStart, end);
  if (trimmed.begin == trimmed.end) return LineLook::kBlank;
  const unsigned char first = b[lineStart];
  if (first == ';' || first == '/' || b[trimmed.begin] == ';') return LineLook::kComment;
  if (first == '"') return LineLook::kQuote;
  const unsigned char* text = b + trimmed.begin;
  size_t length = trimmed.end - trimmed.begin;
  if (text[0] == '{') return LineLook::kBlockOpen;
  if (text[0] == '}') return LineLook::kBlockClose;
  if (m_layout == 7 && (text[0] == 0xB0 || text[0] == 0xDF)) {
    ++text;
    --length;
  }
  for (const char* keyword : kBlockKeywords) {
    if (OpensWith(text, length, keyword)) return LineLook::kDefinition;
  }
  for (const char* keyword : kLayout7Keywords) {
    if (OpensWith(text, length, keyword)) return LineLook::kDefinition;
  }
  if (first == ':') return LineLook::kManufacturer;
  for (const char* keyword : {"HOUSING_LIST", "ADAPTER_LIST", "MODUL_LIST"}) {
    if (OpensWithNoCase(lineStart, end, keyword)) return LineLook::kList;
  }
  if (OpensWithNoCase(lineStart, end, "DEF_LAYOUT_VERSION")) return LineLook::kVersion;
  for (std::uint32_t i = lineStart; i < end; ++i) {
    if (b[i] == ';' || b[i] == '/') break;
    if (b[i] == ':') {
      if (i > lineStart && (i + 1 >= m_bytes.size() || b[i + 1] == ' ' || IsLineEnd(b[i + 1]))) return LineLook::kKind;
      break;
    }
  }
  return LineLook::kDevice;
}
