// Name lists, adapter package pieces and the package name of a definition.
#include <gtest/gtest.h>

#include "devdef/devdef.h"
#include "tests/test_support.h"

namespace {

TEST(NameLists, IndexesOutsideTheListGiveNull) {
  TestCtrl ctrl("", 5, 0);
  ASSERT_EQ(ReadText(ctrl, "DEF_LAYOUT_VERSION = 1\nHOUSING_LIST P0,,P1;\nADAPTER_LIST A0;\nMODUL_LIST M0;\n"), 1);
  EXPECT_STREQ(DEVICE_ITEM::GetPackageName(1), "P1");
  EXPECT_EQ(DEVICE_ITEM::GetPackageName(2), nullptr);
  EXPECT_EQ(DEVICE_ITEM::GetPackageName(-1), nullptr);
  EXPECT_STREQ(DEVICE_ITEM::GetAdapterName(0), "A0");
  EXPECT_EQ(DEVICE_ITEM::GetAdapterName(1), nullptr);
  EXPECT_STREQ(DEVICE_ITEM::GetModulName(0), "M0");
  DEVICE_ITEM::m_ModulList.SetAtGrow(1, "");
  EXPECT_STREQ(DEVICE_ITEM::GetModulName(1), "");  // an empty name is no null
  ctrl.RemoveDefLists();
  EXPECT_EQ(DEVICE_ITEM::GetPackageName(0), nullptr);
}

TEST(NameLists, AdaptPackage) {
  DEVICE_ITEM device;
  const struct {
    const char* name;
    const char* package;
  } cases[] = {{"a_b_c/d", "c"}, {"a_b_c/d/e", "c"}, {"a_b_c_d/e", "c_d"}, {"_b_c/", "c"},
               {"a_b_/d", ""},   {"a_b_c", ""},      {"a_b/c", ""},         {"abc/d", ""}};
  for (const auto& c : cases) EXPECT_EQ(device.GetAdaptPackage(c.name), c.package) << c.name;
}

TEST(PackageNames, StructuredNames) {
  const struct {
    const char* name;
    const char* package;
    const char* module;
  } cases[] = {
      {"x/y/a#b#c#d", "b", "@(MODULE = c)"}, {"a#b#c#d", "b", "@(MODULE = c)"}, {"a#b#c", "b", ""},
      {"a#b##", "b", "@(MODULE = )"},        {"a##c#", "", "@(MODULE = c)"},    {"a#b", "", ""},
      {"abc", "", ""},                       {"a#b/c#d#e", "d", ""},            {"abc/", "", ""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(DEVICE_ITEM::GetK5PackageName(c.name), c.package) << c.name;
    EXPECT_EQ(DEVICE_ITEM::GetK5ModuleName(c.name), c.module) << c.name;
  }
}

TEST(PackageNames, GenerationDecidesTheSource) {
  TestCtrl ctrl("", 5, 0);
  ASSERT_EQ(ReadText(ctrl, "DEF_LAYOUT_VERSION = 1\nHOUSING_LIST P0, P1, P2;\n"), 1);
  DEVICE_ITEM device;
  const struct {
    int generation;
    const char* xname;
    int package;  // -1: no package number
    const char* expected;
  } cases[] = {
      {10, "x/a#b#c#d", 0, "b@(MODULE = c)"}, {9, "", 0, ""},          {12, "a#b#c", 0, "b"},
      {5, "x/a#b#c#d", 0, "b"},               {5, "", 2, "P2"},         {5, "", 3, "##3"},
      {5, "", -1, "No PackageId"},            {3, "a#b#c#d", 1, "P1"},  {4, "", 65535, "##65535"},
      {11, "a#b#c#d", 0, "b@(MODULE = c)"},
  };
  for (const auto& c : cases) {
    DEVICE_KVRXDEF_ITEM def;
    def.m_DefID = 1;
    def.m_KvrType = static_cast<BYTE>(c.generation);
    def.m_XDefName = c.xname;
    if (c.package >= 0) def.m_PackageIds.Add(static_cast<WORD>(c.package));
    device.AddDevice(c.generation, def);
  }
  for (int i = 0; i < static_cast<int>(sizeof cases / sizeof cases[0]); ++i) {
    const char* package = device.GetDevicePackage(i);
    ASSERT_NE(package, nullptr) << i;
    EXPECT_STREQ(package, cases[i].expected) << i;
  }
  // No definition at the index: null, and the shared text stays.
  const char* last = device.GetDevicePackage(0);
  EXPECT_EQ(device.GetDevicePackage(-1), nullptr);
  EXPECT_EQ(device.GetDevicePackage(device.GetNumDevDefs()), nullptr);
  EXPECT_STREQ(last, "b@(MODULE = c)");
  // One result string for every device.
  DEVICE_ITEM other;
  DEVICE_KVRXDEF_ITEM def;
  def.m_KvrType = 3;
  def.m_PackageIds.Add(0);
  other.AddDevice(3, def);
  EXPECT_EQ(other.GetDevicePackage(0), last);
  EXPECT_STREQ(last, "P0");
}

}  // namespace
