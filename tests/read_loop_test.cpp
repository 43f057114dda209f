// The byte-driven read loop and its recognisers: versions, the tree of kinds,
// manufacturers and devices, device blocks and what a refused line leaves.
#include <gtest/gtest.h>

#include "devdef/devdef.h"
#include "tests/test_support.h"

namespace {

const char kHeader[] = "DEF_LAYOUT_VERSION = 1 \r\n";

TEST(ReadLoop, VersionLineDecidesWhatIsRead) {
  MessageCapture boxes;
  {
    TestCtrl ctrl("", 5, 0);
    EXPECT_EQ(ReadText(ctrl, ""), 1);
    EXPECT_EQ(ctrl.m_nFileLayout, -1);
    // Without a version line every line is passed over.
    EXPECT_EQ(ReadText(ctrl, "K:\r\n:M\r\nD\r\n{\r\nKVR5DEF: 1 0 0 0 0 : x\r\n}\r\n"), 1);
    EXPECT_EQ(ctrl.getDeviceList().GetCount(), 0);
    EXPECT_EQ(ctrl.m_nFileLayout, -1);
  }
  {
    // No "=", and no number behind it: the search goes on with the next line.
    TestCtrl ctrl("", 5, 0);
    EXPECT_EQ(ReadText(ctrl, "DEF_LAYOUT_VERSION 1\ndef_layout_version = x\n; c\ndef_Layout_Version =\t1\nK:\n"), 1);
    EXPECT_EQ(ctrl.m_nFileLayout, 1);
    EXPECT_EQ(KindNames(ctrl), std::vector<std::string>{"K"});
  }
  {
    // The keyword must open the line; the last line needs its line end.
    TestCtrl ctrl("", 5, 0);
    EXPECT_EQ(ReadText(ctrl, " DEF_LAYOUT_VERSION = 1\nXDEF_LAYOUT_VERSION = 1\nDEF_LAYOUT_VERSION = 1"), 1);
    EXPECT_EQ(ctrl.m_nFileLayout, -1);
  }
  EXPECT_TRUE(boxes.Boxes().empty());
}

TEST(ReadLoop, WrongLayoutAndUnreadableFiles) {
  MessageCapture boxes;
  TestCtrl ctrl("", 5, 0);
  EXPECT_EQ(ReadText(ctrl, "DEF_LAYOUT_VERSION = 7\r\nK:\r\n"), 0);
  ASSERT_EQ(boxes.Boxes().size(), 1u);
  EXPECT_EQ(boxes.Boxes()[0].text, "Wrong Def Version!");
  EXPECT_EQ(boxes.Boxes()[0].caption, "(null)");
  EXPECT_EQ(boxes.Boxes()[0].type, 0x30u);
  EXPECT_EQ(ctrl.getDeviceList().GetCount(), 0);
  EXPECT_EQ(ctrl.m_nFileLayout, 7);
  EXPECT_GT(ctrl.m_FileBuf.GetSize(), 0);  // kept until the next read

  // -1 counts as a version read, and is refused.
  TestCtrl other("", 5, 0);
  EXPECT_EQ(ReadText(other, "DEF_LAYOUT_VERSION = -1\n"), 0);
  EXPECT_EQ(other.m_nFileLayout, -1);
  EXPECT_EQ(boxes.Boxes().size(), 2u);

  // A missing file: 0, and a report only when asked for.
  EXPECT_EQ(other.ReadDefFile("/nonexistent/devdef/file.def", false), 0);
  EXPECT_EQ(boxes.Boxes().size(), 2u);
  EXPECT_EQ(other.ReadDefFile("/nonexistent/devdef/file.def", true), 0);
  ASSERT_EQ(boxes.Boxes().size(), 3u);
  EXPECT_NE(boxes.Boxes()[2].text.find("/nonexistent/devdef/file.def"), std::string::npos);
  // A directory is no file.
  EXPECT_EQ(other.ReadDefFile("/tmp", false), 0);
}

TEST(ReadLoop, SecondReadSkipsTheVersionAndAppends) {
  MessageCapture boxes;
  TestCtrl ctrl("", 5, 0);
  ASSERT_EQ(ReadText(ctrl, std::string(kHeader) + "HOUSING_LIST A, B, C;\r\nK1:\r\n"), 1);
  // The version line of the second file is an ordinary line, even a wrong one.
  ASSERT_EQ(ReadText(ctrl, "DEF_LAYOUT_VERSION = 7\r\nHOUSING_LIST D, E;\r\nK2:\r\n"), 1);
  EXPECT_TRUE(boxes.Boxes().empty());
  EXPECT_EQ(KindNames(ctrl), (std::vector<std::string>{"K1", "K2"}));
  // Header lists are recognised only ahead of the first kind of a read.
  EXPECT_EQ(Names(DEVICE_ITEM::m_PackageList), (std::vector<std::string>{"A", "B", "C", "D", "E"}));
  EXPECT_EQ(ctrl.m_FileBuf.GetSize(), 0);
}

TEST(ReadLoop, KindsManufacturersAndDevices) {
  TestCtrl ctrl("", 5, 0);
  const std::string text = std::string(kHeader) +
                           ":Orphan\r\n"          // no kind yet: no manufacturer
                           "First kind:\r\n"      // before any manufacturer a kind may hold blanks
                           ":Big_Maker rest\r\n"  // the name ends at the blank
                           "Dev_One\r\n{\r\n}\r\n"
                           "\"Quoted:\r\n"        // a quoted line makes a kind, never a device
                           "Second:\r\n"
                           "Dev_Two {\r\n}\r\n"   // goes to the last manufacturer read
                           ":\r\n"                // a manufacturer with an empty name
                           "\xB0Marked\r\n{\r\n}\r\n"
                           "\xDF\xB0Other\r\n{\r\n}\r\n"
                           " \r\n{\r\n}\r\n"      // a leading blank: a device with an empty name
                           "A b:\r\n";            // with a manufacturer current: a device "A"
  ASSERT_EQ(ReadText(ctrl, text), 1);
  EXPECT_EQ(KindNames(ctrl), (std::vector<std::string>{"First kind", "\"Quoted", "Second"}));
  POSITION kindPos = ctrl.getDeviceList().GetHeadPosition();
  TAG_KIND_OF_DEVICE& first = ctrl.getDeviceList().GetNext(kindPos);
  TAG_KIND_OF_DEVICE& quoted = ctrl.getDeviceList().GetNext(kindPos);
  const POSITION secondPos = kindPos;
  TAG_KIND_OF_DEVICE& second = ctrl.getDeviceList().GetNext(kindPos);
  EXPECT_EQ(ManufNames(first), std::vector<std::string>{"Big Maker"});
  EXPECT_EQ(quoted.m_pManufList, nullptr);
  EXPECT_EQ(ManufNames(second), std::vector<std::string>{""});

  std::vector<std::string> names;
  for (DEVICE_ITEM* device : AllDevices(ctrl)) names.push_back(device->GetDeviceName());
  EXPECT_EQ(names, (std::vector<std::string>{"Dev One", "Dev Two", "Marked", "\xB0Other", "", "A"}));

  DEVICE_ITEM* two = DeviceNamed(ctrl, "Dev Two");
  ASSERT_NE(two, nullptr);
  EXPECT_EQ(two->m_KindPos, secondPos);  // the new kind, under the old manufacturer
  using ManufList = CList<TAG_DEVICE_MANUF, TAG_DEVICE_MANUF&>;
  EXPECT_EQ(ManufList::GetAtPosition(two->m_ManufPos).m_Name, "Big Maker");
  EXPECT_EQ(DeviceNamed(ctrl, "Marked")->m_DeviceFlags, 1u);
  EXPECT_EQ(DeviceNamed(ctrl, "\xB0Other")->m_DeviceFlags, 2u);
  EXPECT_EQ(DeviceNamed(ctrl, "Dev One")->m_DeviceFlags, 0u);
}

TEST(ReadLoop, EqualNamesStaySeparateEntries) {
  TestCtrl ctrl("", 5, 0);
  ASSERT_EQ(ReadText(ctrl, std::string(kHeader) + "K:\n:M\n:M\nK:\n"), 1);
  EXPECT_EQ(KindNames(ctrl), (std::vector<std::string>{"K", "K"}));
  EXPECT_EQ(ManufNames(ctrl.getDeviceList().GetHead()), (std::vector<std::string>{"M", "M"}));
}

TEST(ReadLoop, DeviceBlocks) {
  TestCtrl ctrl("", 5, 0);
  const std::string text = std::string(kHeader) +
                           "K:\n:M\n"
                           "D1 ; a comment ahead of the brace\n"
                           "   ; only a comment\n"
                           "\t{ rest of the line is ignored\n"
                           "; comment\n"
                           "  KVR5DEF: 1 0 0 0 0 : a/b ; cut here\n"
                           "} also ignored\n"
                           "D2\n";
  ASSERT_EQ(ReadText(ctrl, text), 1);
  DEVICE_ITEM* d1 = DeviceNamed(ctrl, "D1");
  ASSERT_NE(d1, nullptr);
  ASSERT_EQ(d1->m_DefArray.GetSize(), 1);
  EXPECT_EQ(d1->m_DefArray[0].m_DefLine, " a/b");
  // The block of D2 is cut off by the end of the file: the device stays.
  ASSERT_NE(DeviceNamed(ctrl, "D2"), nullptr);
}

TEST(ReadLoop, RefusedLineEndsTheBlock) {
  for (const char* eol : {"\n", "\r\n"}) {
    SCOPED_TRACE(eol[0] == '\r' ? "CR LF" : "LF");
    TestCtrl ctrl("", 5, 0);
    std::string text = std::string("DEF_LAYOUT_VERSION = 1") + eol + "K:" + eol + ":M" + eol + "D" + eol + "{" + eol +
                       "KVR3DEF: 1 0 0 0 5 : kept" + eol + "KVR9DEF: refused" + eol +
                       "KVR3DEF: 2 0 0 0 5 : dropped line" + eol + "KVR4DEF: 3 0 0 0 5 : becomes a kind" + eol + "}" +
                       eol;
    ASSERT_EQ(ReadText(ctrl, text), 1);
    EXPECT_EQ(KindNames(ctrl), (std::vector<std::string>{"K", "KVR4DEF"}));
    std::vector<DEVICE_ITEM*> devices = AllDevices(ctrl);
    ASSERT_EQ(devices.size(), 2u);
    EXPECT_STREQ(devices[0]->GetDeviceName(), "D");
    ASSERT_EQ(devices[0]->m_DefArray.GetSize(), 1);
    EXPECT_EQ(devices[0]->m_DefArray[0].m_DefID, 1u);
    EXPECT_STREQ(devices[1]->GetDeviceName(), "}");
    EXPECT_EQ(devices[1]->m_DefArray.GetSize(), 0);
  }
}

TEST(ReadLoop, EndOfBufferInEveryConstruct) {
  MessageCapture boxes;
  // Every prefix of a file reads to its end with result 1 and never reads
  // past the buffer (the sanitizer build checks the latter).
  const std::string text = std::string(kHeader) +
                           "HOUSING_LIST P0, P1;\r\nADAPTER_LIST A0;\r\nMODUL_LIST M0;\r\n"
                           "Kind_A:\r\n:Maker\r\nDev\r\n{\r\nKVR3DEF: 1 0 0 0,1 2 : t\r\n"
                           "KVR5DEF: 2 1 0 0 3 : u\r\n}\r\n\xB0Next {\r\n}\r\n";
  for (size_t cut = 0; cut <= text.size(); ++cut) {
    TestCtrl ctrl("", 5, 1);
    ASSERT_EQ(ReadText(ctrl, text.substr(0, cut)), 1) << "cut at " << cut;
  }
  EXPECT_TRUE(boxes.Boxes().empty());

  TestCtrl ctrl("", 5, 0);
  ASSERT_EQ(ReadText(ctrl, std::string(kHeader) + "K:\n:M\nD\n{\nKVR5DEF: 1 0 0 0 0 : a\nKVR5DEF: 2 0 0 0 0 : b"), 1);
  // The last line has no line end and is not read.
  ASSERT_EQ(AllDevices(ctrl).size(), 1u);
  EXPECT_EQ(AllDevices(ctrl)[0]->m_DefArray.GetSize(), 1);

  TestCtrl last("", 5, 0);
  ASSERT_EQ(ReadText(last, std::string(kHeader) + "K:\n:M\nD"), 1);
  EXPECT_TRUE(AllDevices(last).empty());
  TestCtrl kind("", 5, 0);
  ASSERT_EQ(ReadText(kind, std::string(kHeader) + "K:"), 1);
  EXPECT_EQ(kind.getDeviceList().GetCount(), 0);
  TestCtrl manuf("", 5, 0);
  ASSERT_EQ(ReadText(manuf, std::string(kHeader) + "K:\n:Mak"), 1);
  ASSERT_EQ(manuf.getDeviceList().GetCount(), 1);
  ASSERT_NE(manuf.getDeviceList().GetHead().m_pManufList, nullptr);
  EXPECT_EQ(manuf.getDeviceList().GetHead().m_pManufList->GetCount(), 0);
}

TEST(ReadLoop, BytesOfAnyValueAreHarmless) {
  std::string text = std::string(kHeader) + "K:\n:M\n";
  for (int i = 0; i < 256; ++i) {
    text += static_cast<char>(i);
    text += static_cast<char>(255 - i);
    if (i % 16 == 0) text += std::string("\n{\nKVR5DEF: 1 2 3 4 5 :\0x\n}\n", 28);
  }
  TestCtrl ctrl("", 5, 1);
  MessageCapture boxes;
  EXPECT_EQ(ReadText(ctrl, text), 1);
  EXPECT_EQ(ReadText(ctrl, std::string(4096, '\0')), 1);
}

TEST(ReadLoop, RemoveDefListsEmptiesEverythingForEveryController) {
  const std::string text = std::string(kHeader) +
                           "HOUSING_LIST P;\nADAPTER_LIST A;\nMODUL_LIST M;\n"
                           "K:\n:M\nD\n{\nKVR5DEF: 41 0 0 0 0 : t\n}\nEmpty:\n";
  TestCtrl first("", 5, 1);
  ASSERT_EQ(ReadText(first, text), 1);
  {
    TestCtrl second("", 5, 0);
    EXPECT_EQ(DEVICE_ITEM::m_PackageList.GetSize(), 1);
  }  // destroying any controller empties the class-wide lists
  EXPECT_EQ(DEVICE_ITEM::m_PackageList.GetSize(), 0);
  EXPECT_EQ(AllDevices(first).size(), 1u);
  int selected = 0;
  first.SetSelectedDeviceList(41, selected);
  first.FoundDeviceList_addItem(AllDevices(first)[0]->m_DefArray[0]);

  first.RemoveDefLists();
  first.RemoveDefLists();
  EXPECT_EQ(first.getDeviceList().GetCount(), 0);
  EXPECT_EQ(first.getSelectedDeviceList().GetCount(), 0);
  EXPECT_EQ(first.FoundDeviceList_getCount(), 0);
  EXPECT_EQ(first.getNextDeviceID(), 42);
  EXPECT_EQ(first.m_nFileLayout, 1);
  // The version is not read again after RemoveDefLists.
  EXPECT_EQ(ReadText(first, "DEF_LAYOUT_VERSION = 7\nK:\n"), 1);
  EXPECT_EQ(KindNames(first), std::vector<std::string>{"K"});
}

TEST(ReadLoop, ControllersOfEachLayoutReadOnlyTheirOwn) {
  MessageCapture boxes;
  Exposed<KCDeviceDefCtrlV2> v2("", 5, 0);
  Exposed<KCDeviceDefCtrlV3> v3("", 5, 0, nullptr);
  EXPECT_EQ(v2.m_nLayout, 2);
  EXPECT_EQ(v3.m_nLayout, 7);
  EXPECT_EQ(ReadText(v2, kHeader), 0);
  EXPECT_EQ(ReadText(v3, "DEF_LAYOUT_VERSION = 2\n"), 0);
  EXPECT_EQ(ReadText(v3, "DEF_LAYOUT_VERSION = 7\n"), 1);  // already holds a layout: not checked again
  EXPECT_EQ(boxes.Boxes().size(), 2u);
}

}  // namespace
