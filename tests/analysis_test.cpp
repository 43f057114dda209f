// The position-aware read: exact places for every line-end style, and the
// findings of odd files, each at its line and column with its severity.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "tools/analysis/analysis.h"

namespace {

// The text, written to a scratch file, read through the analysis.
std::unique_ptr<Analysis> Analyse(const std::string& text, bool mustRead = true) {
  char name[] = "/tmp/devdef-analysis-XXXXXX";
  const int fd = ::mkstemp(name);
  EXPECT_GE(fd, 0);
  EXPECT_EQ(::write(fd, text.data(), text.size()), static_cast<ssize_t>(text.size()));
  ::close(fd);
  AnalysisOptions options;
  std::unique_ptr<Analysis> analysis = Analysis::ReadFile(name, options);
  std::remove(name);
  if (mustRead) {
    EXPECT_TRUE(analysis->Read()) << analysis->Error();
  }
  EXPECT_TRUE(analysis->Exact());
  return analysis;
}

// The lines joined by the line end.
std::string Join(const std::vector<std::string>& lines, const std::string& end) {
  std::string text;
  for (const std::string& line : lines) text += line + end;
  return text;
}

std::string At(const TextRange& range) {
  return std::to_string(range.start.line) + ":" + std::to_string(range.start.column) + "-" +
         std::to_string(range.stop.line) + ":" + std::to_string(range.stop.column);
}

// Each finding as "LINE:COL severity kind".
std::vector<std::string> Summary(const Analysis& analysis) {
  std::vector<std::string> out;
  for (const Finding& f : analysis.Findings()) {
    out.push_back(std::to_string(f.range.start.line) + ":" + std::to_string(f.range.start.column) + " " +
                  SeverityName(f.kind->severity) + " " + f.kind->id);
  }
  return out;
}

// Every device of the catalogue in walk order with the place of its name
// and of each definition.
std::vector<std::string> Places(Analysis& analysis) {
  std::vector<std::string> out;
  CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>& kinds = analysis.Controller().getDeviceList();
  for (POSITION k = kinds.GetHeadPosition(); k != nullptr;) {
    const POSITION kindPos = k;
    TAG_KIND_OF_DEVICE& kind = kinds.GetNext(k);
    out.push_back(std::string("kind ") + static_cast<LPCTSTR>(kind.m_Name) + " " + At(*analysis.KindPlace(kindPos)));
    if (kind.m_pManufList == nullptr) continue;
    for (POSITION m = kind.m_pManufList->GetHeadPosition(); m != nullptr;) {
      const POSITION manufPos = m;
      TAG_DEVICE_MANUF& manuf = kind.m_pManufList->GetNext(m);
      out.push_back(std::string("manufacturer ") + static_cast<LPCTSTR>(manuf.m_Name) + " " +
                    At(*analysis.ManufacturerPlace(manufPos)));
      if (manuf.m_pDeviceList == nullptr) continue;
      for (POSITION d = manuf.m_pDeviceList->GetHeadPosition(); d != nullptr;) {
        DEVICE_ITEM& device = manuf.m_pDeviceList->GetNext(d);
        const DevicePlace* place = analysis.PlaceOf(device);
        out.push_back(std::string("device ") + device.GetDeviceName() + " " + At(place->name) + " block " +
                      At(place->block));
        for (int i = 0; i < device.m_DefArray.GetSize(); ++i) {
          out.push_back("  id " + std::to_string(device.m_DefArray[i].m_DefID) + " " +
                        At(*analysis.DefinitionPlace(device, i)));
        }
      }
    }
  }
  return out;
}

const std::vector<std::string> kHealthy = {
    "; a healthy layout 1 file",
    "DEF_LAYOUT_VERSION = 1 ",
    "HOUSING_LIST DIP8, PLCC32;",
    "ADAPTER_LIST ADP1, ADP2;",
    "MODUL_LIST BASE;",
    "EPROM:",
    ":Atmel",
    "AT27C256 {",
    "KVR4DEF: 4001 1 0 0 28 : fine",
    "  KVR5DEF: 4002 0 0 1 28 : indented ; comment",
    "}",
    "AT27C512",
    "",
    "{",
    "KVR5DEF: 4003 1 0 0,1 28 : two adapters",
    "}",
};

TEST(Analysis, ExactPlacesForEveryLineEnd) {
  const std::vector<std::string> expected = {
      "kind EPROM 6:1-6:6",
      "manufacturer Atmel 7:2-7:7",
      "device AT27C256 8:1-8:9 block 8:10-11:2",
      "  id 4001 9:1-9:30",
      "  id 4002 10:3-10:36",
      "device AT27C512 12:1-12:9 block 14:1-16:2",
      "  id 4003 15:1-15:40",
  };
  for (const std::string end : {"\n", "\r", "\r\n"}) {
    SCOPED_TRACE(testing::PrintToString(end));
    std::unique_ptr<Analysis> analysis = Analyse(Join(kHealthy, end) + "; last line without a line end");
    EXPECT_EQ(Places(*analysis), expected);
    EXPECT_TRUE(analysis->Findings().empty()) << testing::PrintToString(Summary(*analysis));
    EXPECT_EQ(At(analysis->ListPlace(0).entries[1]), "3:20-3:26");
    EXPECT_EQ(At(*analysis->VersionPlace()), "2:1-2:24");
  }
  // Mixed line ends, each ending one line.
  std::string mixed;
  const char* const ends[] = {"\n", "\r", "\r\n"};
  for (size_t i = 0; i < kHealthy.size(); ++i) mixed += kHealthy[i] + ends[i % 3];
  std::unique_ptr<Analysis> analysis = Analyse(mixed);
  EXPECT_EQ(Places(*analysis), expected);
  EXPECT_TRUE(analysis->Findings().empty());
}

const std::string kHeader = "DEF_LAYOUT_VERSION = 1 \nHOUSING_LIST DIP8;\nADAPTER_LIST ADP1;\nMODUL_LIST BASE;\n";

TEST(Analysis, RefusedLineWhoseCascadeEnds) {
  // The refused line is the block's last: its "}" is skipped, and the next
  // device reads as written.
  std::unique_ptr<Analysis> analysis = Analyse(kHeader + Join({
                                                             "EPROM:",                     // 5
                                                             ":Atmel",                     // 6
                                                             "A1",                         // 7
                                                             "{",                          // 8
                                                             "KVR5DEF: 1 0 0 0 1 : ok",    // 9
                                                             "KVR5DEF: x 0 0 0 1 : bad",   // 10
                                                             "}",                          // 11
                                                             "A2",                         // 12
                                                             "{",                          // 13
                                                             "KVR5DEF: 2 0 0 0 1 : fine",  // 14
                                                             "}",                          // 15
                                                         },
                                                         "\r\n"));
  EXPECT_EQ(Summary(*analysis), (std::vector<std::string>{"10:1 error refused", "11:1 error dropped"}));
  const Finding& refused = analysis->Findings()[0];
  ASSERT_EQ(refused.related.size(), 1u);
  EXPECT_EQ(At(refused.related[0].range), "11:1-11:2");
  EXPECT_NE(refused.message.find("number fields"), std::string::npos);
  EXPECT_EQ(At(analysis->Findings()[1].related[0].range), "10:1-10:25");
}

TEST(Analysis, RefusedLineWhoseCascadeRunsToTheEnd) {
  // With LF ends and an empty line behind the refused one, the line behind
  // that empty line is skipped; then each line of the block is read as a
  // top-level line, and every device behind it is lost in turn.
  std::unique_ptr<Analysis> analysis = Analyse(kHeader + Join({
                                                             "EPROM:",                        // 5
                                                             ":Atmel",                        // 6
                                                             "A1",                            // 7
                                                             "{",                             // 8
                                                             "KVR5DEF: 1 0 0 0 1",            // 9 no ":"
                                                             "",                              // 10
                                                             "KVR5DEF: 2 0 0 0 1 : skipped",  // 11
                                                             "KVR5DEF: 3 0 0 0 1 : kind",     // 12
                                                             "}",                             // 13
                                                             "A2",                            // 14
                                                             "{",                             // 15
                                                             "KVR5DEF: 4 0 0 0 1 : kind",     // 16
                                                             "}",                             // 17
                                                             "FLASH:",                        // 18
                                                             ":Intel",                        // 19
                                                             "B1",                            // 20
                                                             "{",                             // 21
                                                             "}",                             // 22
                                                         },
                                                         "\n"));
  EXPECT_EQ(Summary(*analysis), (std::vector<std::string>{
                                    "9:1 error refused", "11:1 error dropped", "12:1 error misread",
                                    "13:1 error misread", "14:1 error misread", "15:1 error dropped",
                                    "16:1 error misread", "17:1 error misread", "18:1 error misread",
                                    "19:1 error dropped", "20:1 warning no-manufacturer"}));
  const std::vector<Finding>& findings = analysis->Findings();
  EXPECT_NE(findings[0].message.find("no \":\" closes"), std::string::npos);
  EXPECT_NE(findings[2].message.find("kind named 'KVR5DEF'"), std::string::npos);
  EXPECT_NE(findings[3].message.find("device named '}'"), std::string::npos);
  EXPECT_NE(findings[4].message.find("'A2' read as the first line of the block of the device '}' at line 13"),
            std::string::npos);
  EXPECT_EQ(findings[0].related.size(), 9u);  // every consequence, listed at the cause
  for (size_t i = 1; i < 10; ++i) EXPECT_EQ(findings[i].related[0].range.start.line, 9);
}

TEST(Analysis, LinesThatReadDifferentlyFromTheirLook) {
  std::unique_ptr<Analysis> analysis = Analyse(kHeader + Join({
                                                             "\"Quoted: not a comment",  // 5
                                                             ":Atmel",                   // 6
                                                             "A1 {",                     // 7
                                                             "KVR5DEF: 1 0 0 0 1 : x",   // 8
                                                             "}",                        // 9
                                                             "Second:",                  // 10
                                                             "B1",                       // 11
                                                             "{",                        // 12
                                                             "}",                        // 13
                                                             "Flash Memory:",            // 14
                                                             "C1 no braces",             // 15
                                                             "KVR5DEF: 3 0 0 0 1 : x",   // 16
                                                             "D1",                       // 17
                                                             "{",                        // 18
                                                             "KVR5DEF: 4 0 0 0 1 : cut",  // 19
                                                         },
                                                         "\n") +
                                                     "}");
  EXPECT_EQ(Summary(*analysis), (std::vector<std::string>{
                                    "5:1 warning quote-kind", "11:1 warning no-manufacturer", "14:1 error misread",
                                    "14:7 error no-block", "15:1 error dropped", "16:1 error misread",
                                    "17:1 warning no-manufacturer", "17:1 error cut-off"}));
  const std::vector<Finding>& findings = analysis->Findings();
  // The kind line with a blank makes a device "Flash", whose block is the
  // rest of its line.
  EXPECT_NE(findings[2].message.find("kind line read as a device named 'Flash'"), std::string::npos);
  EXPECT_EQ(At(findings[3].range), "14:7-14:14");
  EXPECT_NE(findings[7].message.find("no line end"), std::string::npos);
  EXPECT_EQ(Places(*analysis)[0], "kind \"Quoted 5:1-5:8");
}

TEST(Analysis, HeaderListsAndHousings) {
  std::unique_ptr<Analysis> analysis = Analyse(Join({
                                                   "DEF_LAYOUT_VERSION = 7 ",                      // 1
                                                   "HOUSING_LIST { DIP8, PLCC44}",                 // 2
                                                   "ADAPTER_LIST {",                               // 3
                                                   "  ADP1",                                       // 4
                                                   "}",                                            // 5
                                                   "MODUL_LIST BASE, HV",                          // 6
                                                   "MCU:",                                         // 7
                                                   ":Atmel",                                       // 8
                                                   "A1",                                           // 9
                                                   "{",                                            // 10
                                                   "DEVICE_HOUSING_LIST: { 0, X, 1 }",             // 11
                                                   "DEVICE_HOUSING_LIST: {0}",                     // 12
                                                   "KVR5DEF: 1 0 0 0 1 1 2 3 4 5 6 7 8 9 0 : ok",  // 13
                                                   "KVR5DEF: 2 0,5 0 0 1 1 2 3 4 5 6 7 8 9 1A : x",  // 14
                                                   "}",                                            // 15
                                               },
                                               "\r\n"));
  EXPECT_EQ(Summary(*analysis),
            (std::vector<std::string>{"2:1 note layout7-writer", "2:22 error lost-entry", "3:1 note layout7-writer",
                                      "6:18 error lost-entry", "11:1 note layout7-writer", "11:27 error housing",
                                      "12:1 error housing", "12:23 error housing",
                                      "14:1 note layout7-writer", "14:14 warning bad-number",
                                      "14:40 note layout7-writer"}));
  EXPECT_EQ(At(analysis->ListPlace(0).entries[0]), "2:16-2:20");
  EXPECT_EQ(At(analysis->ListPlace(1).entries[0]), "4:3-4:7");
  EXPECT_EQ(At(analysis->Findings()[5].range), "11:27-11:31");

  // The writer's one-line form of a list in braces: the ";" opens a comment,
  // and everything up to the first "}" of the file is passed over.
  std::unique_ptr<Analysis> written = Analyse(Join({"DEF_LAYOUT_VERSION = 7 ", "HOUSING_LIST DIP8;",
                                                    "ADAPTER_LIST ADP1;", "MODUL_LIST BASE;", "MCU:", ":Atmel",
                                                    "A1", "{", "KVR5DEF: 1 0 0 0 1 1 2 3 4 5 6 7 8 9 0 : x", "}"},
                                                   "\r\n"));
  EXPECT_EQ(Summary(*written), (std::vector<std::string>{"2:1 error list", "3:1 error misread", "4:1 error misread",
                                                         "5:1 error misread", "6:1 error misread", "7:1 error misread",
                                                         "8:1 error misread", "9:1 error misread"}));
}

// Every name and definition place holds the bytes the catalogue got, for
// the samples and for damaged copies of them.
TEST(Analysis, PlacesHoldWhatTheCatalogueGot) {
  std::vector<std::string> files;
  for (const char* name : {"instruments.def", "programmers_v2.def", "adapters_v7.def", "damaged.def"}) {
    std::ifstream in(std::string(DEVDEF_EXAMPLES_DIR) + "/" + name, std::ios::binary);
    std::stringstream bytes;
    bytes << in.rdbuf();
    files.push_back(bytes.str());
  }
  unsigned seed = 12345;
  auto next = [&seed](size_t bound) {
    seed = seed * 1103515245u + 12345u;
    return static_cast<size_t>((seed >> 8) % bound);
  };
  const char* const pieces[] = {"}", "{", "\n", "\r", ":", " ", "\"", ";", "KVR5DEF:", "_"};
  for (const std::string& file : files) {
    for (int round = 0; round < 150; ++round) {
      std::string text = file;
      for (int edit = 0; edit <= round % 4; ++edit) {
        const size_t at = next(text.size() + 1);
        if (next(3) == 0) {
          text.erase(at, next(20));
        } else {
          text.insert(at, pieces[next(sizeof pieces / sizeof pieces[0])]);
        }
      }
      {
        std::unique_ptr<Analysis> analysis = Analyse(text, false);
        if (!analysis->Read()) continue;
        ASSERT_TRUE(analysis->Exact()) << "round " << round << "\n" << text;
        const std::string& bytes = analysis->Bytes();
        for (const std::string& place : Places(*analysis)) ASSERT_FALSE(place.empty());
        CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>& kinds = analysis->Controller().getDeviceList();
        for (POSITION k = kinds.GetHeadPosition(); k != nullptr;) {
          TAG_KIND_OF_DEVICE& kind = kinds.GetNext(k);
          if (kind.m_pManufList == nullptr) continue;
          for (POSITION m = kind.m_pManufList->GetHeadPosition(); m != nullptr;) {
            TAG_DEVICE_MANUF& manuf = kind.m_pManufList->GetNext(m);
            if (manuf.m_pDeviceList == nullptr) continue;
            for (POSITION d = manuf.m_pDeviceList->GetHeadPosition(); d != nullptr;) {
              DEVICE_ITEM& device = manuf.m_pDeviceList->GetNext(d);
              const DevicePlace* place = analysis->PlaceOf(device);
              ASSERT_NE(place, nullptr);
              std::string name = bytes.substr(place->name.begin, place->name.end - place->name.begin);
              for (char& c : name) c = c == '_' ? ' ' : c;
              if (device.m_DeviceFlags != 0) name.erase(0, 1);
              ASSERT_EQ(name, device.GetDeviceName());
              ASSERT_EQ(place->definitions.size(), static_cast<size_t>(device.m_DefArray.GetSize()));
              for (int i = 0; i < device.m_DefArray.GetSize(); ++i) {
                const TextRange& def = place->definitions[static_cast<size_t>(i)];
                const std::string line = bytes.substr(def.begin, def.end - def.begin);
                const std::string text = static_cast<LPCTSTR>(device.m_DefArray[i].m_DefLine);
                ASSERT_GE(line.size(), text.size());
                ASSERT_EQ(line.substr(line.size() - text.size()), text);
              }
            }
          }
        }
      }
    }
  }
}

// A line of 200,000 adapter numbers without names: each finding points at
// its own number, in time proportional to the line.
TEST(Analysis, EachOfManyUnnamedNumbersAtItsColumn) {
  const int count = 200000;
  std::string line = "KVR5DEF: 1 0 0 ";
  for (int i = 0; i < count; ++i) line += i == 0 ? "9" : ",9";
  const std::unique_ptr<Analysis> analysis = Analyse(
      Join({"DEF_LAYOUT_VERSION = 1", "HOUSING_LIST DIP8;", "ADAPTER_LIST A;", "MODUL_LIST BASE;", "K:", ":M", "D",
            "{", line + " 28 : text", "}"},
           "\n"));
  std::vector<int> columns;
  for (const Finding& f : analysis->Findings()) {
    if (std::string(f.kind->id) == "bad-number") columns.push_back(f.range.start.column);
  }
  ASSERT_EQ(columns.size(), static_cast<size_t>(count));
  EXPECT_EQ(columns.front(), 16);
  EXPECT_EQ(columns.back(), 16 + 2 * (count - 1));
}

}  // namespace
