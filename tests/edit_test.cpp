// The edit engine: every operation on the bundled examples and on odd files
// changes only the lines it names and reads back as exactly the asked
// change; edits that would change how another line reads are refused and
// change nothing; names that name nothing or several things give
// candidates; replacements composed over a batch equal the edits made one
// after another.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tools/edit/byte_splice.h"
#include "tools/edit/edit_engine.h"

namespace {

std::string Example(const std::string& name) {
  std::ifstream in(std::string(DEVDEF_SOURCE_DIR) + "/examples/" + name, std::ios::binary);
  std::ostringstream all;
  all << in.rdbuf();
  return all.str();
}

std::vector<std::string> Words(const std::string& line) {
  std::vector<std::string> words;
  std::istringstream in(line);
  for (std::string word; in >> word;) words.push_back(word);
  for (std::string& word : words) std::replace(word.begin(), word.end(), '~', ' ');  // "~" stands for a blank
  return words;
}

EditResult Edit(const std::string& bytes, const std::vector<std::string>& lines) {
  std::unique_ptr<Analysis> analysis = Analysis::ReadText("test.def", bytes, AnalysisOptions());
  EXPECT_TRUE(analysis->Usable());
  std::vector<EditOperation> ops;
  for (const std::string& line : lines) {
    EditOperation op;
    std::string error;
    EXPECT_TRUE(ParseEditOperation(Words(line), &op, &error)) << line << ": " << error;
    ops.push_back(op);
  }
  return ApplyEdits(*analysis, ops);
}

// The 1-based lines of the old file that the replacements touch.
std::set<long> TouchedLines(const std::string& bytes, const std::vector<ByteReplacement>& replacements) {
  std::set<long> lines;
  for (const ByteReplacement& r : replacements) {
    long line = 1;
    for (std::uint32_t i = 0; i < r.span.begin; ++i) {
      if (bytes[i] == '\n' || (bytes[i] == '\r' && (i + 1 >= bytes.size() || bytes[i + 1] != '\n'))) ++line;
    }
    lines.insert(line);
  }
  return lines;
}

// What devdef diff says, one word group a change; the list entries that
// only got another number (behind an entry inserted or removed) left out.
std::vector<std::string> Summary(const std::vector<DiffChange>& changes) {
  std::vector<std::string> out;
  for (const DiffChange& c : changes) {
    if (c.what == DiffChange::What::kListEntry && c.change == DiffChange::Change::kMoved) continue;
    std::string s =
        std::string(ChangeName(c.change)) + " " + WhatName(c.what) + " " + (c.hasId ? std::to_string(c.id) : c.name);
    if (c.change == DiffChange::Change::kChanged) {
      for (const auto& field : c.fields) s += " " + field.first;
    }
    out.push_back(s);
  }
  return out;
}

struct AppliedCase {
  const char* file;
  const char* operation;
  std::vector<long> lines;  // the lines of the old file the edit may touch
  std::vector<std::string> changes;
};

TEST(EditEngine, EachOperationTouchesOnlyWhatItNamesAndReadsBackAsAsked) {
  const AppliedCase cases[] = {
      {"instruments.def", "set 2021 module=BASE", {58}, {"changed definition 2021 module"}},
      {"instruments.def", "set 2021 text=reworked~text adapters=1,4", {58}, {"changed definition 2021 adapters text"}},
      {"instruments.def", "set AT89C51#1 generation=5", {16}, {"changed definition 1001 generation"}},
      {"instruments.def", "set 2021 id=2022", {58}, {"added definition 2022", "removed definition 2021"}},
      {"instruments.def", "rename AT89C51 AT89C52", {14}, {"renamed device AT89C52"}},
      {"instruments.def",
       "rename Empty~Slot Spare~Slot",
       {61},
       {"added device Spare Slot", "removed device Empty Slot"}},
      {"instruments.def",
       "rename-manufacturer EPROM ST STMicro",
       {53},
       {"added manufacturer STMicro", "removed manufacturer ST", "moved device M27C512", "moved device Empty Slot"}},
      {"instruments.def", "remove-definition 2021", {58}, {"removed definition 2021"}},
      {"instruments.def", "add-device EPROM ST M27C801", {65}, {"added device M27C801"}},
      {"instruments.def", "add-definition Empty_Slot module=HV", {63}, {"added definition 3103"}},
      {"instruments.def", "move Am27C010 EPROM ST", {46, 65}, {"moved device Am27C010"}},
      {"instruments.def",
       "remove Am27C010",
       {46},
       {"removed device Am27C010", "removed definition 2010", "removed definition 2011"}},
      {"instruments.def",
       "renumber-ids M27C512 --from 7000",
       {57, 58},
       {"added definition 7000", "added definition 7001", "removed definition 2020", "removed definition 2021"}},
      {"instruments.def",
       "rename-entry module ISP ICSP",
       {8},
       {"added list-entry ICSP", "removed list-entry ISP", "changed definition 1010 module",
        "changed definition 1011 module"}},
      {"adapters_v7.def",
       "set 3002 packages=DIP8,QFP64 value~10=11",
       {23},
       {"changed definition 3002 packages value 10"}},
      {"adapters_v7.def", "rename AT89S8252 AT89S8253", {27}, {"renamed device AT89S8253"}},
      {"adapters_v7.def", "add-definition AT89S8252 id=3012", {31}, {"added definition 3012"}},
      // A housing at the front: every definition and housing line, and the
      // list, get new numbers; by meaning one entry is added.
      {"adapters_v7.def",
       "add-entry housing SOIC8 --at 0",
       {4, 21, 22, 23, 29, 30, 37, 38, 47, 48, 49},
       {"added list-entry SOIC8"}},
      {"adapters_v7.def", "remove-entry adapter ADP_U_QFP64/CLAMP", {10}, {"removed list-entry ADP_U_QFP64/CLAMP"}},
      {"adapters_v7.def",
       "remove-entry adapter ADP_U_PLCC32/ZIF --replace-with ADP_U_TSOP48/CLAMP",
       {8, 22, 23, 29, 30, 37, 38, 48, 49},
       {"removed list-entry ADP_U_PLCC32/ZIF", "changed definition 3001 adapters", "changed definition 3002 adapters",
        "changed definition 3100 adapters", "changed definition 3101 adapters"}},
      {"programmers_v2.def", "set 2001 value~0=7 value~1=8", {}, {"changed definition 2001 value 0 value 1"}},
  };
  for (const AppliedCase& c : cases) {
    SCOPED_TRACE(std::string(c.file) + ": " + c.operation);
    const std::string old = Example(c.file);
    const EditResult result = Edit(old, {c.operation});
    ASSERT_EQ(result.status, EditResult::Status::kApplied) << result.reason;
    EXPECT_EQ(ApplyReplacements(old, result.replacements), result.bytes);
    if (!c.lines.empty()) {
      const std::set<long> touched = TouchedLines(old, result.replacements);
      for (const long line : touched) EXPECT_TRUE(std::count(c.lines.begin(), c.lines.end(), line)) << "line " << line;
    }
    std::vector<std::string> got = Summary(result.changes);
    std::vector<std::string> want = c.changes;
    std::sort(got.begin(), got.end());
    std::sort(want.begin(), want.end());
    EXPECT_EQ(got, want);
  }
}

// A layout 7 file as people keep them: LF ends, comments between the lines,
// the housing list over several lines, marks, and a damaged block beside
// the one edited.
const char kOdd[] =
    "DEF_LAYOUT_VERSION = 7\n"
    "HOUSING_LIST {\n"
    "  DIP8,\n"
    "  DIP28, ; a comment inside the list\n"
    "  PLCC32,\n"
    "}\n"
    "ADAPTER_LIST { A0, A1, }\n"
    "MODUL_LIST M0, M1;\n"
    "\n"
    "Kind:\n"
    "; a comment between the lines\n"
    ":Maker\n"
    "\xB0Marked\n"
    "{\n"
    "DEVICE_HOUSING_LIST: { 2, 1, }\n"
    "\t\xDFKVR5DEF: 10 2 1 1 0 0 0 0 a 0 0 0 f 0 0 : marked line ; with a comment\n"
    "}\n"
    "Broken\n"
    "{\n"
    "KVR5DEF: 20 1 1 1 0 0 0 0 0 0 0 0 0 0 0 : fine\n"
    "KVR5DEF: 21 x 1 1 : refused\n"
    "}\n";

TEST(EditEngine, OddFilesKeepTheirLineEndsMarksAndComments) {
  for (const char* end : {"\n", "\r\n", "\r"}) {
    std::string file = kOdd;
    std::string converted;
    for (const char c : file) converted += c == '\n' ? std::string(end) : std::string(1, c);
    SCOPED_TRACE(end[0] == '\r' ? (end[1] ? "CR LF" : "CR") : "LF");
    struct Case {
      const char* op;
      const char* written;  // bytes the edited file must hold
    };
    const Case cases[] = {
        {"rename Marked Renamed", "\xB0Renamed"},
        {"set 10 value~4=255 module=M0", "\xDFKVR5DEF: 10 2 0 1 0 0 0 0 ff 0 0 0 f 0 0 : marked line ; with a comment"},
        {"add-definition Marked text=new", "\tKVR5DEF: 21 0 0 0 0 0 0 0 0 0 0 0 0 0 0 : new"},
        {"add-entry housing QFP64 --at 1", "DEVICE_HOUSING_LIST: { 3, 2, }"},
        {"add-entry housing QFP64 --at 1", "  DIP8,\n  QFP64,\n  DIP28,"},
        {"set 20 text=still~fine", "KVR5DEF: 20 1 1 1 0 0 0 0 0 0 0 0 0 0 0 : still fine"},
    };
    for (const Case& c : cases) {
      SCOPED_TRACE(c.op);
      const EditResult result = Edit(converted, {c.op});
      ASSERT_EQ(result.status, EditResult::Status::kApplied) << result.reason;
      std::string written;
      for (const char* p = c.written; *p != '\0'; ++p) written += *p == '\n' ? std::string(end) : std::string(1, *p);
      EXPECT_NE(result.bytes.find(written), std::string::npos) << result.bytes;
      // No line end of another style came in.
      const size_t lf = static_cast<size_t>(std::count(result.bytes.begin(), result.bytes.end(), '\n'));
      const size_t cr = static_cast<size_t>(std::count(result.bytes.begin(), result.bytes.end(), '\r'));
      EXPECT_EQ(cr, std::string(end) == "\n" ? 0u : std::string(end) == "\r" ? cr : lf);
      EXPECT_EQ(lf, std::string(end) == "\r" ? 0u : lf);
    }
    // Behind the damaged block of the last device, whose rest the reader
    // reads as top-level lines, no device can go.
    for (const char* op : {"add-device Kind Maker New", "add-device Kind Other New"}) {
      const EditResult refused = Edit(converted, {op});
      EXPECT_EQ(refused.status, EditResult::Status::kRefused) << op;
      EXPECT_NE(refused.reason.find("the edited file would"), std::string::npos) << refused.reason;
    }
  }
}

TEST(EditEngine, ANewDefinitionOfAMarkedDeviceHasTheMarksItsLayoutGivesIt) {
  for (const char* version : {"1", "7"}) {
    const std::string line7 = " 0 0 0 0 0 0 0 0 0 0 0";
    const std::string file = std::string("DEF_LAYOUT_VERSION = ") + version +
                             "\nHOUSING_LIST { P0, }\nADAPTER_LIST { A0, }\nMODUL_LIST M0;\n"
                             "Kind:\n:Maker\n\xB0Marked\n{\nKVR5DEF: 1 0 0 0" +
                             (version[0] == '7' ? line7 : std::string(" 0")) + " : text\n}\n";
    const std::string layout1 = version[0] == '1' ? std::string("HOUSING_LIST P0;\nADAPTER_LIST A0;\n") : "";
    std::string bytes = file;
    if (!layout1.empty()) {
      bytes.replace(bytes.find("HOUSING_LIST"), bytes.find("MODUL_LIST") - bytes.find("HOUSING_LIST"), layout1);
    }
    const EditResult result = Edit(bytes, {"add-definition Marked id=2"});
    EXPECT_EQ(result.status, EditResult::Status::kApplied) << version << ": " << result.reason;
  }
}

struct RefusedCase {
  const char* file;
  const char* operation;
  const char* reason;  // a part of the reason
};

TEST(EditEngine, EditsThatChangeHowAnotherLineReadsAreRefusedWithTheirReason) {
  const RefusedCase cases[] = {
      // A device name ending in ":" makes the line a kind.
      {"instruments.def", "rename AT89C51 AT89C51:", "would read"},
      // A ";" in a block starts a comment: the text would be cut.
      {"instruments.def", "set 2021 text=a;b", "the text ends at the \";\""},
      {"instruments.def", "set 2021 id=2020", "id 2020"},
      {"instruments.def", "set 2021 package=99", "package 99 has no name"},
      {"instruments.def", "set 2021 value~5=1", "holds no value 5"},
      {"instruments.def", "remove-entry module FAST", "used 8 times"},
      {"instruments.def", "renumber-ids EPROM ST --from 1003", "already the id"},
      {"instruments.def", "add-entry module BAD;NAME", "would read"},
      // A name that opens with ";" makes its line a comment.
      {"instruments.def", "rename AT89C51 ;AT89C51", "would read"},
      {"damaged.def", "remove AT27C256", "does not end at its"},
  };
  for (const RefusedCase& c : cases) {
    SCOPED_TRACE(std::string(c.file) + ": " + c.operation);
    const EditResult result = Edit(Example(c.file), {c.operation});
    EXPECT_EQ(result.status, EditResult::Status::kRefused);
    EXPECT_NE(result.reason.find(c.reason), std::string::npos) << result.reason;
    EXPECT_TRUE(result.bytes.empty());
    EXPECT_TRUE(result.replacements.empty());
  }
}

TEST(EditEngine, NamesThatNameNothingOrSeveralThingsGiveCandidates) {
  const std::string file = Example("instruments.def");
  EditResult result = Edit(file, {"remove AT89*"});
  EXPECT_EQ(result.status, EditResult::Status::kUnknown);
  EXPECT_EQ(result.candidates.size(), 2u);
  result = Edit(file, {"remove AT89S825"});
  EXPECT_EQ(result.status, EditResult::Status::kUnknown);
  ASSERT_FALSE(result.candidates.empty());
  EXPECT_NE(result.candidates[0].find("AT89S8252"), std::string::npos);
  result = Edit(file, {"set 1 module=FAST"});
  EXPECT_EQ(result.status, EditResult::Status::kUnknown);
  result = Edit(file, {"set 2021 module=FASTER"});
  EXPECT_EQ(result.status, EditResult::Status::kUnknown);
  EXPECT_NE(std::find(result.candidates.begin(), result.candidates.end(), "FAST"), result.candidates.end());
  // An id used twice names its definitions as DEVICE#N.
  result = Edit(Example("damaged.def"), {"set 4001 module=BASE"});
  EXPECT_EQ(result.status, EditResult::Status::kUnknown);
  ASSERT_EQ(result.candidates.size(), 2u);
  EXPECT_EQ(result.candidates[1].compare(0, 10, "AT27C256#2"), 0);
  EXPECT_EQ(Edit(Example("damaged.def"), {"set AT27C256#2 module=BASE"}).status, EditResult::Status::kApplied);
}

TEST(EditEngine, ABatchIsAllOrNothingAndItsReplacementsAreThoseOfTheFirstFile) {
  const std::string file = Example("adapters_v7.def");
  const EditResult batch = Edit(file, {"add-entry housing SOIC8 --at 0", "rename AT89C51 AT89C52",
                                       "set 3201 module=JTAG", "remove-entry housing DIP28 --replace-with SOIC8"});
  ASSERT_EQ(batch.status, EditResult::Status::kApplied) << batch.reason;
  EXPECT_EQ(ApplyReplacements(file, batch.replacements), batch.bytes);
  // The same operations one after another give the same bytes.
  std::string stepwise = file;
  for (const char* op : {"add-entry housing SOIC8 --at 0", "rename AT89C51 AT89C52", "set 3201 module=JTAG",
                         "remove-entry housing DIP28 --replace-with SOIC8"}) {
    stepwise = Edit(stepwise, {op}).bytes;
  }
  EXPECT_EQ(stepwise, batch.bytes);
  // One refused operation refuses the batch.
  const EditResult refused = Edit(file, {"rename AT89C51 AT89C52", "set 3201 text=a;b"});
  EXPECT_EQ(refused.status, EditResult::Status::kRefused);
  EXPECT_TRUE(refused.bytes.empty());
}

TEST(ByteSplice, ComposedReplacementsEqualTheReplacementsMadeInTurn) {
  std::mt19937 random(28);
  auto someReplacements = [&](std::uint32_t size) {
    std::vector<ByteReplacement> out;
    std::uint32_t at = 0;
    while (at <= size && out.size() < 6) {
      const std::uint32_t begin = at + random() % 4;
      if (begin > size) break;
      const std::uint32_t end = std::min(size, begin + static_cast<std::uint32_t>(random() % 3));
      out.push_back(
          ByteReplacement{ByteSpan{begin, end}, std::string(random() % 3, static_cast<char>('a' + random() % 26))});
      at = end + 1;
    }
    return out;
  };
  for (int round = 0; round < 2000; ++round) {
    const std::string text = std::string("0123456789").substr(0, random() % 11);
    const std::vector<ByteReplacement> first = someReplacements(static_cast<std::uint32_t>(text.size()));
    const std::string middle = ApplyReplacements(text, first);
    const std::vector<ByteReplacement> second = someReplacements(static_cast<std::uint32_t>(middle.size()));
    const std::string last = ApplyReplacements(middle, second);
    const std::vector<ByteReplacement> both =
        ComposeReplacements(first, static_cast<std::uint32_t>(text.size()), second);
    ASSERT_EQ(ApplyReplacements(text, both), last) << round;
    for (size_t i = 1; i < both.size(); ++i) EXPECT_LT(both[i - 1].span.end, both[i].span.begin + 1);
    // Every byte of the last text traces back into the first.
    const OffsetMap map(both);
    for (std::uint32_t i = 0; i < last.size(); ++i) EXPECT_LE(map.ToOld(i), text.size());
  }
}

}  // namespace
