// Runs the built devdef tool for end-to-end tests.
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

#endif  // DEVDEF_TESTS_TOOL_RUN_H_
