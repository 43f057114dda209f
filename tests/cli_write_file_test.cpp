// What devdef write does to the file it replaces: the file keeps its mode
// and owner, a read-only file is refused and left as it is, and a signal
// that ends the write leaves no temporary file behind. And what its
// read-back finds in a file of many devices, where it compares device by
// device as it reads.
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <sstream>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "tests/tool_run.h"

extern char** environ;

namespace {

const char kClean[] =
    "DEF_LAYOUT_VERSION = 1 \nHOUSING_LIST DIP8;\nADAPTER_LIST ADP;\nMODUL_LIST BASE;\nEPROM:\n:AMD\nAm27C256\n{\n"
    "KVR5DEF: 1 0 0 0 28 : text\n}\n";

TEST(CliWriteFile, ReplacedFileKeepsItsModeAndOwner) {
  ScratchDir dir;
  const std::string path = dir.Path() + "/x.def";
  for (mode_t mode : {0640, 0604, 0600, 0664, 0660}) {
    std::ofstream(path, std::ios::binary) << kClean;
    ASSERT_EQ(::chmod(path.c_str(), mode), 0);
    EXPECT_EQ(RunTool("write --force -q " + path + " -o " + path).status, 0) << std::oct << mode;
    EXPECT_EQ(ModeOf(path), mode) << std::oct << mode;
    EXPECT_NE(ReadFile(path).find("\r\n"), std::string::npos);  // rewritten
  }
  // Root gives the file back to its owner; others keep what they may.
  struct stat before;
  ASSERT_EQ(::stat(path.c_str(), &before), 0);
  if (::geteuid() == 0 && ::chown(path.c_str(), 65534, 65534) == 0) {
    EXPECT_EQ(RunTool("write --force -q " + path + " -o " + path).status, 0);
    struct stat after;
    ASSERT_EQ(::stat(path.c_str(), &after), 0);
    EXPECT_EQ(after.st_uid, 65534u);
    EXPECT_EQ(after.st_gid, 65534u);
  }
  // A new file gets the usual permissions, not a temporary file's.
  const std::string fresh = dir.Path() + "/new.def";
  EXPECT_EQ(RunShell("umask 027 && " + ToolPath() + " write --force -q " + path + " -o " + fresh).status, 0);
  EXPECT_EQ(ModeOf(fresh), 0640u);
  EXPECT_EQ(dir.Listing(), "new.def\nx.def\n");
}

// Refused with one line, before anything is written: a read-only file, a
// link to one, and the same for convert and export.
TEST(CliWriteFile, ReadOnlyFileIsRefusedAndLeftAsItIs) {
  ScratchDir dir;
  const std::string path = dir.Path() + "/x.def";
  std::ofstream(path, std::ios::binary) << kClean;
  ASSERT_EQ(::chmod(path.c_str(), 0444), 0);
  ASSERT_EQ(::symlink(path.c_str(), (dir.Path() + "/link.def").c_str()), 0);
  const std::string v2 = std::string(DEVDEF_EXAMPLES_DIR) + "/programmers_v2.def";
  const struct {
    std::string arguments;
    std::string target;
  } cases[] = {
      {"write " + path + " -o " + path, path},
      {"write --force " + path + " -o " + path, path},
      {"write --force " + path + " -o " + dir.Path() + "/link.def", path},
      {"convert " + v2 + " -o " + path, path},
  };
  for (const auto& c : cases) {
    const ToolRun run = RunTool(c.arguments, "2>&1");
    EXPECT_EQ(run.status, 2) << c.arguments;
    EXPECT_EQ(run.out, "devdef: '" + c.target + "' is read-only; nothing written\n") << c.arguments;
    EXPECT_EQ(ReadFile(path), kClean);
    EXPECT_EQ(ModeOf(path), 0444u);
  }
  const std::string list = dir.Path() + "/k4devicelist.txt";
  std::ofstream(list) << "kept";
  ASSERT_EQ(::chmod(list.c_str(), 0444), 0);
  const ToolRun run = RunTool("export " + std::string(DEVDEF_EXAMPLES_DIR) + "/adapters_v7.def --dir " + dir.Path(),
                              "2>&1");
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.out, "devdef: '" + list + "' is read-only; nothing written\n");
  EXPECT_EQ(ReadFile(list), "kept");
  EXPECT_EQ(dir.Listing(), "k4devicelist.txt\nlink.def\nx.def\n");
}

// Starts the tool with the arguments and TMPDIR; its process id, or -1.
pid_t Start(const std::vector<std::string>& arguments, const std::string& tmpdir) {
  std::vector<std::string> words = {ToolPath()};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(&word[0]);
  argv.push_back(nullptr);
  std::vector<std::string> environment = {"TMPDIR=" + tmpdir};
  for (char** e = environ; *e != nullptr; ++e) {
    if (std::string(*e).compare(0, 7, "TMPDIR=") != 0) environment.push_back(*e);
  }
  std::vector<char*> envp;
  for (std::string& entry : environment) envp.push_back(&entry[0]);
  envp.push_back(nullptr);
  pid_t pid = -1;
  return ::posix_spawn(&pid, argv[0], nullptr, nullptr, argv.data(), envp.data()) == 0 ? pid : -1;
}

// A write into a pipe that no one reads waits, with its checked bytes in a
// temporary file, until a signal ends it: the signal ends it as it would
// any program, and the temporary file goes with it.
TEST(CliWriteFile, SignalRemovesTheTemporaryFile) {
  for (int signal : {SIGINT, SIGTERM, SIGHUP}) {
    SCOPED_TRACE(signal);
    ScratchDir dir;
    const std::string input = dir.Path() + "/in.def";
    std::ofstream(input, std::ios::binary) << kClean;
    const std::string pipe = dir.Path() + "/out.pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    ASSERT_EQ(::mkdir((dir.Path() + "/tmp").c_str(), 0700), 0);
    const pid_t pid = Start({"write", "--force", "-q", input, "-o", pipe}, dir.Path() + "/tmp");
    ASSERT_GT(pid, 0);
    bool made = false;
    for (int i = 0; i < 1000 && !made; ++i) {
      made = dir.Listing("/tmp").find(".devdef-tmp-") != std::string::npos;
      if (!made) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_TRUE(made);
    ASSERT_EQ(::kill(pid, signal), 0);
    int status = 0;
    ASSERT_EQ(::waitpid(pid, &status, 0), pid);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), signal);
    EXPECT_EQ(dir.Listing("/tmp"), "");
  }
}

// 3,000 devices of one definition each in layout 1, device i on line
// 7 + 4i; device 1000 named as middle (with a blank or a ":" that the
// written file reads otherwise, so that the read-back no longer has the
// devices in the input's order), devices 2000 and 2001 both named TWIN
// and 2001 and 2990 marked, which the layout 1 writer does not keep.
std::string ManyDevices(const std::string& middle) {
  std::ostringstream text;
  text << "DEF_LAYOUT_VERSION = 1\nHOUSING_LIST DIP8;\nADAPTER_LIST ADP;\nMODUL_LIST BASE;\nEPROM:\n:AMD\n";
  for (int i = 0; i < 3000; ++i) {
    std::string name = i == 1000 ? middle : i == 2000 || i == 2001 ? "TWIN" : "D" + std::to_string(i);
    if (i == 2001 || i == 2990) name = "\xB0" + name;
    text << name << "\n{\nKVR5DEF: " << i + 1 << " 0 0 0 28 : t" << i << "\n}\n";
  }
  return text.str();
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

// Losses behind the place where the read-back leaves the input's order are
// found all the same, each at its place: the second of two devices of one
// name stands for the second, and the blanks are said at the input's first
// definition.
TEST(CliWriteFile, LossesOfAManyDeviceFileAreFoundAtTheirPlaces) {
  ScratchDir dir;
  std::ofstream(dir.Path() + "/big.def", std::ios::binary) << ManyDevices("X_");
  const ToolRun lost = RunTool("write big.def -o out.def", "2>&1", dir.Path());
  EXPECT_EQ(lost.status, 1);
  const std::vector<std::string> expected = {
      "big.def:9:1: error: the texts of 2999 definitions, from definition 1 of 'D0' on, read back with one more "
      "blank in front: the reader keeps the blank behind the \":\" as the text's first byte, and the writer puts "
      "another in front of it, so each rewrite adds one [write-loss]",
      "big.def:4007:1: error: device 'X ' does not read back (device name 'X ' holds a blank, which the writer "
      "keeps: the name will not read back whole) [write-loss]",
      "big.def:8011:1: error: the mark of the device 'TWIN' does not read back [write-loss]",
      "big.def:11967:1: error: the mark of the device 'D2990' does not read back [write-loss]",
      "devdef: nothing written: the write would lose what the file holds in 4 places (--force writes it all the "
      "same)"};
  EXPECT_EQ(Lines(lost.out), expected);
  EXPECT_EQ(dir.Listing(), "big.def\n");

  // A kind line in the middle: the devices behind it go to the manufacturer
  // before it, under another kind than the last, as the reader read them.
  std::ofstream(dir.Path() + "/big.def", std::ios::binary) << ManyDevices("TWIN:");
  const std::vector<std::string> lines = Lines(RunTool("write big.def -o out.def", "2>&1", dir.Path()).out);
  ASSERT_EQ(lines.size(), 2005u);
  EXPECT_EQ(lines[2], "big.def:4008:1: error: written as the reader read it: block line read as a device named '{' "
                      "[write-loss]");
  EXPECT_EQ(lines[1003], "big.def:8011:1: error: the mark of the device 'TWIN' does not read back [write-loss]");
  EXPECT_EQ(lines[1993], "big.def:11967:1: error: the mark of the device 'D2990' does not read back [write-loss]");
  EXPECT_EQ(lines.back(),
            "devdef: nothing written: the write would lose what the file holds in 2003 places (--force writes it "
            "all the same)");
}

}  // namespace
