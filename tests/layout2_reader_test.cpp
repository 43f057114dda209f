// Layout 2 definition lines: three values in front of the colon.
#include <gtest/gtest.h>

#include "devdef/devdef.h"
#include "tests/test_support.h"

namespace {

using V2Ctrl = Exposed<KCDeviceDefCtrlV2>;

// Reads one device block of layout 2; returns the device "D", or null.
DEVICE_ITEM* ReadBlock(V2Ctrl& ctrl, const std::string& lines) {
  const std::string text = "DEF_LAYOUT_VERSION = 2 \r\nK:\r\n:M\r\nD\r\n{\r\n" + lines + "}\r\nAfter\r\n{\r\n}\r\n";
  if (ReadText(ctrl, text) != 1) return nullptr;
  return DeviceNamed(ctrl, "D");
}

TEST(Layout2Line, FieldsAndSeparators) {
  V2Ctrl ctrl("", 4, 0);
  DEVICE_ITEM* device = ReadBlock(ctrl,
                                  "KVR4DEF: 120 4 0 7,9 1 2 12 : TEXT\r\n"
                                  "KVR3DEF:\t121  4,5 0 7 ,9 1\t2 3:a:b\r\n"  // tabs, runs, a blank before a comma
                                  "KVR5DEF: 122 70000 -1 7, 9 1 2 12 :x\r\n"    // a blank behind the last comma
                                  "KVR5DEF: 123 0 0 7 1 2 3 4 5 6 :more fields are ignored\r\n"
                                  "KVR5DEF: 124 0 0 7,9:short form\r\n"
                                  "KVR5DEF: 125 0 0 1 2 3,4 5 6 7 :comma in a later field\r\n");
  ASSERT_NE(device, nullptr);
  ASSERT_EQ(device->m_DefArray.GetSize(), 5);
  DEVICE_KVRXDEF_ITEM* defs = device->m_DefArray.GetData();
  EXPECT_EQ(defs[0].m_KvrType, 4);
  EXPECT_FALSE(defs[0].IsHidden());
  EXPECT_EQ(defs[0].m_DefID, 120u);
  EXPECT_EQ(Words(defs[0].m_PackageIds), std::vector<int>{4});
  EXPECT_EQ(defs[0].m_ModulId, 0u);
  EXPECT_EQ(Words(defs[0].m_AdapterIds), (std::vector<int>{7, 9}));
  EXPECT_EQ(defs[0].m_DefValues[0], 1u);
  EXPECT_EQ(defs[0].m_DefValues[1], 2u);
  EXPECT_EQ(defs[0].m_DefValues[2], 12u);
  EXPECT_EQ(defs[0].m_DefValues[3], 0u);
  EXPECT_EQ(defs[0].m_DefLine, " TEXT");

  EXPECT_TRUE(defs[1].IsHidden());
  EXPECT_EQ(Words(defs[1].m_PackageIds), std::vector<int>{4});  // a list in the package field gives its first number
  EXPECT_EQ(Words(defs[1].m_AdapterIds), (std::vector<int>{7, 9}));
  EXPECT_EQ(defs[1].m_DefValues[2], 3u);
  EXPECT_EQ(defs[1].m_DefLine, "a:b");

  EXPECT_EQ(Words(defs[2].m_PackageIds), std::vector<int>{70000 & 0xFFFF});
  EXPECT_EQ(defs[2].m_ModulId, 0xFFFFFFFFu);
  EXPECT_EQ(Words(defs[2].m_AdapterIds), (std::vector<int>{7, 9}));
  EXPECT_EQ(defs[2].m_DefValues[0], 9u);  // the last adapter is read again as value 0
  EXPECT_EQ(defs[2].m_DefValues[1], 1u);
  EXPECT_EQ(defs[2].m_DefValues[2], 2u);

  EXPECT_EQ(defs[3].m_DefValues[2], 3u);
  // The comma search runs through the whole rest of the head.
  EXPECT_EQ(defs[4].m_DefID, 125u);
  EXPECT_EQ(Words(defs[4].m_AdapterIds), (std::vector<int>{1, 4}));
  EXPECT_EQ(defs[4].m_DefValues[0], 5u);
  EXPECT_NE(DeviceNamed(ctrl, "After"), nullptr);
}

TEST(Layout2Line, RefusedLines) {
  const char* const refused[] = {
      "kvr4def: 2 0 0 7 1 2 3 : lower case",
      "KVR4DEF: 2 0 0 7 1 2 3 no colon",
      "KVR4DEF: 2 0 0 7 12 : a layout 1 line",
      "KVR4DEF: 2 0 0 7 12: a layout 1 line without the blank",
      "KVR4DEF: 2 0 0 7,9 : short form with a blank",
      "KVR4DEF: 2 0 0 x 1 2 3 : adapter",
      "KVR4DEF: 2 0 0 7 1 2 x : value 2",
      "\xDFKVR4DEF: 2 0 0 7 1 2 3 : a mark",
      "KVR5M_DEF: 2 0 0 7 1 2 3 : a layout 7 keyword",
      "DEVICE_HOUSING_LIST: { 1, 2 }",
  };
  for (const char* line : refused) {
    SCOPED_TRACE(line);
    V2Ctrl ctrl("", 4, 0);
    DEVICE_ITEM* device = ReadBlock(ctrl, std::string("KVR4DEF: 1 0 0 7 1 2 3 : first\r\n") + line + "\r\n");
    ASSERT_NE(device, nullptr);
    EXPECT_EQ(device->m_DefArray.GetSize(), 1);
    EXPECT_NE(DeviceNamed(ctrl, "After"), nullptr);
  }
}

TEST(Layout2Line, DuplicateIdsAndTheNextId) {
  MessageCapture boxes;
  V2Ctrl ctrl("", 4, 1);
  DEVICE_ITEM* device = ReadBlock(ctrl,
                                  "KVR4DEF: 8 0 0 7 1 2 3 :a\r\n"
                                  "KVR4DEF: 8 0 0 7 1 2 3 :b\r\n"
                                  "KVR4DEF: 8 0 0 7:short form is not checked\r\n");
  ASSERT_NE(device, nullptr);
  EXPECT_EQ(device->m_DefArray.GetSize(), 2);
  EXPECT_EQ(boxes.Boxes().size(), 1u);
  EXPECT_EQ(ctrl.getNextDeviceID(), 9);
}

}  // namespace
