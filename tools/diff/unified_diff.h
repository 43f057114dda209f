// Two texts compared line by line, as diff -u prints them. What git's diff
// driver shows of a file it cannot compare as a catalogue.
#ifndef DEVDEF_TOOLS_DIFF_UNIFIED_DIFF_H_
#define DEVDEF_TOOLS_DIFF_UNIFIED_DIFF_H_

#include <string>
#include <string_view>
#include <vector>

// The lines of text, each with its LF (and any CR in front of it); a last
// line without an LF is the rest of the text.
std::vector<std::string_view> LinesOf(std::string_view text);

// The unified diff of two texts under the names given for them: a "---"
// and a "+++" line, then hunks of changed lines with up to three equal
// lines around them. Lines end at LF and keep any CR; a last line without
// an LF is followed by "\ No newline at end of file". Empty when the texts
// are equal; "Binary files OLD and NEW differ" when either holds a NUL byte.
std::string UnifiedDiff(std::string_view oldText, std::string_view newText, const std::string& oldName,
                        const std::string& newName);

#endif  // DEVDEF_TOOLS_DIFF_UNIFIED_DIFF_H_
