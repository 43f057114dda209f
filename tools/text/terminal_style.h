// Styles of text on a terminal, as ANSI escape sequences, and whether
// output to a stream takes them.
#ifndef DEVDEF_TOOLS_TEXT_TERMINAL_STYLE_H_
#define DEVDEF_TOOLS_TEXT_TERMINAL_STYLE_H_

#include <cstdio>

enum class TerminalStyle { kBold, kRed, kGreen, kYellow };

// The escape that starts style.
const char* StyleStart(TerminalStyle style);
// The escape that ends every style.
constexpr char kStyleEnd[] = "\033[m";

// True when output to stream should be styled: it is a terminal, the
// command line did not refuse styles (refused) and NO_COLOR is unset or
// empty in the environment.
bool StylesWanted(std::FILE* stream, bool refused);

#endif  // DEVDEF_TOOLS_TEXT_TERMINAL_STYLE_H_
