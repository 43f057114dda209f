// Operations as words, as a script line of devdef edit and the Python
// module's methods give them, on a file: the input's first line is the
// words (split at blanks), the rest is the file. Words that make no
// operation say why; an operation that is made is verified by the engine,
// and its replacements must make its bytes; a name that names several
// things lists them.
#include <memory>
#include <string>
#include <vector>

#include "fuzz/fuzz_support.h"
#include "tools/edit/byte_splice.h"
#include "tools/edit/edit_engine.h"
#include "tools/text/text_encoding.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  DevdefFuzzDir();  // message boxes answered silently
  SetShownEncoding(TextEncoding::kUtf8);
  const std::string input(reinterpret_cast<const char*>(data), size);
  const size_t lineEnd = input.find('\n');
  if (lineEnd == std::string::npos) return 0;
  std::vector<std::string> words;
  size_t start = 0;
  for (size_t i = 0; i <= lineEnd; ++i) {
    if (i < lineEnd && input[i] != ' ' && input[i] != '\t') continue;
    if (i > start) words.push_back(input.substr(start, i - start));
    start = i + 1;
  }
  EditOperation operation;
  std::string error;
  if (!ParseEditOperation(words, &operation, &error)) {
    DEVDEF_FUZZ_CHECK(!error.empty());
    return 0;
  }
  const std::string bytes = input.substr(lineEnd + 1);
  std::unique_ptr<Analysis> analysis = Analysis::ReadText("fuzz.def", bytes, AnalysisOptions());
  if (!analysis->Usable()) return 0;
  const EditResult result = ApplyEdits(*analysis, {operation}, false);
  DEVDEF_FUZZ_CHECK(analysis->Bytes() == bytes);
  switch (result.status) {
    case EditResult::Status::kApplied:
      DEVDEF_FUZZ_CHECK(ApplyReplacements(bytes, result.replacements) == result.bytes);
      break;
    case EditResult::Status::kUnknown:
      DEVDEF_FUZZ_CHECK(!result.reason.empty() && (!result.ambiguous || result.candidates.size() >= 2));
      break;
    case EditResult::Status::kRefused:
      DEVDEF_FUZZ_CHECK(!result.reason.empty() && result.bytes.empty());
      break;
  }
  return 0;
}
