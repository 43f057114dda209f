// devdef publish: the catalogue for people and programs that do not read
// definition files: a web page with one row per device, or a table with
// one row per definition as CSV or JSON Lines. Everything is written as it
// is made, to standard output or through a temporary file renamed into
// place.
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

#include "tools/commands/argument_values.h"
#include "tools/commands/command.h"
#include "tools/edit/file_output.h"
#include "tools/output/output_buffer.h"
#include "tools/output/published_page.h"
#include "tools/output/published_table.h"

namespace {

const std::vector<std::string> kFormats = {"html", "csv", "jsonl"};

struct PublishArguments : CommonArguments {
  std::string output = "-";
  std::string format;  // empty: from the output's extension
  std::string title;
  bool visibleOnly = false;
};

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// The extension of path's last component, lower case, without its dot;
// empty when it has none.
std::string ExtensionOf(const std::string& path) {
  const size_t slash = path.rfind('/');
  const size_t dot = path.rfind('.');
  if (dot == std::string::npos || (slash != std::string::npos && dot < slash) || dot + 1 == path.size()) {
    return std::string();
  }
  std::string extension = path.substr(dot + 1);
  for (char& c : extension) c = Lower(c);
  return extension;
}

// The format asked for, or the one OUT's extension names; empty, with a
// usage error said, when there is none.
std::string FormatOf(const PublishArguments& args) {
  if (!args.format.empty()) {
    const std::string problem = OneOfProblem(args.format, kFormats, false);
    if (problem.empty()) return args.format;
    std::fprintf(stderr, "devdef: --format: %s; see 'devdef publish --help'\n%s", problem.c_str(),
                 SimilarLines(MostSimilar(args.format, kFormats), "format").c_str());
    return std::string();
  }
  if (args.output == "-") {
    // Standard output has no name to tell the format by, and a page is no
    // better a guess than a table: the format is asked for.
    std::fprintf(stderr,
                 "devdef: publish to standard output needs --format html, csv or jsonl; see 'devdef publish "
                 "--help'\n");
    return std::string();
  }
  const std::string extension = ExtensionOf(args.output);
  if (extension == "html" || extension == "htm") return "html";
  if (extension == "csv") return "csv";
  if (extension == "jsonl" || extension == "ndjson") return "jsonl";
  std::vector<std::string> similar;
  if (!extension.empty()) {
    for (const std::string& name : MostSimilar(extension, {"html", "htm", "csv", "jsonl", "ndjson"})) {
      similar.push_back("." + name);
    }
  }
  std::fprintf(stderr,
               "devdef: cannot tell the format of '%s' by its name: give --format html, csv or jsonl, or a name "
               "ending in .html, .htm, .csv, .jsonl or .ndjson; see 'devdef publish --help'\n%s",
               args.output.c_str(), SimilarLines(similar, "extension").c_str());
  return std::string();
}

// True when out names the file that is read, which publishing would
// replace.
bool SameFile(const std::string& file, const std::string& out) {
  struct stat a;
  struct stat b;
  return file != "-" && ::stat(file.c_str(), &a) == 0 && ::stat(out.c_str(), &b) == 0 && S_ISREG(b.st_mode) &&
         a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

// The day of publishing as YYYY-MM-DD, in UTC: SOURCE_DATE_EPOCH's, where
// it is set, so that a page made twice of the same file is the same.
std::string Today() {
  std::time_t now = std::time(nullptr);
  const char* epoch = std::getenv("SOURCE_DATE_EPOCH");
  if (epoch != nullptr && *epoch != '\0') {
    char* end = nullptr;
    const long long seconds = std::strtoll(epoch, &end, 10);
    if (*end == '\0' && seconds >= 0) now = static_cast<std::time_t>(seconds);
  }
  std::tm day{};
  char text[16] = "";
  if (::gmtime_r(&now, &day) != nullptr) std::strftime(text, sizeof text, "%Y-%m-%d", &day);
  return text;
}

int RunPublish(const PublishArguments& args) {
  const std::string format = FormatOf(args);
  if (format.empty()) return kExitFileError;
  if (args.output != "-" && SameFile(args.file, args.output)) {
    std::fprintf(stderr, "devdef: '%s' is the file being published; write the %s elsewhere\n", args.output.c_str(),
                 format == "html" ? "page" : "table");
    return kExitFileError;
  }
  std::unique_ptr<Analysis> analysis = ReadForCommand(args);
  if (analysis == nullptr) return kExitFileError;
  PublishOptions options;
  options.title = args.title;
  options.file = args.file;
  options.date = Today();
  options.generation = args.options.generation;
  options.visibleOnly = args.visibleOnly;
  const auto write = [&](OutputBuffer& out) {
    if (format == "csv") {
      WritePublishedCsv(out, *analysis, options);
    } else if (format == "jsonl") {
      WritePublishedJsonLines(out, *analysis, options);
    } else {
      WritePublishedPage(out, *analysis, options);
    }
  };
  if (args.output == "-") {
    OutputBuffer out(stdout);
    write(out);
  } else if (WriteFileStream(
                 [&](std::FILE* file) {
                   OutputBuffer out(file);
                   write(out);
                 },
                 args.output) != WriteOutcome::kWritten) {
    return kExitFileError;
  }
  SayReadErrors(args, *analysis);
  return kExitSuccess;
}

}  // namespace

Command AddPublishCommand(CLI::App& app) {
  auto args = std::make_shared<PublishArguments>();
  CLI::App* command =
      app.add_subcommand("publish",
                         "write the catalogue as a web page with one row per device (html), or as a table with one row "
                         "per definition (csv, jsonl); hidden definitions too, marked, unless --visible-only");
  AddCommonOptions(command, *args, false);
  command->add_option("-o,--output", args->output,
                      "file to write, its format told by its name (.html, .htm, .csv, .jsonl, .ndjson); - (the "
                      "default) writes standard output");
  command
      ->add_option("--format", args->format,
                   "html, csv or jsonl (default: by OUT's name; needed for standard output, where nothing tells "
                   "which is wanted)")
      ->type_name("{html,csv,jsonl}");
  command->add_option("--title", args->title, "the page's title (default: made of the file's name)");
  command->add_flag("--visible-only", args->visibleOnly,
                    "leave out the definitions that are not of the generation in force");
  return Command{command, [args] { return RunPublish(*args); }};
}
