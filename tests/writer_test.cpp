// The writers, the conversion and the device list export, byte for byte.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <sstream>

#include "devdef/devdef.h"
#include "devdef/writer/format_scanner.h"
#include "tests/test_support.h"

namespace {

std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

// A definition built by hand, as a host could add it.
DEVICE_KVRXDEF_ITEM Def(int generation, int id, std::vector<int> adapters, const char* text) {
  DEVICE_KVRXDEF_ITEM def;
  def.m_KvrType = static_cast<BYTE>(generation);
  def.m_DefID = static_cast<DWORD>(id);
  def.m_PackageIds.Add(4);
  for (int a : adapters) def.m_AdapterIds.Add(static_cast<WORD>(a));
  def.m_DefLine = text;
  return def;
}

const char kEmptyHeader[] = "HOUSING_LIST ;\r\nADAPTER_LIST ;\r\nMODUL_LIST ;\r\n\r\n";

TEST(Writer, Layout1FileRoundTrip) {
  const std::string file =
      "DEF_LAYOUT_VERSION = 1 \r\n"
      "HOUSING_LIST DIP8, PLCC32;\r\n"
      "ADAPTER_LIST A0;\r\n"
      "MODUL_LIST ;\r\n"
      "\r\n"
      "Kind:\r\n\r\n"
      ":Maker\r\n\r\n"
      "Dev\r\n{\r\n"
      "KVR3DEF: 120 4 0 7,9 12 : ABC\r\n"
      "KVR5DEF: -5 65535 -1 0 -12 : \r\n"
      "}\r\n\r\n"
      "Empty\r\n{\r\n}\r\n\r\n"
      "Lonely:\r\n\r\n";
  TestCtrl ctrl("", 5, 0);
  ASSERT_EQ(ReadText(ctrl, file), 1);
  int result = 0;
  const std::string once = Written(ctrl, false, &result);
  EXPECT_EQ(result, 1);
  // The reader keeps the blank in front of each text, so each round trip
  // adds one (an empty text has none, the block reader trims the line); the
  // hidden definition is written like the others.
  std::string expected = file;
  expected.replace(expected.find(": ABC"), 5, ":  ABC");
  EXPECT_EQ(once, expected);
  EXPECT_EQ(Written(ctrl), once);  // writing changes nothing

  ctrl.RemoveDefLists();  // the name lists are shared: start them afresh
  TestCtrl again("", 5, 0);
  ASSERT_EQ(ReadText(again, once), 1);
  std::string twice = Written(again);
  twice.replace(twice.find(":   ABC"), 7, ":  ABC");
  EXPECT_EQ(twice, once);
}

TEST(Writer, EdgesOfTheLayout1Line) {
  KCDeviceDefCtrlV2 ctrl("", 5, 0);
  EXPECT_EQ(Written(ctrl), "DEF_LAYOUT_VERSION = 2 \r\n" + std::string(kEmptyHeader));
  CMemFile none;
  CArchive noFile(nullptr, CArchive::store);
  EXPECT_EQ(ctrl.WriteDefFile(noFile), 0);

  ASSERT_EQ(ReadText(ctrl, "DEF_LAYOUT_VERSION = 2\nK:\n:M\nD\n{\n}\n"), 1);
  DEVICE_ITEM* device = DeviceNamed(ctrl, "D");
  DEVICE_KVRXDEF_ITEM noAdapters = Def(4, 1, {}, "t");
  DEVICE_KVRXDEF_ITEM otherGeneration = Def(9, 2, {1}, "");
  DEVICE_KVRXDEF_ITEM noPackage = Def(3, 3, {1, 2}, "x");
  noPackage.m_PackageIds.SetSize(0);
  device->AddDevice(5, noAdapters);
  device->AddDevice(5, otherGeneration);
  device->AddDevice(5, noPackage);
  const std::string text = Written(ctrl);
  EXPECT_NE(text.find("D\r\n{\r\nKVR4DEF: 1 4 0  0 : t\r\n2 4 0 1 0 : \r\nKVR3DEF: 3 0 0 1,2 0 : x\r\n}\r\n\r\n"),
            std::string::npos)
      << text;
}

TEST(Writer, Layout7Line) {
  KCDeviceDefCtrlV3 ctrl("", 4, 0, nullptr);
  ASSERT_EQ(ReadText(ctrl, "DEF_LAYOUT_VERSION = 7\nHOUSING_LIST { P0, P1 }\nK:\n:M\n\xB0" "D\n{\n}\n"), 1);
  DEVICE_ITEM* device = DeviceNamed(ctrl, "D");
  ASSERT_NE(device, nullptr);
  DEVICE_KVRXDEF_ITEM def = Def(4, 120, {7, 9}, "ABC");
  for (int i = 0; i < 11; ++i) def.m_DefValues[i] = static_cast<DWORD>(i + 1);
  def.m_DefValues[0] = 1234567890;
  def.m_DefValues[4] = 0xABCDEF0;
  def.m_DefValues[6] = 0x80000000u;  // the most negative int
  def.m_PackageIds.Add(5);  // only the first package number is written
  device->AddDevice(4, def);
  DEVICE_KVRXDEF_ITEM negative = Def(5, 1, {}, "");
  for (int i = 0; i < 11; ++i) negative.m_DefValues[i] = 0xFFFFFFFFu;
  device->AddDevice(4, negative);
  device->m_HousingIds.Add(3);
  EXPECT_EQ(Written(ctrl),
            "DEF_LAYOUT_VERSION = 7 \r\nHOUSING_LIST P0, P1;\r\nADAPTER_LIST ;\r\nMODUL_LIST ;\r\n\r\n"
            "K:\r\n\r\n:M\r\n\r\nD\r\n{\r\n"
            "KVR4DEF: 120 4 0 7,9 1234567890 2 3 4 ABCDEF0 6 -2147483648 8 9 10  11 : ABC\r\n"
            "KVR5DEF: 1 4 0  -1 -1 -1 -1 FFFFFFFF FFFFFFFF -1 -1 FFFFFFFF -1  -1 : \r\n"
            "}\r\n\r\n");
}

TEST(Writer, Conversion) {
  KCDeviceDefCtrlV2 ctrl("", 5, 0);
  ASSERT_EQ(ReadText(ctrl,
                     "DEF_LAYOUT_VERSION = 2\nK:\n:M\nD\n{\n"
                     "KVR3DEF: 120 4 0 7,9 1 2 3 : 10 20 30 40 50 6F 70 ABC\n"
                     "KVR5DEF: 121 4 0 7 1 2 3 :4294967295 65537 255 0 0 FFFFFFFF 1\n"
                     "}\nE\n{\nKVR4DEF: 122 4 0 7 1 2 3 : 1 2 3 4 5 6\nKVR4DEF: 123 4 0 7 1 2 3 : 1 2 3 4 5 6 7\n}\n"),
            1);
  int result = -1;
  const std::string text = Written(ctrl, true, &result);
  EXPECT_EQ(result, 0);  // the text of 122 has six numbers only
  EXPECT_EQ(text,
            "DEF_LAYOUT_VERSION = 3 \r\nHOUSING_LIST ;\r\nADAPTER_LIST ;\r\nMODUL_LIST ;\r\n\r\n"
            "K:\r\n\r\n:M\r\n\r\nD\r\n{\r\n"
            "KVR3DEF: 120 4 0 7,9 1 2 3  10 20 1E 40 50 6F 70 0 : ABC\r\n"
            "KVR5DEF: 121 4 0 7 1 2 3  -1 1 FF 0 0 FFFFFFFF 1 0 : \r\n"
            "}\r\n\r\nE\r\n{\r\nKVR4DEF: 122 4 0 7 1 2 3 ");
  EXPECT_EQ(DeviceNamed(ctrl, "D")->m_DefArray[0].m_DefLine, " 10 20 30 40 50 6F 70 ABC");

  KCDeviceDefCtrl layout1("", 5, 0);
  CMemFile file;
  CArchive ar(&file, CArchive::store);
  EXPECT_EQ(layout1.ConvertDefFileToVersion3(ar), 0);
  EXPECT_EQ(file.GetLength(), 0u);
}

// Found by the round-trip fuzzer: the file spells a blank in a name "_", the
// reader holds a blank, and the writer puts the held name out, so such a
// name does not read back whole: "D 1" reads as the device "D" whose block
// fails on "1", and the "}" left over is taken for a device.
TEST(Writer, NamesWithBlanksAreWrittenAsHeld) {
  TestCtrl ctrl("", 5, 0);
  ASSERT_EQ(ReadText(ctrl, "DEF_LAYOUT_VERSION = 1\nK_1:\n:M_1\nD_1\n{\n}\n"), 1);
  const std::string once = Written(ctrl);
  EXPECT_NE(once.find("K 1:\r\n\r\n:M 1\r\n\r\nD 1\r\n{\r\n}\r\n"), std::string::npos) << once;
  ctrl.RemoveDefLists();
  TestCtrl again("", 5, 0);
  ASSERT_EQ(ReadText(again, once), 1);
  std::vector<std::string> names;
  for (DEVICE_ITEM* device : AllDevices(again)) names.push_back(device->GetDeviceName());
  EXPECT_EQ(names, (std::vector<std::string>{"D", "}"}));
  again.RemoveDefLists();
}

TEST(DeviceListExport, RowsAndFailures) {
  char dir[] = "/tmp/devdef-export-XXXXXX";
  ASSERT_NE(mkdtemp(dir), nullptr);
  const std::string prefix = std::string(dir) + "/";
  KCDeviceDefCtrlV3 ctrl(prefix.c_str(), 5, 0, nullptr);
  ctrl.WriteK4DeviceList();
  EXPECT_EQ(ReadFile(prefix + "k4devicelist.txt"), "KOVIR32 K4 Device List \r\n");

  const std::string tail = " 0 0 0 0 0 0 0 0 0 0 0 :";
  ASSERT_EQ(ReadText(ctrl, "DEF_LAYOUT_VERSION = 7\nADAPTER_LIST { P Q }\nEmpty:\nK:\n:Nobody\n:M\n"
                           "ABC\n{\nKVR4DEF: 1 0 0 0,9" + tail + "\nKVR5DEF: 2 0 0 1" + tail + "\n}\n"
                           "DEF\n{\nKVR3DEF: 3 0 0 1" + tail + "\n}\n"),
            1);
  ctrl.WriteK4DeviceList();
  ctrl.WriteK4DeviceList();  // the second call empties the first one's file
  EXPECT_EQ(ReadFile(prefix + "k4devicelist.txt"),
            "KOVIR32 K4 Device List \r\n1:\tABC\r\n\t\tP\r\n\t\t\r\n2:\tDEF\r\n");
  std::remove((prefix + "k4devicelist.txt").c_str());

  // A path that cannot be opened: nothing is written, nothing escapes.
  KCDeviceDefCtrlV3 lost("/nonexistent/devdef/", 5, 0, nullptr);
  lost.WriteK4DeviceList();
  std::remove(dir);
}

TEST(FormatScanner, Conversions) {
  unsigned short count = 0;
  BYTE b = 0;
  WORD w = 0;
  DWORD l = 0;
  EXPECT_NE(ScanFormatted(&count, "300", "%bd", &b), nullptr);
  EXPECT_EQ(b, 44);
  ScanFormatted(&count, "70000 70000", "%d %ld", &w, &l);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(w, 70000 & 0xFFFF);
  EXPECT_EQ(l, 70000u);
  ScanFormatted(&count, "0x1F", "%d", &w);
  EXPECT_EQ(w, 31);
  EXPECT_EQ(ScanFormatted(&count, "0x1F", "%x", &w), nullptr);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(ScanFormatted(&count, "-0x10", "%d", &w), nullptr);
  ScanFormatted(&count, "1F", "%x", &w);
  EXPECT_EQ(w, 31);
  ScanFormatted(&count, "0xfe", "%hd", &w);
  EXPECT_EQ(w, 254);
  const char* seven = "7";
  EXPECT_EQ(ScanFormatted(&count, seven, "%q"), seven);  // no conversion: "%" must match itself
  EXPECT_EQ(count, 65535);
  EXPECT_EQ(ScanFormatted(&count, "1F", "%d", &w), nullptr);
  EXPECT_EQ(ScanFormatted(&count, "12,5", "%d", &w), nullptr);
  EXPECT_EQ(ScanFormatted(&count, "12\n", "%d", &w), nullptr);  // a line end does not close a token
  EXPECT_EQ(ScanFormatted(&count, "1\t2", "%d %d", &w, &w), nullptr);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(ScanFormatted(&count, "-5", "%ud", &w), nullptr);
  EXPECT_EQ(ScanFormatted(&count, "+5", "%uD", &w), nullptr);
  ScanFormatted(&count, "-5", "%d", &w);
  EXPECT_EQ(w, 0xFFFB);
  ScanFormatted(&count, "-1", "%8.2ld", &l);
  EXPECT_EQ(l, 0xFFFFFFFFu);
}

TEST(FormatScanner, CountsPositionsAndOtherConversions) {
  unsigned short count = 0;
  WORD a = 0;
  WORD b = 0;
  const char* text = "1 2  rest";
  EXPECT_EQ(ScanFormatted(&count, text, "%d%d", &a, &b), text + 5);  // blanks behind are passed
  EXPECT_EQ(count, 2);
  text = "1";
  EXPECT_EQ(ScanFormatted(&count, text, "%d %d", &a, &b), text + 1);
  EXPECT_EQ(count, 65535);  // the text ended first
  EXPECT_NE(ScanFormatted(&count, "", "%d", &a), nullptr);
  EXPECT_EQ(count, 65535);
  ScanFormatted(&count, "", "   ");
  EXPECT_EQ(count, 0);
  text = "ab";
  EXPECT_EQ(ScanFormatted(&count, text, "ax"), text + 1);
  EXPECT_EQ(count, 65535);

  char c = 0;
  char word[16] = "unchanged";
  ScanFormatted(&count, "  x", "%c", &c);
  EXPECT_EQ(c, 'x');
  text = "\tab";
  EXPECT_EQ(ScanFormatted(&count, text, "%s", word), text);
  EXPECT_EQ(count, 1);
  EXPECT_STREQ(word, "");
  ScanFormatted(&count, "w\rx y", "%s", word);
  EXPECT_STREQ(word, "w\rx");  // a CR does not end a word
  ScanFormatted(&count, "%5", "%%d", &a);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(a, 5);

  float f = 1.0f;
  ScanFormatted(&count, "-3.25", "%5.2f", &f);
  EXPECT_FLOAT_EQ(f, -3.25f);
  ScanFormatted(&count, ".", "%f", &f);
  EXPECT_FLOAT_EQ(f, 0.0f);
  EXPECT_EQ(ScanFormatted(&count, "1.2.3", "%f", &f), nullptr);
  EXPECT_EQ(ScanFormatted(&count, std::string(256, '1').c_str(), "%f", &f), nullptr);
  EXPECT_EQ(ScanFormatted(&count, "-5", "%uf", &f), nullptr);
}

}  // namespace
