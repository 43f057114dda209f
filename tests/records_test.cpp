// Definitions and devices: copies, hidden bits and visible indexes.
#include <gtest/gtest.h>

#include "devdef/devdef.h"
#include "tests/test_support.h"

namespace {

_TREEITEM* Tree(int n) { return reinterpret_cast<_TREEITEM*>(static_cast<uintptr_t>(0x100 + n)); }

DEVICE_KVRXDEF_ITEM Definition(int generation, DWORD id) {
  DEVICE_KVRXDEF_ITEM def;
  def.m_KvrType = static_cast<BYTE>(generation);
  def.m_DefID = id;
  return def;
}

TEST(Records, DefinitionValidityHiddenBitAndCopies) {
  DEVICE_KVRXDEF_ITEM def;
  EXPECT_EQ(def.Valid(), 0);
  def.m_XDefName = "name";
  EXPECT_EQ(def.Valid(), 1);
  def.m_XDefName.Empty();
  def.m_DefID = 3;
  EXPECT_EQ(def.Valid(), 1);

  def.m_KvrType = 4;
  def.RefreshKvrType(5);
  EXPECT_EQ(def.m_TypeState, 0x80);
  def.RefreshKvrType(4);
  EXPECT_EQ(def.m_TypeState, 0);
  EXPECT_EQ(def.m_KvrType, 4);
  def.RefreshKvrType(4 + 256);  // the whole int is compared
  EXPECT_TRUE(def.IsHidden());

  DEVICE_KVRXDEF_ITEM five;
  for (WORD a = 0; a < 5; ++a) five.m_AdapterIds.Add(a);
  DEVICE_KVRXDEF_ITEM two;
  two.m_AdapterIds.Add(7);
  two.m_AdapterIds.Add(8);
  two.m_XDefName = "x/a#b#c#";
  two.m_hTree = Tree(1);
  five = two;
  EXPECT_EQ(Words(five.m_AdapterIds), (std::vector<int>{7, 8}));
  EXPECT_EQ(five.m_XDefName, "x/a#b#c#");
  EXPECT_EQ(five.m_hTree, Tree(1));
  two.m_AdapterIds.SetAt(0, 9);
  EXPECT_EQ(five.m_AdapterIds[0], 7);  // independent arrays
  DEVICE_KVRXDEF_ITEM copy(five);
  EXPECT_EQ(copy.m_XDefName, "x/a#b#c#");
}

TEST(Records, DeviceCopiesAndAddDevice) {
  DEVICE_ITEM device;
  DEVICE_KVRXDEF_ITEM def = Definition(3, 1);
  device.AddDevice(5, def);
  EXPECT_TRUE(def.IsHidden());  // the caller's record changes too
  EXPECT_EQ(def.m_pDevice, &device);
  device.m_HousingIds.Add(4);
  DEVICE_ITEM copy(device);
  ASSERT_EQ(copy.m_DefArray.GetSize(), 1);
  EXPECT_NE(&copy.m_DefArray[0], &device.m_DefArray[0]);
  EXPECT_EQ(copy.m_DefArray[0].m_pDevice, &device);  // still names the original
  EXPECT_EQ(Words(copy.m_HousingIds), std::vector<int>{4});
}

TEST(Records, VisibleIndexesOnAnEmptyDevice) {
  DEVICE_ITEM device;
  EXPECT_EQ(device.GetNumDevDefs(), 0);
  EXPECT_EQ(device.find_by_index(0), nullptr);
  EXPECT_EQ(&device.GetDeviceXItemRef(0), &device.m_EmptyDef);
  EXPECT_EQ(device.GetDeviceID(0), 0);
  EXPECT_EQ(device.GetDeviceHTree(0), nullptr);
  EXPECT_EQ(device.GetDeviceDefLine(0), nullptr);
  EXPECT_EQ(device.FindDefID(0), -1);
  EXPECT_EQ(device.FindHTree(nullptr), -1);
  EXPECT_EQ(device.GetDeviceXItem(""), nullptr);
  device.SetDeviceHTree(0, Tree(1));
  EXPECT_EQ(device.RefreshKvrType(7), 7);
}

TEST(Records, VisibleIndexesSkipHiddenDefinitions) {
  DEVICE_ITEM device;
  for (int generation = 3; generation <= 5; ++generation) {
    DEVICE_KVRXDEF_ITEM def = Definition(generation, static_cast<DWORD>(10 + generation));
    def.m_DefLine = "text";
    device.AddDevice(4, def);
  }
  EXPECT_EQ(device.GetNumDevDefs(), 1);
  EXPECT_EQ(device.find_by_index(0), &device.m_DefArray[1]);
  EXPECT_EQ(device.find_by_index(1), nullptr);
  EXPECT_EQ(device.find_by_index(-1), nullptr);
  EXPECT_EQ(device.GetNumOfSmallDefs(4), 1);
  EXPECT_EQ(device.GetNumOfSmallDefs(6), 3);
  EXPECT_EQ(device.FindDefID(13), -1);  // hidden
  EXPECT_EQ(device.FindDefID(14), 0);
  EXPECT_EQ(device.FindDefID(14 + (1ull << 32)), 0);  // ids are 32-bit values
  EXPECT_STREQ(device.GetDeviceDefLine(0), "text");
  EXPECT_EQ(device.GetDeviceXItemRef(5).Valid(), 0);
  EXPECT_EQ(device.GetDeviceXItem(""), &device.m_DefArray[1]);
  EXPECT_EQ(device.GetDeviceXItem("x"), nullptr);
  EXPECT_EQ(device.FindHTree(nullptr), 0);
  device.SetDeviceHTree(0, Tree(2));
  EXPECT_EQ(device.m_DefArray[1].m_hTree, Tree(2));
  EXPECT_EQ(device.FindHTree(Tree(2)), 0);
  EXPECT_EQ(device.FindHTree(nullptr), -1);

  EXPECT_EQ(device.RefreshKvrType(5), 5);
  EXPECT_EQ(device.GetDeviceID(0), 15);
  EXPECT_EQ(device.FindHTree(Tree(2)), -1);
}

}  // namespace
