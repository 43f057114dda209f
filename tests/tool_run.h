// Runs the built devdef tool for end-to-end tests, with the files they
// need.
#ifndef DEVDEF_TESTS_TOOL_RUN_H_
#define DEVDEF_TESTS_TOOL_RUN_H_

#include <string>

struct ToolRun {
  int status;       // the exit status, -1 when the tool did not end normally
  std::string out;  // what redirect left on standard output
};

// Runs the tool with the arguments (a shell word list), in directory when
// it is not empty; by default standard error is dropped.
ToolRun RunTool(const std::string& arguments, const char* redirect = "2>/dev/null", const std::string& directory = "");

// Runs a shell command and captures its standard output.
ToolRun RunShell(const std::string& command);

// The path of the built tool.
std::string ToolPath();

// The bytes of the file at path; empty when it cannot be read.
std::string ReadFile(const std::string& path);

// The permission bits of the file at path; 0 when it does not exist.
unsigned ModeOf(const std::string& path);

// A new directory under /tmp for a test's files, removed with all in it
// when the object goes.
class ScratchDir {
 public:
  ScratchDir();
  ~ScratchDir();
  ScratchDir(const ScratchDir&) = delete;
  ScratchDir& operator=(const ScratchDir&) = delete;
  const std::string& Path() const { return m_path; }
  // "ls -A" of the directory, or of sub (a path from it, starting with "/").
  std::string Listing(const std::string& sub = "") const;

 private:
  std::string m_path;
};

#endif  // DEVDEF_TESTS_TOOL_RUN_H_
