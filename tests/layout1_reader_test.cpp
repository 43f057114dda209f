// Layout 1 definition lines, the one-line header lists and the duplicate-id
// check.
#include <gtest/gtest.h>

#include <set>

#include "devdef/devdef.h"
#include "tests/test_support.h"

namespace {

// A file with one device whose block holds the given lines.
std::string Block(const std::string& lines, const std::string& header = "") {
  return "DEF_LAYOUT_VERSION = 1 \r\n" + header + "K:\r\n:M\r\nD\r\n{\r\n" + lines + "}\r\nAfter\r\n{\r\n}\r\n";
}

TEST(Layout1Line, FieldsOfAFullLine) {
  TestCtrl ctrl("", 4, 0);
  ASSERT_EQ(ReadText(ctrl, Block("KVR4DEF: 7 1 2 3,4 5 : text: with a colon/slash\r\n")), 1);
  DEVICE_ITEM* device = DeviceNamed(ctrl, "D");
  ASSERT_NE(device, nullptr);
  ASSERT_EQ(device->m_DefArray.GetSize(), 1);
  DEVICE_KVRXDEF_ITEM& def = device->m_DefArray[0];
  EXPECT_EQ(def.m_KvrType, 4);
  EXPECT_EQ(def.m_TypeState, 0);
  EXPECT_EQ(def.m_DefID, 7u);
  EXPECT_EQ(Words(def.m_PackageIds), std::vector<int>{1});
  EXPECT_EQ(def.m_ModulId, 2u);
  EXPECT_EQ(Words(def.m_AdapterIds), (std::vector<int>{3, 4}));
  EXPECT_EQ(def.m_DefValues[2], 5u);
  for (int i : {0, 1, 3, 4, 5, 6, 7, 8, 9, 10}) EXPECT_EQ(def.m_DefValues[i], 0u) << i;
  EXPECT_EQ(def.m_DefLine, " text: with a colon/slash");
  EXPECT_EQ(def.m_MarkFlags, 0u);
  EXPECT_TRUE(def.m_XDefName.IsEmpty());
  EXPECT_EQ(def.m_pDevice, device);
  EXPECT_NE(DeviceNamed(ctrl, "After"), nullptr);
}

TEST(Layout1Line, SeparatorsAndNumbers) {
  TestCtrl ctrl("", 5, 0);
  const std::string lines =
      "KVR5DEF:\t 1\t\t2   3 \t4,5    6:tabs\tstay\r\n"  // tabs and runs of blanks are one blank
      "KVR5DEF: 2 65537 -1 70000 -7 :\r\n"              // 16-bit fields keep their low bits
      "KVR5DEF: 3 1 2 3, 4 5 :x\r\n"                    // a blank behind a comma moves the value
      "KVR5DEF: 4 1 2 3 ,4 5 :x\r\n"                    // a blank in front of a comma does no harm
      "KVR5DEF: 5abc 1x 2y 3z 4w :x\r\n"                // a field needs only to begin with its number
      "KVR3DEF: 6 0 0 1,2:short form, no definition\r\n"
      "KVR5DEF: 7 0 0 1 9 extra fields are ignored :x\r\n";
  ASSERT_EQ(ReadText(ctrl, Block(lines)), 1);
  DEVICE_ITEM* device = DeviceNamed(ctrl, "D");
  ASSERT_EQ(device->m_DefArray.GetSize(), 6);
  DEVICE_KVRXDEF_ITEM* defs = device->m_DefArray.GetData();
  EXPECT_EQ(Words(defs[0].m_AdapterIds), (std::vector<int>{4, 5}));
  EXPECT_EQ(defs[0].m_DefValues[2], 6u);
  EXPECT_EQ(defs[0].m_DefLine, "tabs\tstay");
  EXPECT_EQ(Words(defs[1].m_PackageIds), std::vector<int>{1});
  EXPECT_EQ(defs[1].m_ModulId, 0xFFFFFFFFu);
  EXPECT_EQ(Words(defs[1].m_AdapterIds), std::vector<int>{70000 & 0xFFFF});
  EXPECT_EQ(static_cast<int>(defs[1].m_DefValues[2]), -7);
  EXPECT_EQ(defs[1].m_DefLine, "");
  EXPECT_EQ(Words(defs[2].m_AdapterIds), (std::vector<int>{3, 4}));
  EXPECT_EQ(defs[2].m_DefValues[2], 4u);
  EXPECT_EQ(Words(defs[3].m_AdapterIds), (std::vector<int>{3, 4}));
  EXPECT_EQ(defs[3].m_DefValues[2], 5u);
  EXPECT_EQ(defs[4].m_DefID, 5u);
  EXPECT_EQ(defs[4].m_DefValues[2], 4u);
  EXPECT_EQ(defs[5].m_DefID, 7u);
  EXPECT_EQ(defs[5].m_DefValues[2], 9u);
  EXPECT_NE(DeviceNamed(ctrl, "After"), nullptr);  // the short form did not end the block
}

TEST(Layout1Line, RefusedLines) {
  // Each of these lines is refused: the block ends there and the device
  // keeps the definition read before it.
  const char* const refused[] = {
      "kvr5def: 2 0 0 0 0 : lower case keyword",
      "KVR6DEF: 2 0 0 0 0 : unknown generation",
      "KVR2DEF: 2 0 0 0 0 : generation below 3",
      // The keyword must stand whole, byte by byte.
      "KXR5DEF: 2 0 0 0 0 : x",
      "KVX5DEF: 2 0 0 0 0 : x",
      "KVR5XEF: 2 0 0 0 0 : x",
      "KVR5DXF: 2 0 0 0 0 : x",
      "KVR5DEX: 2 0 0 0 0 : x",
      "KVR5DEF 2 0 0 0 0 : x",
      "KVR5DEF: \t  : only white space in front of the colon",
      "\xB0KVR5DEF: 2 0 0 0 0 : a mark",
      "KVR5DEF: 2 0 0 0 0 no colon",
      "KVR5DEF: x 0 0 0 0 : no id",
      "KVR5DEF: 2:no blank behind the id",
      "KVR5DEF: 2 0:no blank behind the package",
      "KVR5DEF: 2 0 0:no blank behind the module",
      "KVR5DEF: 2 0 0 a 0 : adapter is no number",
      "KVR5DEF: 2 0 0 1, : no number behind the comma",
      "KVR5DEF: 2 0 0 1 : blank behind the adapters and no value",
      "KVR5M_DEF: 2 0 0 0 0 : a layout 7 keyword",
  };
  for (const char* line : refused) {
    SCOPED_TRACE(line);
    TestCtrl ctrl("", 5, 0);
    ASSERT_EQ(ReadText(ctrl, Block(std::string("KVR5DEF: 1 0 0 0 0 : first\r\n") + line + "\r\n")), 1);
    DEVICE_ITEM* device = DeviceNamed(ctrl, "D");
    ASSERT_NE(device, nullptr);
    ASSERT_EQ(device->m_DefArray.GetSize(), 1);
    EXPECT_EQ(device->m_DefArray[0].m_DefID, 1u);
    // The line behind the refused one ("}") is dropped, and what follows is
    // read as top-level lines.
    EXPECT_EQ(DeviceNamed(ctrl, "}"), nullptr);
    EXPECT_NE(DeviceNamed(ctrl, "After"), nullptr);
  }
}

TEST(Layout1Line, HiddenBitsFollowTheGenerationInForce) {
  TestCtrl ctrl("", 4, 0);
  ASSERT_EQ(ReadText(ctrl, Block("KVR3DEF: 1 0 0 0 0 :a\r\nKVR4DEF: 2 0 0 0 0 :b\r\nKVR5DEF: 3 0 0 0 0 :c\r\n")), 1);
  DEVICE_ITEM* device = DeviceNamed(ctrl, "D");
  ASSERT_EQ(device->m_DefArray.GetSize(), 3);
  EXPECT_TRUE(device->m_DefArray[0].IsHidden());
  EXPECT_FALSE(device->m_DefArray[1].IsHidden());
  EXPECT_TRUE(device->m_DefArray[2].IsHidden());
  EXPECT_EQ(device->GetNumDevDefs(), 1);
  EXPECT_EQ(device->GetDeviceID(0), 2);
}

TEST(HeaderLists, OneLineLists) {
  TestCtrl ctrl("", 5, 0);
  const std::string header =
      "HOUSING_LIST DIP8, PLCC_32;\r\n"
      "adapter_list A B,,C ;D/E;F\r\n"   // delimiters in a row; a name needs one behind it
      "Modul_List \tM1\t, M2;\r\n"       // tabs at a name's ends go
      "HOUSING_LIST ;\r\n"                // a list with no names
      "MODUL_LIST\r\n"                    // no delimiter: no list line
      " HOUSING_LIST X;\r\n"              // must open the line
      "HOUSING_LISTS X;\r\n";
  ASSERT_EQ(ReadText(ctrl, Block("", header)), 1);
  EXPECT_EQ(Names(DEVICE_ITEM::m_PackageList), (std::vector<std::string>{"DIP8", "PLCC_32"}));
  EXPECT_EQ(Names(DEVICE_ITEM::m_AdapterList), (std::vector<std::string>{"A", "B", "C", "D/E"}));
  EXPECT_EQ(Names(DEVICE_ITEM::m_ModulList), (std::vector<std::string>{"M1", "M2"}));
}

TEST(HeaderLists, OnlyAheadOfTheFirstKindAndCutOff) {
  {
    TestCtrl ctrl("", 5, 0);
    ASSERT_EQ(ReadText(ctrl, "DEF_LAYOUT_VERSION = 1\nK:\nHOUSING_LIST A;\n:M\nHOUSING_LIST B;\n"), 1);
    EXPECT_EQ(DEVICE_ITEM::m_PackageList.GetSize(), 0);
    // With a manufacturer current the line is a device.
    EXPECT_NE(DeviceNamed(ctrl, "HOUSING LIST"), nullptr);
  }
  {
    TestCtrl ctrl("", 5, 0);
    ASSERT_EQ(ReadText(ctrl, "DEF_LAYOUT_VERSION = 1\nADAPTER_LIST A, B, C"), 1);
    EXPECT_EQ(Names(DEVICE_ITEM::m_AdapterList), (std::vector<std::string>{"A", "B"}));
  }
}

TEST(DuplicateIds, CheckedAgainstTheWholeCatalogue) {
  MessageCapture boxes;
  TestCtrl ctrl("", 5, 1);
  // Id 9 first comes on a hidden definition; it is in use all the same.
  ASSERT_EQ(ReadText(ctrl, Block("KVR5DEF: 5 0 0 0 0 :a\r\nKVR3DEF: 9 0 0 0 0 :b\r\nKVR5DEF: 7 0 0 0 0 :c\r\n"
                                 "KVR5DEF: 9 0 0 0 0 :d\r\n")),
            1);
  ASSERT_EQ(boxes.Boxes().size(), 1u);
  EXPECT_EQ(boxes.Boxes()[0].text, "Doppelte device id gefunden:\n<9>");
  EXPECT_EQ(boxes.Boxes()[0].caption, "INTERN_VERSION");
  EXPECT_EQ(boxes.Boxes()[0].type, 0x30u);
  EXPECT_EQ(DeviceNamed(ctrl, "D")->m_DefArray.GetSize(), 4);  // the duplicate is stored
  EXPECT_EQ(ctrl.getNextDeviceID(), 10);
  EXPECT_EQ(ctrl.FindId(ctrl, 9), 1);
  EXPECT_EQ(ctrl.FindId(ctrl, 8), 0);
  // Outside a read (a subclass may check) the check walks the catalogue.
  ctrl.RDF_CheckDuplicateId(8);
  ctrl.RDF_CheckDuplicateId(9);
  ASSERT_EQ(boxes.Boxes().size(), 2u);
  EXPECT_EQ(boxes.Boxes()[1].text, "Doppelte device id gefunden:\n<9>");

  // A second file is checked against what the first one left.
  ASSERT_EQ(ReadText(ctrl, "K:\n:M\nD2\n{\nKVR5DEF: 7 0 0 0 0 :again\nKVR5DEF: -1 0 0 0 0 :max\n}\n"), 1);
  ASSERT_EQ(boxes.Boxes().size(), 3u);
  EXPECT_EQ(boxes.Boxes()[2].text, "Doppelte device id gefunden:\n<7>");
  EXPECT_EQ(ctrl.getNextDeviceID(), 0);  // the id 0xFFFFFFFF wraps the next id

  // Thousands of ids, sequential, strided and at both ends of the range:
  // only the repeated ones are reported, whatever the table has grown to.
  TestCtrl many("", 5, 1);
  std::string lines;
  for (unsigned i = 0; i < 3000; ++i) {
    const unsigned id = i % 3 == 0 ? 100000 + i : (i % 3 == 1 ? i << 16 : 0xFFFFFFFFu - i);
    lines += "KVR5DEF: " + std::to_string(static_cast<int>(id)) + " 0 0 0 0 :\r\n";
  }
  lines += "KVR5DEF: 65536 0 0 0 0 :\r\nKVR5DEF: -3 0 0 0 0 :\r\n";
  ASSERT_EQ(ReadText(many, Block(lines)), 1);
  ASSERT_EQ(boxes.Boxes().size(), 5u);
  EXPECT_EQ(boxes.Boxes()[3].text, "Doppelte device id gefunden:\n<65536>");
  EXPECT_EQ(boxes.Boxes()[4].text, "Doppelte device id gefunden:\n<-3>");
  many.RemoveDefLists();

  // Without the check: no message, and the next id stays 0.
  TestCtrl quiet("", 5, 0);
  ASSERT_EQ(ReadText(quiet, Block("KVR5DEF: 5 0 0 0 0 :a\r\nKVR5DEF: 5 0 0 0 0 :b\r\n")), 1);
  EXPECT_EQ(boxes.Boxes().size(), 5u);
  EXPECT_EQ(quiet.getNextDeviceID(), 0);
  EXPECT_EQ(DeviceNamed(quiet, "D")->m_DefArray.GetSize(), 2);
}

// Exactly the ids seen before are reported, however the ids move: rising,
// falling below the first one, jumping far away, with 0 and the largest id.
TEST(DuplicateIds, ReportedExactlyForEveryPatternOfIds) {
  std::vector<std::vector<unsigned>> patterns(3);
  for (unsigned i = 0; i < 3000; ++i) patterns[0].push_back(50000 + i);
  for (unsigned i = 0; i < 3000; ++i) patterns[0].push_back(49999 - i);  // below the first id
  for (unsigned i = 0; i < 6000; i += 7) patterns[0].push_back(47000 + i);  // all repeats
  patterns[0].push_back(0);
  for (unsigned i = 0; i < 2000; ++i) patterns[1].push_back((i * 2654435761u) ^ (i & 1 ? 0xFFFFFFFFu : 0));
  for (unsigned i = 0; i < 2000; i += 3) patterns[1].push_back((i * 2654435761u) ^ (i & 1 ? 0xFFFFFFFFu : 0));
  patterns[1].push_back(0);
  patterns[1].push_back(0);
  for (unsigned i = 0; i < 1500; ++i) patterns[2].push_back(i % 500 == 0 ? i << 20 : 7000 + i);
  for (unsigned i = 0; i < 1500; i += 5) patterns[2].push_back(7000 + i);
  // One id a word of the bitmap, so that it soon cannot double; falling to
  // 0; rising to the largest id.
  patterns.resize(6);
  for (unsigned i = 0; i < 3000; ++i) patterns[3].push_back(i * 64);
  for (unsigned i = 0; i < 3000; i += 10) patterns[3].push_back(i * 64);
  for (unsigned i = 0; i <= 5000; ++i) patterns[4].push_back(5000 - i);
  for (unsigned i = 0; i <= 5000; i += 9) patterns[4].push_back(i);
  for (unsigned i = 0; i < 4096; ++i) patterns[5].push_back(0xFFFFF000u + i);
  patterns[5].push_back(0xFFFFFFFFu);
  for (const auto& ids : patterns) {
    MessageCapture boxes;
    TestCtrl ctrl("", 5, 1);
    std::string lines;
    std::set<unsigned> seen;
    std::vector<std::string> expected;
    for (unsigned id : ids) {
      lines += "KVR5DEF: " + std::to_string(static_cast<int>(id)) + " 0 0 0 0 :\r\n";
      if (!seen.insert(id).second) expected.push_back("Doppelte device id gefunden:\n<" + std::to_string(static_cast<int>(id)) + ">");
    }
    ASSERT_EQ(ReadText(ctrl, Block(lines)), 1);
    std::vector<std::string> reported;
    for (const auto& box : boxes.Boxes()) reported.push_back(box.text);
    EXPECT_EQ(reported, expected);
  }
}

}  // namespace
