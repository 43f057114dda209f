// Layout 7: the fifteen-field definition line, number lists, marks, dropped
// keywords, header lists in braces and housing lines.
#include <gtest/gtest.h>

#include "devdef/devdef.h"
#include "tests/test_support.h"

namespace {

class V3Ctrl : public Exposed<KCDeviceDefCtrlV3> {
 public:
  V3Ctrl() : Exposed<KCDeviceDefCtrlV3>("", 5, 0, nullptr) {}
  using KCDeviceDefCtrlV3::BuildList;
  using KCDeviceDefCtrlV3::RDF_BuildList;
};

const char kVersion[] = "DEF_LAYOUT_VERSION = 7 \r\n";
const char kTail[] = " 16 0 1 2 1F 0 5 6 A 1 0 :";  // fields 5 to 15

DEVICE_ITEM* ReadBlock(V3Ctrl& ctrl, const std::string& deviceLine, const std::string& lines) {
  const std::string text =
      std::string(kVersion) + "K:\r\n:M\r\n" + deviceLine + "\r\n{\r\n" + lines + "}\r\nAfter\r\n{\r\n}\r\n";
  if (ReadText(ctrl, text) != 1) return nullptr;
  return DeviceNamed(ctrl, "D");
}

TEST(Layout7Line, FifteenFields) {
  V3Ctrl ctrl;
  DEVICE_ITEM* device = ReadBlock(ctrl, "D",
                                  "KVR5DEF: 1042 7 2 3,12 16 0 1 2 1F 0 5 6 A 1 0 : TEXT\r\n"
                                  "KVR4DEF:1 3 , 12,,4 0 3 ,12" + std::string(kTail) + "x:y\r\n"
                                  "KVR5DEF: 2 70000,-1 0 12abc,7 16 0 1 2 0x1f -1 5 6 a 1 ff extra : \r\n"
                                  "KVR5DEF: 3 0 0 0" + kTail + "\r\n");
  ASSERT_NE(device, nullptr);
  ASSERT_EQ(device->m_DefArray.GetSize(), 4);
  DEVICE_KVRXDEF_ITEM* defs = device->m_DefArray.GetData();
  EXPECT_EQ(defs[0].m_DefID, 1042u);
  EXPECT_EQ(Words(defs[0].m_PackageIds), std::vector<int>{7});
  EXPECT_EQ(defs[0].m_ModulId, 2u);
  EXPECT_EQ(Words(defs[0].m_AdapterIds), (std::vector<int>{3, 12}));
  const DWORD expected[11] = {16, 0, 1, 2, 31, 0, 5, 6, 10, 1, 0};
  for (int i = 0; i < 11; ++i) EXPECT_EQ(defs[0].m_DefValues[i], expected[i]) << i;
  EXPECT_EQ(defs[0].m_DefLine, " TEXT");

  EXPECT_TRUE(defs[1].IsHidden());
  EXPECT_EQ(Words(defs[1].m_PackageIds), (std::vector<int>{3, 12, 4}));
  EXPECT_EQ(Words(defs[1].m_AdapterIds), (std::vector<int>{3, 12}));
  EXPECT_EQ(defs[1].m_DefValues[0], 16u);
  EXPECT_EQ(defs[1].m_DefLine, "x:y");

  EXPECT_EQ(Words(defs[2].m_PackageIds), (std::vector<int>{70000 & 0xFFFF, 65535}));
  EXPECT_EQ(Words(defs[2].m_AdapterIds), (std::vector<int>{12, 7}));
  EXPECT_EQ(defs[2].m_DefValues[4], 31u);
  EXPECT_EQ(defs[2].m_DefValues[5], 0xFFFFFFFFu);
  EXPECT_EQ(defs[2].m_DefValues[8], 10u);
  EXPECT_EQ(defs[2].m_DefValues[10], 255u);
  EXPECT_EQ(defs[2].m_DefLine, "");  // the block reader trims the line's end
  EXPECT_EQ(defs[3].m_DefLine, "");
  EXPECT_NE(DeviceNamed(ctrl, "After"), nullptr);
}

TEST(Layout7Line, MarksAndDroppedKeywords) {
  V3Ctrl ctrl;
  DEVICE_ITEM* device = ReadBlock(ctrl, "\xDF" "D",
                                  "KVR5DEF: 1 0 0 0" + std::string(kTail) + "device mark only\r\n"
                                  "\xB0KVR5DEF: 2 0 0 0" + kTail + "plus a line mark\r\n"
                                  "KVR5M_DEF: anything at all\r\n"
                                  "\xB0KVR5D_DEF:\r\n"
                                  "KVR5P_DEF_ORIGIN: 1 2 3\r\n"
                                  "KVR5D_DEF_ORIGIN:\r\nKVR5M_DEF_ORIGIN:\r\nKVR5P_DEF:\r\n");
  ASSERT_NE(device, nullptr);
  ASSERT_EQ(device->m_DefArray.GetSize(), 2);
  EXPECT_EQ(device->m_DeviceFlags, 2u);
  EXPECT_EQ(device->m_DefArray[0].m_MarkFlags, 2u);
  EXPECT_EQ(device->m_DefArray[1].m_MarkFlags, 3u);
  EXPECT_NE(DeviceNamed(ctrl, "After"), nullptr);
}

TEST(Layout7Line, RefusedLines) {
  const std::string tail = kTail;
  const std::string refused[] = {
      "\xB0\xB0KVR5DEF: 2 0 0 0" + tail,                            // a second mark
      "kvr5def: 2 0 0 0" + tail,                                    // lower case
      "KVR5DEF: 2 0 0 0 16 0 1 2 1F 0 5 6 A 1 no colon",            // no separator
      "KVR5DEF: 2 0 0 0 16 0 1 2 1F 0 5 6 A 1:",                    // fourteen fields
      "KVR5DEF: 2 ,1 0 0" + tail,                                   // a list opening with a comma
      "KVR5DEF: 2 3, x 0 0" + tail,                                 // a comma and no number
      "KVR5DEF: 2 0 0 0 16 0 1 2 G 0 5 6 A 1 0 :",                  // a hex field that is none
      "KVR5DEF: 2 0 0 0 16 0 1 2 1F 0 5 6 A 1 :",                   // value 10 missing
      "KVR5DEF: 2 0 0 0 16 0 1 2 1F 0 5 6 A 1 0" ,                  // no colon at all
  };
  for (const std::string& line : refused) {
    SCOPED_TRACE(line);
    V3Ctrl ctrl;
    DEVICE_ITEM* device = ReadBlock(ctrl, "D", "KVR5DEF: 1 0 0 0" + tail + "first\r\n" + line + "\r\n");
    ASSERT_NE(device, nullptr);
    EXPECT_EQ(device->m_DefArray.GetSize(), 1);
    EXPECT_NE(DeviceNamed(ctrl, "After"), nullptr);
  }
}

TEST(Layout7Line, BuildList) {
  V3Ctrl ctrl;
  const struct {
    const char* text;
    int result;
    std::vector<int> entries;
    int rest;  // where the cursor ends, from the start
  } cases[] = {
      {"3,12 x", 1, {3, 12}, 5},  {"3, 12 x", 1, {3, 12}, 6}, {"3 ,12 x", 1, {3, 12}, 6},
      {"3 , 12 x", 1, {3, 12}, 7}, {"3,,12 x", 1, {3, 12}, 6}, {"3 12", 1, {3}, 2},
      {",3 x", 0, {}, 0},          {"3, x", 0, {3}, 0},         {"", 0, {}, 0},
      {"12abc,7", 1, {12, 7}, 7},  {"5", 1, {5}, 1},            {"5,", 0, {5}, 0},
  };
  for (const auto& c : cases) {
    CWordArray words;
    const char* cursor = c.text;
    EXPECT_EQ(ctrl.BuildList(&words, &cursor), c.result) << c.text;
    EXPECT_EQ(Words(words), c.entries) << c.text;
    EXPECT_EQ(cursor - c.text, c.rest) << c.text;
  }
}

TEST(Layout7Lists, ListsInBraces) {
  V3Ctrl ctrl;
  const std::string header =
      "HOUSING_LIST {\r\n"
      "  DIP8, PLCC32,\r\n"
      "  A/B A{B C; C is lost\r\n"
      "  LAST\r\n"
      "}\r\n"
      "adapter_list{ADP_1_DIP8/ZIF\tADP_2\r\n/ comment } ends the list\r\n"
      "MODUL_LIST M0, M1\tX ;M2;M3\r\n";
  ASSERT_EQ(ReadText(ctrl, kVersion + header + "K:\r\n"), 1);
  EXPECT_EQ(Names(DEVICE_ITEM::m_PackageList), (std::vector<std::string>{"DIP8", "PLCC32", "A/B", "A{B", "LAST"}));
  EXPECT_EQ(Names(DEVICE_ITEM::m_AdapterList), (std::vector<std::string>{"ADP_1_DIP8/ZIF", "ADP_2"}));
  EXPECT_EQ(Names(DEVICE_ITEM::m_ModulList), (std::vector<std::string>{"M0", "M1\tX", "M2"}));
  EXPECT_EQ(KindNames(ctrl), std::vector<std::string>{"K"});
}

TEST(Layout7Lists, RdfBuildListOnText) {
  V3Ctrl ctrl;
  const struct {
    const char* text;
    int result;
    std::vector<std::string> entries;
  } cases[] = {
      {"{ A, B }", 1, {"A", "B"}}, {"{ A, B}", 1, {"A"}},   {"{ A}", 0, {}},         {"{ }", 0, {}},
      {"x { A }", 1, {"A"}},       {"; c\n{ A }", 0, {}},   {"{ A, B", 0, {"A"}},    {"{ A/B A{B }", 1, {"A/B", "A{B"}},
      {"{ A ; } B }", 1, {"A"}},   {"{ /A }", 0, {}},       {"", 0, {}},
  };
  for (const auto& c : cases) {
    CByteArray bytes;
    const std::string text = c.text;
    bytes.SetSize(static_cast<int>(text.size()));
    for (size_t i = 0; i < text.size(); ++i) bytes[static_cast<int>(i)] = static_cast<BYTE>(text[i]);
    CStringArray entries;
    const DWORD pos = ctrl.m_nBufPos;
    EXPECT_EQ(ctrl.RDF_BuildList(&entries, &bytes), c.result) << c.text;
    EXPECT_EQ(Names(entries), c.entries) << c.text;
    EXPECT_EQ(ctrl.m_nBufPos, pos);
  }
}

TEST(Layout7Lists, HeaderKeywordForms) {
  {
    // The one-line form of the writers: the ";" opens a comment, and the
    // scan passes over everything up to the first "}" of the file.
    V3Ctrl ctrl;
    ASSERT_EQ(ReadText(ctrl, std::string(kVersion) + "HOUSING_LIST P0, P1;\r\nADAPTER_LIST A0;\r\nMODUL_LIST M0;\r\n"
                                                     "K:\r\n:M\r\nD\r\n{\r\n}\r\nE\r\n{\r\n}\r\n"),
              1);
    EXPECT_EQ(DEVICE_ITEM::m_PackageList.GetSize(), 0);
    EXPECT_EQ(DEVICE_ITEM::m_AdapterList.GetSize(), 0);
    EXPECT_EQ(DEVICE_ITEM::m_ModulList.GetSize(), 0);
    EXPECT_EQ(KindNames(ctrl), std::vector<std::string>{});
  }
  {
    // A keyword with the line end behind it is no list; with a blank, its
    // brace may stand on a later line; a tab is no delimiter.
    V3Ctrl ctrl;
    ASSERT_EQ(ReadText(ctrl, std::string(kVersion) + "HOUSING_LIST\r\n{ X }\r\nADAPTER_LIST \r\n\r\n{ Y }\r\n"
                                                     "MODUL_LIST\t{ Z }\r\nMODUL_LIST ,\r\n K:\r\n"),
              1);
    EXPECT_EQ(DEVICE_ITEM::m_PackageList.GetSize(), 0);
    EXPECT_EQ(Names(DEVICE_ITEM::m_AdapterList), std::vector<std::string>{"Y"});
    EXPECT_EQ(DEVICE_ITEM::m_ModulList.GetSize(), 0);
  }
  {
    // A list in braces cut off by the end of the file keeps what it stored.
    V3Ctrl ctrl;
    ASSERT_EQ(ReadText(ctrl, std::string(kVersion) + "HOUSING_LIST { A, B"), 1);
    EXPECT_EQ(Names(DEVICE_ITEM::m_PackageList), std::vector<std::string>{"A"});
  }
}

TEST(Layout7Lists, HousingLines) {
  V3Ctrl ctrl;
  const std::string tail = kTail;
  DEVICE_ITEM* device = ReadBlock(ctrl, "D",
                                  "DEVICE_HOUSING_LIST: { 1, 2, 3 }\r\n"
                                  "KVR5DEF: 1 0 0 0" + tail + "\r\n"
                                  "prefix DEVICE_HOUSING_LIST: {4,5,6}\r\n"   // the last entry has no separator
                                  "DEVICE_HOUSING_LIST: {7}\r\n"              // gives nothing
                                  "DEVICE_HOUSING_LIST: { 8, X, 9 }\r\n"      // stops at the first non-number
                                  "DEVICE_HOUSING_LIST: { 12AB 70000 }\r\n"
                                  "DEVICE_HOUSING_LIST: { 10 ; 11 }\r\n"      // the comment cuts the list
                                  "DEVICE_HOUSING_LIST: { 13,\r\n"            // closes on a later line: nothing
                                  "KVR5DEF: 2 0 0 0" + tail + "DEVICE_HOUSING_LIST: in a text\r\n"
                                  "KVR5DEF: 3 0 0 0" + tail + "\r\n");
  ASSERT_NE(device, nullptr);
  EXPECT_EQ(Words(device->m_HousingIds), (std::vector<int>{1, 2, 3, 4, 5, 8, 12, 70000 & 0xFFFF}));
  ASSERT_EQ(device->m_DefArray.GetSize(), 2);
  EXPECT_EQ(device->m_DefArray[1].m_DefID, 3u);
}

TEST(Layout7Lists, CutOffFilesNeverReadPastTheBuffer) {
  MessageCapture boxes;
  const std::string text = std::string(kVersion) +
                           "HOUSING_LIST {\r\n P0, P1,\r\n}\r\nADAPTER_LIST { A0 }\r\nMODUL_LIST M0;\r\n"
                           "K:\r\n:M\r\n\xB0" "D\r\n{\r\nDEVICE_HOUSING_LIST: { 1, 2 }\r\n"
                           "\xDFKVR5DEF: 1042 7,1 2 3,12" + kTail + " TEXT\r\nKVR5M_DEF: x\r\n}\r\n";
  for (size_t cut = 0; cut <= text.size(); ++cut) {
    V3Ctrl ctrl;
    ASSERT_EQ(ReadText(ctrl, text.substr(0, cut)), 1) << "cut at " << cut;
  }
  V3Ctrl whole;
  ASSERT_EQ(ReadText(whole, text), 1);
  DEVICE_ITEM* device = DeviceNamed(whole, "D");
  ASSERT_NE(device, nullptr);
  EXPECT_EQ(device->m_DefArray.GetSize(), 1);
  EXPECT_EQ(Words(device->m_HousingIds), (std::vector<int>{1, 2}));
  EXPECT_TRUE(boxes.Boxes().empty());
}

}  // namespace
