// The values of the tool's options as its command line gives them, and
// what is wrong with one that does not fit, in the words of a usage error
// ("'abc' is not a number"). Words that name nothing (a command or an
// option that does not exist) get the names most like them.
#ifndef DEVDEF_TOOLS_COMMANDS_ARGUMENT_VALUES_H_
#define DEVDEF_TOOLS_COMMANDS_ARGUMENT_VALUES_H_

#include <cstdint>
#include <string>
#include <vector>

// A definition id: decimal digits with an optional sign, from -2147483648
// to 4294967295, a negative number standing for the unsigned one of the
// same 32 bits (so -1 is 4294967295). False with the problem otherwise.
bool ParseDefinitionId(const std::string& text, std::uint32_t* id, std::string* problem);

// A count: decimal digits, 0 or more, up to 2147483647. False with the
// problem otherwise.
bool ParseCount(const std::string& text, long* count, std::string* problem);

// Empty when value is one of allowed (ASCII case ignored when ignoreCase),
// else "'VALUE' is not one of A, B, C".
std::string OneOfProblem(const std::string& value, const std::vector<std::string>& allowed, bool ignoreCase);

// The names of candidates most like word (a mistyped command or option),
// closest first, at most three; none when no name is close.
std::vector<std::string> MostSimilar(const std::string& word, const std::vector<std::string>& candidates);

// Git's lines that follow a word that names nothing: an empty line, "The
// most similar command is" (or "commands are", with what), and each name
// on a line of its own behind a tab. Empty without names.
std::string SimilarLines(const std::vector<std::string>& names, const char* what);

#endif  // DEVDEF_TOOLS_COMMANDS_ARGUMENT_VALUES_H_
