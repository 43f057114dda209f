// The values of the tool's options as a command line gives them: an id
// (the words of the input up to its first NUL) is taken exactly when it is
// decimal digits with a sign at most and within 32 bits, a count exactly
// when it is digits without a sign up to 2147483647; the names most
// like any word are among the names offered (the NUL-separated words
// behind it), at most three.
#include <cstddef>
#include <cstdint>
#include <algorithm>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "fuzz/fuzz_support.h"
#include "tools/commands/argument_values.h"

namespace {

// The id that text stands for, by another road: the digits without their
// leading zeros compared as text with the limits.
bool ReferenceId(const std::string& text, std::uint32_t* id) {
  size_t at = !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
  const bool negative = at == 1 && text[0] == '-';
  if (at == text.size()) return false;
  for (size_t i = at; i < text.size(); ++i) {
    if (text[i] < '0' || text[i] > '9') return false;
  }
  while (at + 1 < text.size() && text[at] == '0') ++at;
  const std::string digits = text.substr(at);
  const std::string limit = negative ? "2147483648" : "4294967295";
  if (digits.size() > limit.size() || (digits.size() == limit.size() && digits > limit)) return false;
  const std::uint64_t value = std::stoull(digits);
  *id = negative ? static_cast<std::uint32_t>(0 - value) : static_cast<std::uint32_t>(value);
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
  const char* begin = reinterpret_cast<const char*>(pData);
  const char* split = static_cast<const char*>(std::memchr(begin, '\0', nSize));
  const std::string word(begin, split != nullptr ? split : begin + nSize);

  std::uint32_t id = 0;
  std::string problem;
  std::uint32_t expected = 0;
  const bool taken = ParseDefinitionId(word, &id, &problem);
  DEVDEF_FUZZ_CHECK(taken == ReferenceId(word, &expected));
  DEVDEF_FUZZ_CHECK(taken ? problem.empty() && id == expected
                          : problem.compare(0, word.size() + 2, "'" + word + "'") == 0);

  long count = -1;
  std::string countProblem;
  const bool counted = ParseCount(word, &count, &countProblem);
  const bool digitsOnly = !word.empty() && word.find_first_not_of("0123456789") == std::string::npos;
  const size_t significant = digitsOnly ? word.size() - std::min(word.find_first_not_of('0'), word.size() - 1) : 0;
  const bool inRange =
      digitsOnly && (significant < 10 || (significant == 10 && word.substr(word.size() - 10) <= "2147483647"));
  DEVDEF_FUZZ_CHECK(counted == inRange);
  DEVDEF_FUZZ_CHECK(counted ? countProblem.empty() && count >= 0 && std::to_string(count).size() == significant
                            : countProblem.compare(0, word.size() + 2, "'" + word + "'") == 0);

  // The rest of the input, NUL-separated, are the names offered.
  std::vector<std::string> names;
  for (const char* at = split; at != nullptr && at < begin + nSize;) {
    const size_t left = static_cast<size_t>(begin + nSize - at - 1);
    const char* next = static_cast<const char*>(std::memchr(at + 1, '\0', left));
    names.emplace_back(at + 1, next != nullptr ? next : begin + nSize);
    at = next;
  }
  const std::vector<std::string> similar = MostSimilar(word, names);
  DEVDEF_FUZZ_CHECK(similar.size() <= 3);
  const std::set<std::string> offered(names.begin(), names.end());
  for (const std::string& name : similar) DEVDEF_FUZZ_CHECK(offered.count(name) == 1);
  DEVDEF_FUZZ_CHECK(OneOfProblem(word, names, false).empty() == (offered.count(word) == 1));
  return 0;
}
