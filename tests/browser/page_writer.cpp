// Writes the published page of a definition file, as devdef publish does,
// for the browser test: page_writer FILE PAGE [--visible-only]. The run's
// encoding is the one the file's bytes suggest, as in the commands.
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "tools/analysis/analysis.h"
#include "tools/output/output_buffer.h"
#include "tools/output/published_page.h"
#include "tools/text/text_encoding.h"

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: page_writer FILE PAGE [--visible-only]\n");
    return 2;
  }
  const std::unique_ptr<Analysis> analysis = Analysis::ReadFile(argv[1], AnalysisOptions{});
  if (!analysis->Usable()) {
    std::fprintf(stderr, "page_writer: %s\n", analysis->Error().c_str());
    return 1;
  }
  SetShownEncoding(DetectTextEncoding(analysis->Bytes()));
  PublishOptions options;
  options.file = argv[1];
  options.date = "2026-01-01";
  options.visibleOnly = argc > 3 && std::strcmp(argv[3], "--visible-only") == 0;
  std::FILE* page = std::fopen(argv[2], "wb");
  if (page == nullptr) {
    std::perror(argv[2]);
    return 1;
  }
  {
    OutputBuffer out(page);
    WritePublishedPage(out, *analysis, options);
  }
  return std::fclose(page) == 0 ? 0 : 1;
}
