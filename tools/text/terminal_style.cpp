#include "tools/text/terminal_style.h"

#include <unistd.h>

#include <cstdlib>

const char* StyleStart(TerminalStyle style) {
  switch (style) {
    case TerminalStyle::kBold:
      return "\033[1m";
    case TerminalStyle::kRed:
      return "\033[31m";
    case TerminalStyle::kGreen:
      return "\033[32m";
    case TerminalStyle::kYellow:
      break;
  }
  return "\033[33m";
}

bool StylesWanted(std::FILE* stream, bool refused) {
  const char* noColor = std::getenv("NO_COLOR");
  return !refused && (noColor == nullptr || *noColor == '\0') && ::isatty(::fileno(stream)) != 0;
}
