// The device list of a catalogue as one self-contained web page: the page's
// script and style (tools/output/page/), embedded at build time, and the
// catalogue's devices as data the script renders, searches and sorts.
#ifndef DEVDEF_TOOLS_OUTPUT_PUBLISHED_PAGE_H_
#define DEVDEF_TOOLS_OUTPUT_PUBLISHED_PAGE_H_

#include <string>

#include "tools/analysis/analysis.h"
#include "tools/output/output_buffer.h"

// What devdef publish was asked for.
struct PublishOptions {
  std::string title;         // --title; empty: a title made of the file's name
  std::string file;          // the file as the command line named it
  std::string date;          // the day of publishing, YYYY-MM-DD
  int generation = 5;        // the generation in force
  bool visibleOnly = false;  // --visible-only: hidden definitions left out
};

// Writes the page: one row per device, names decoded with the run's
// encoding.
void WritePublishedPage(OutputBuffer& out, const Analysis& analysis, const PublishOptions& options);

#endif  // DEVDEF_TOOLS_OUTPUT_PUBLISHED_PAGE_H_
