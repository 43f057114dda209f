#include "tests/tool_run.h"

#include <stdlib.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>

std::string ToolPath() { return DEVDEF_TOOL_PATH; }

ToolRun RunTool(const std::string& arguments, const char* redirect, const std::string& directory) {
  std::string command = ToolPath() + " " + arguments + " " + redirect;
  if (!directory.empty()) command = "cd '" + directory + "' && " + command;
  return RunShell(command);
}

ToolRun RunShell(const std::string& command) {
  ToolRun run{-1, std::string()};
  std::FILE* pipe = ::popen(command.c_str(), "r");
  if (pipe == nullptr) return run;
  std::array<char, 4096> buffer;
  size_t got = 0;
  while ((got = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0) run.out.append(buffer.data(), got);
  const int raw = ::pclose(pipe);
  run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  return run;
}

std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

unsigned ModeOf(const std::string& path) {
  struct stat info;
  return ::stat(path.c_str(), &info) == 0 ? info.st_mode & 07777 : 0;
}

ScratchDir::ScratchDir() {
  char name[] = "/tmp/devdef-test-XXXXXX";
  m_path = ::mkdtemp(name) != nullptr ? name : "";
}

ScratchDir::~ScratchDir() {
  if (!m_path.empty()) RunShell("rm -rf '" + m_path + "'");
}

std::string ScratchDir::Listing(const std::string& sub) const { return RunShell("ls -A '" + m_path + sub + "'").out; }
