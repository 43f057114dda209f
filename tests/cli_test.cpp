// End-to-end tests of the devdef tool on the sample files.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

namespace {

struct ToolRun {
  int status;
  std::string out;
};

std::string Example(const char* name) { return std::string(DEVDEF_EXAMPLES_DIR) + "/" + name; }

// Runs the tool with the arguments (a shell word list); standard error goes
// to a file so that it stays off standard output.
ToolRun Tool(const std::string& arguments) {
  const std::string command = std::string(DEVDEF_TOOL_PATH) + " " + arguments + " 2>/dev/null";
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

class ScratchDir {
 public:
  ScratchDir() {
    char name[] = "/tmp/devdef-cli-XXXXXX";
    m_path = ::mkdtemp(name) != nullptr ? name : "";
  }
  ~ScratchDir() { std::system(("rm -rf '" + m_path + "'").c_str()); }
  const std::string& Path() const { return m_path; }

 private:
  std::string m_path;
};

TEST(Cli, TreeOfEachLayout) {
  for (const char* file : {"instruments.def", "programmers_v2.def", "adapters_v7.def"}) {
    SCOPED_TRACE(file);
    const ToolRun text = Tool("tree " + Example(file));
    EXPECT_EQ(text.status, 0);
    EXPECT_NE(text.out.find("  "), std::string::npos);
    const ToolRun json = Tool("tree --json " + Example(file));
    ASSERT_EQ(json.status, 0);
    const nlohmann::json tree = nlohmann::json::parse(json.out);
    EXPECT_FALSE(tree["kinds"].empty());
    EXPECT_FALSE(tree["packages"].empty());
  }
  const nlohmann::json v7 = nlohmann::json::parse(Tool("tree --json " + Example("adapters_v7.def")).out);
  EXPECT_EQ(v7["layout"], 7);
  EXPECT_EQ(v7["adapters"][0], "ADP_U_PLCC32/ZIF");
  const nlohmann::json& device = v7["kinds"][0]["manufacturers"][0]["devices"][0];
  EXPECT_EQ(device["name"], "AT89C51");
  EXPECT_EQ(device["housings"].size(), 3u);
  EXPECT_EQ(device["definitions"][1]["values"][4], 0x2F);
}

TEST(Cli, ListAndPatterns) {
  const ToolRun all = Tool("list " + Example("adapters_v7.def"));
  EXPECT_EQ(all.status, 0);
  EXPECT_NE(all.out.find("Microcontroller / Atmel / AT89C51 (1 visible)\n"), std::string::npos);
  const ToolRun some = Tool("list --json " + Example("adapters_v7.def") + " 'at89[cs]*'");
  ASSERT_EQ(some.status, 0);
  const nlohmann::json list = nlohmann::json::parse(some.out);
  ASSERT_EQ(list["devices"].size(), 2u);
  EXPECT_EQ(list["devices"][1]["name"], "AT89S8252");
  EXPECT_EQ(Tool("list " + Example("adapters_v7.def") + " 'intel'").status, 1);
  const ToolRun fields = Tool("list --all-fields " + Example("adapters_v7.def") + " 'intel'");
  EXPECT_EQ(fields.status, 0);
  EXPECT_NE(fields.out.find("28F320J3"), std::string::npos);
}

TEST(Cli, ShowAndFind) {
  const ToolRun show = Tool("show " + Example("adapters_v7.def") + " P89C51RD2");
  ASSERT_EQ(show.status, 0);
  EXPECT_NE(show.out.find("id 3100  KVR3  (hidden)"), std::string::npos);
  EXPECT_EQ(Tool("show " + Example("adapters_v7.def") + " NoSuchDevice").status, 1);
  const nlohmann::json byId = nlohmann::json::parse(Tool("show --json --id 3011 " + Example("adapters_v7.def")).out);
  EXPECT_EQ(byId["devices"][0]["name"], "AT89S8252");
  EXPECT_EQ(byId["devices"][0]["marks"][0], "0xB0");

  const ToolRun found = Tool("find --json --id 3201 " + Example("adapters_v7.def"));
  ASSERT_EQ(found.status, 0);
  const nlohmann::json find = nlohmann::json::parse(found.out);
  EXPECT_EQ(find["device"], "28F320J3");
  EXPECT_EQ(find["definition"]["package_name"], "TSOP48");
  EXPECT_EQ(find["definition"]["visible_index"], 0);  // 3200 before it is hidden
  // A hidden definition is not found; neither is an unknown id.
  EXPECT_EQ(Tool("find --id 3100 " + Example("adapters_v7.def")).status, 1);
  EXPECT_EQ(Tool("find --id 3100 --generation 3 " + Example("adapters_v7.def")).status, 0);
  EXPECT_EQ(Tool("find --id -1 " + Example("adapters_v7.def")).status, 1);
}

TEST(Cli, CheckReportsTheDamagedSample) {
  const ToolRun clean = Tool("check " + Example("instruments.def"));
  const ToolRun damaged = Tool("check " + Example("damaged.def"));
  EXPECT_EQ(damaged.status, 1);
  EXPECT_NE(damaged.out.find("damaged.def:3: lost-entry:"), std::string::npos) << damaged.out;
  EXPECT_NE(damaged.out.find("damaged.def:14: duplicate-id:"), std::string::npos);
  EXPECT_NE(damaged.out.find("damaged.def:18: refused:"), std::string::npos);
  const nlohmann::json json = nlohmann::json::parse(Tool("check --json " + Example("damaged.def")).out);
  EXPECT_EQ(json["layout"], 1);
  bool shortForm = false;
  for (const nlohmann::json& finding : json["findings"]) {
    if (finding["kind"] == "short-form") shortForm = finding["line"] == 16;
  }
  EXPECT_TRUE(shortForm);
  EXPECT_NE(clean.status, 2);
}

TEST(Cli, FileErrorsAndUsage) {
  EXPECT_EQ(Tool("tree /nonexistent/file.def").status, 2);
  EXPECT_EQ(Tool("tree --layout 7 " + Example("instruments.def")).status, 2);  // wrong layout
  EXPECT_EQ(Tool("tree").status, 2);
  EXPECT_EQ(Tool("frobnicate x").status, 2);
  EXPECT_EQ(Tool("--help").status, 0);
  EXPECT_EQ(Tool("check --help").status, 0);
  EXPECT_NE(Tool("--version").out.find("devdef "), std::string::npos);
}

TEST(Cli, WriteConvertAndExport) {
  ScratchDir dir;
  ASSERT_FALSE(dir.Path().empty());
  const std::string out = dir.Path() + "/out.def";
  ASSERT_EQ(Tool("write " + Example("instruments.def") + " -o " + out).status, 0);
  const std::string written = ReadFile(out);
  EXPECT_EQ(written.compare(0, 25, "DEF_LAYOUT_VERSION = 1 \r\n"), 0);
  ASSERT_EQ(Tool("write " + out + " -o " + out).status, 0);  // rewriting in place

  const std::string converted = dir.Path() + "/v3.def";
  ASSERT_EQ(Tool("convert " + Example("programmers_v2.def") + " -o " + converted).status, 0);
  EXPECT_NE(ReadFile(converted).find("KVR3DEF: 2001 1 0 0 2 5 28  100 12 FF 0 0 1F 3 0 : 27C256 one-time programmable\r\n"),
            std::string::npos);
  // A failed conversion leaves nothing behind, not even over an existing file.
  EXPECT_EQ(Tool("convert " + Example("adapters_v7.def") + " -o " + out).status, 2);
  EXPECT_EQ(ReadFile(out).substr(0, 25), "DEF_LAYOUT_VERSION = 1 \r\n");
  EXPECT_EQ(Tool("convert " + Example("instruments.def") + " -o " + converted).status, 2);

  ASSERT_EQ(Tool("export " + Example("adapters_v7.def") + " --dir " + dir.Path()).status, 0);
  EXPECT_EQ(ReadFile(dir.Path() + "/k4devicelist.txt"),
            "KOVIR32 K4 Device List \r\n1:\tAT89C51\r\n\t\tADP_U_PLCC32/ZIF\r\n2:\tAT89S8252\r\n3:\tP89C51RD2\r\n"
            "4:\t28F320J3\r\n\t\tADP_U_TSOP48/CLAMP\r\n");

  // A read-only directory: a clear failure and nothing left behind.
  const std::string locked = dir.Path() + "/locked";
  ASSERT_EQ(::mkdir(locked.c_str(), 0555), 0);
  // Root writes into any directory whatever its mode; /proc refuses new
  // files to everyone.
  const std::string readOnly = ::access(locked.c_str(), W_OK) != 0 ? locked : "/proc";
  EXPECT_EQ(Tool("write " + Example("instruments.def") + " -o " + readOnly + "/x.def").status, 2);
  EXPECT_EQ(Tool("export " + Example("adapters_v7.def") + " --dir " + readOnly).status, 2);
  EXPECT_NE(::access((readOnly + "/x.def").c_str(), F_OK), 0);
  EXPECT_NE(::access((readOnly + "/k4devicelist.txt").c_str(), F_OK), 0);
  // A full device: the write fails and the target is left as it was.
  struct stat full;
  if (::stat("/dev/full", &full) == 0 && S_ISCHR(full.st_mode)) {
    EXPECT_EQ(Tool("write " + Example("instruments.def") + " -o /dev/full").status, 2);
    ASSERT_EQ(::stat("/dev/full", &full), 0);
    EXPECT_TRUE(S_ISCHR(full.st_mode));  // written into, never replaced
  }
  std::string leftovers;
  std::FILE* ls = ::popen(("ls -A '" + dir.Path() + "'").c_str(), "r");
  char name[256];
  while (ls != nullptr && std::fgets(name, sizeof name, ls) != nullptr) leftovers += name;
  if (ls != nullptr) ::pclose(ls);
  EXPECT_EQ(leftovers, "k4devicelist.txt\nlocked\nout.def\nv3.def\n");
}

}  // namespace
