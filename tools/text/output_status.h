// Whether what the tool printed reached its destination. Output is
// buffered, so a full disk, a closed descriptor or a failing device often
// shows only when a stream is flushed or closed: each stream the tool
// prints to is checked once it is done with, and a failure is said in one
// line on standard error, so that no run that lost its output ends as if it
// had succeeded.
#ifndef DEVDEF_TOOLS_TEXT_OUTPUT_STATUS_H_
#define DEVDEF_TOOLS_TEXT_OUTPUT_STATUS_H_

#include <cstdio>
#include <string>

// Flushes stream and tells whether every write to it got through. When one
// did not, says "devdef: cannot write NAME: REASON" on standard error, once
// for standard output however often it is asked, and gives false.
bool OutputReached(std::FILE* stream, const std::string& name);

// At the end of a run: flushes and closes standard output. False when
// anything printed to it was lost (said once, as above). A descriptor that
// was closed before the run is no failure when nothing was printed to it.
bool CloseStandardOutput();

#endif  // DEVDEF_TOOLS_TEXT_OUTPUT_STATUS_H_
