// Where a long command stands, on one line of standard error rewritten in
// place, as git shows the progress of a clone: only when standard error is
// a terminal, and only once the command has run for a second
// (DEVDEF_PROGRESS_DELAY seconds, as GIT_PROGRESS_DELAY). A thread of its
// own draws the line ten times a second, so the work only stores where it
// stands: one relaxed atomic store now and then.
#ifndef DEVDEF_TOOLS_TEXT_PROGRESS_LINE_H_
#define DEVDEF_TOOLS_TEXT_PROGRESS_LINE_H_

#include <atomic>
#include <cstdint>
#include <string>

namespace progress_line {

// Turns the line on for this process when wanted and standard error is a
// terminal; the delay counts from this call.
void Enable(bool wanted);
// A phase of the command: what it does ("reading big.def") and how far it
// goes; the line shows the share of total that Position() holds (no share
// when total is 0).
void Start(const std::string& what, std::uint64_t total);
// Where the current phase stands, for the work to store into.
std::atomic<std::uint64_t>& Position();
// Ends the phases: the line is cleared and the drawing thread ends. Called
// before the command prints anything, so the line never mixes with output;
// harmless when nothing was started.
void Stop();

}  // namespace progress_line

#endif  // DEVDEF_TOOLS_TEXT_PROGRESS_LINE_H_
