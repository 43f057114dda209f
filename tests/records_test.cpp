// Definitions and devices: copies, hidden bits and visible indexes.
#include <gtest/gtest.h>

#include <string>
#include <vector>

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

TEST(Records, DefinitionValidityAndHiddenBit) {
  DEVICE_KVRXDEF_ITEM def;
  EXPECT_EQ(def.Valid(), 0);
  EXPECT_FALSE(def.IsHidden());
  def.m_XDefName = "name";
  EXPECT_EQ(def.Valid(), 1);
  def.m_XDefName.Empty();
  def.m_DefID = 3;
  EXPECT_EQ(def.Valid(), 1);

  def.m_KvrType = 4;
  def.m_TypeState = 0x01;  // bits the hidden bit shares its byte with stay
  def.m_TypeHigh = 0x5A5A;
  def.RefreshKvrType(5);
  EXPECT_EQ(def.m_TypeState, 0x81);
  def.RefreshKvrType(4);
  EXPECT_EQ(def.m_TypeState, 0x01);
  EXPECT_EQ(def.m_KvrType, 4);
  EXPECT_EQ(def.m_TypeHigh, 0x5A5A);
  for (int other : {4 + 256, 4 - 256, -1, 0}) {
    def.RefreshKvrType(4);
    def.RefreshKvrType(other);  // the whole int is compared, not its low byte
    EXPECT_TRUE(def.IsHidden()) << other;
    EXPECT_EQ(def.m_KvrType, 4);
  }
}

TEST(Records, DefinitionCopiesAreWholeAndIndependent) {
  DEVICE_ITEM owner;
  DEVICE_KVRXDEF_ITEM five;
  for (WORD a = 0; a < 5; ++a) five.m_AdapterIds.Add(a);
  five.m_XDefName = "old";
  DEVICE_KVRXDEF_ITEM two = Definition(5, 77);
  two.m_AdapterIds.Add(7);
  two.m_AdapterIds.Add(8);
  two.m_PackageIds.Add(3);
  two.m_XDefName = "x/a#b#c#";
  two.m_DefLine = " line";
  two.m_hTree = Tree(1);
  two.m_pDevice = &owner;
  two.m_DefValues[10] = 0xFFFFFFFFu;
  two.RefreshKvrType(3);

  five = two;
  EXPECT_EQ(Words(five.m_AdapterIds), (std::vector<int>{7, 8}));
  EXPECT_EQ(Words(five.m_PackageIds), std::vector<int>{3});
  EXPECT_EQ(five.m_XDefName, "x/a#b#c#");
  EXPECT_EQ(five.m_DefLine, " line");
  EXPECT_EQ(five.m_hTree, Tree(1));
  EXPECT_EQ(five.m_pDevice, &owner);
  EXPECT_TRUE(five.IsHidden());
  EXPECT_EQ(five.m_DefValues[10], 0xFFFFFFFFu);
  two.m_AdapterIds.SetAt(0, 9);
  EXPECT_EQ(five.m_AdapterIds[0], 7);  // independent arrays

  DEVICE_KVRXDEF_ITEM copy(five);
  EXPECT_EQ(copy.m_XDefName, "x/a#b#c#");
  DEVICE_KVRXDEF_ITEM unnamed;
  copy = unnamed;  // an empty name is copied too
  EXPECT_TRUE(copy.m_XDefName.IsEmpty());
  EXPECT_EQ(copy.m_AdapterIds.GetSize(), 0);
}

TEST(Records, DeviceCopiesAndAddDevice) {
  DEVICE_ITEM device;
  device.m_DeviceName = "chip";
  DEVICE_KVRXDEF_ITEM def = Definition(3, 1);
  device.AddDevice(5, def);
  EXPECT_TRUE(def.IsHidden());  // the caller's record changes too
  EXPECT_EQ(def.m_pDevice, &device);
  ASSERT_EQ(device.m_DefArray.GetSize(), 1);
  EXPECT_TRUE(device.m_DefArray[0].IsHidden());
  device.m_HousingIds.Add(4);

  DEVICE_ITEM copy(device);
  ASSERT_EQ(copy.m_DefArray.GetSize(), 1);
  EXPECT_NE(&copy.m_DefArray[0], &device.m_DefArray[0]);
  EXPECT_EQ(copy.m_DefArray[0].m_pDevice, &device);  // still names the original
  EXPECT_EQ(copy.m_DeviceName, "chip");
  EXPECT_EQ(Words(copy.m_HousingIds), std::vector<int>{4});

  // Definitions keep every field while the array grows under them.
  DEVICE_ITEM many;
  for (int i = 0; i < 300; ++i) {
    DEVICE_KVRXDEF_ITEM item = Definition(3 + i % 3, static_cast<DWORD>(1000 + i));
    item.m_AdapterIds.Add(static_cast<WORD>(i));
    item.m_DefLine = std::to_string(i).c_str();
    many.AddDevice(4, item);
  }
  ASSERT_EQ(many.m_DefArray.GetSize(), 300);
  for (int i = 0; i < 300; ++i) {
    const DEVICE_KVRXDEF_ITEM& item = many.m_DefArray[i];
    ASSERT_EQ(item.m_DefID, static_cast<DWORD>(1000 + i));
    ASSERT_EQ(Words(item.m_AdapterIds), std::vector<int>{i});
    ASSERT_EQ(item.m_DefLine, std::to_string(i).c_str());
    ASSERT_EQ(item.IsHidden() != 0, i % 3 != 1);
    ASSERT_EQ(item.m_pDevice, &many);
  }
  EXPECT_EQ(many.GetNumDevDefs(), 100);

  many.m_HousingIds.Add(1);
  many = device;  // assignment replaces, never appends
  ASSERT_EQ(many.m_DefArray.GetSize(), 1);
  EXPECT_EQ(many.m_DefArray[0].m_DefID, 1u);
  EXPECT_EQ(Words(many.m_HousingIds), std::vector<int>{4});
}

TEST(Records, VisibleIndexesOnAnEmptyDevice) {
  DEVICE_ITEM device;
  EXPECT_EQ(device.GetNumDevDefs(), 0);
  for (int index : {-1, 0, 1}) {
    EXPECT_EQ(device.find_by_index(index), nullptr);
    EXPECT_EQ(&device.GetDeviceXItemRef(index), &device.m_EmptyDef);
    EXPECT_EQ(device.GetDeviceID(index), 0);
    EXPECT_EQ(device.GetDeviceHTree(index), nullptr);
    EXPECT_EQ(device.GetDeviceDefLine(index), nullptr);
    device.SetDeviceHTree(index, Tree(1));
  }
  EXPECT_EQ(device.m_EmptyDef.m_hTree, nullptr);  // SetDeviceHTree did nothing
  EXPECT_EQ(device.FindDefID(0), -1);
  EXPECT_EQ(device.FindHTree(nullptr), -1);
  EXPECT_EQ(device.GetDeviceXItem(""), nullptr);
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
  EXPECT_EQ(device.GetNumOfSmallDefs(4), 1);  // hidden ones are counted here
  EXPECT_EQ(device.GetNumOfSmallDefs(6), 3);
  EXPECT_EQ(device.FindDefID(13), -1);  // hidden
  EXPECT_EQ(device.FindDefID(14), 0);
  EXPECT_EQ(device.GetDeviceID(0), 14);
  EXPECT_STREQ(device.GetDeviceDefLine(0), "text");
  EXPECT_EQ(device.GetDeviceHTree(0), nullptr);  // visible, but no tree item yet
  EXPECT_EQ(device.GetDeviceXItemRef(5).Valid(), 0);
  EXPECT_EQ(device.GetDeviceXItem(""), &device.m_DefArray[1]);
  EXPECT_EQ(device.GetDeviceXItem("x"), nullptr);
  device.SetDeviceHTree(0, Tree(2));
  EXPECT_EQ(device.m_DefArray[1].m_hTree, Tree(2));
  EXPECT_EQ(device.FindHTree(Tree(2)), 0);

  // Another generation in force: the third becomes index 0, the second hides.
  EXPECT_EQ(device.RefreshKvrType(5), 5);
  EXPECT_EQ(device.GetDeviceID(0), 15);
  EXPECT_EQ(device.FindHTree(Tree(2)), -1);
  EXPECT_EQ(device.FindDefID(14), -1);

  // Several visible: indexes count visible definitions only; the first match wins.
  DEVICE_ITEM mixed;
  const int generations[] = {4, 3, 4, 4, 4};
  const DWORD ids[] = {1, 2, 0, 3, 3};
  for (int i = 0; i < 5; ++i) {
    DEVICE_KVRXDEF_ITEM def = Definition(generations[i], ids[i]);
    mixed.AddDevice(4, def);
  }
  mixed.SetDeviceHTree(0, Tree(1));
  mixed.m_DefArray[3].m_XDefName = "Named";
  EXPECT_EQ(mixed.GetNumDevDefs(), 4);
  EXPECT_EQ(mixed.FindDefID(3), 2);
  EXPECT_EQ(mixed.find_by_index(2), &mixed.m_DefArray[3]);
  EXPECT_EQ(mixed.GetDeviceID(1), 0);  // a definition with the id 0
  EXPECT_EQ(mixed.FindHTree(nullptr), 1);  // the first visible one without a tree item
  EXPECT_EQ(mixed.GetDeviceXItem("Named"), &mixed.m_DefArray[3]);
  EXPECT_EQ(mixed.GetDeviceXItem("named"), nullptr);  // names match case-sensitively
  EXPECT_EQ(mixed.GetDeviceXItem(""), &mixed.m_DefArray[0]);
  mixed.m_DefArray[1].m_XDefName = "Hidden";
  EXPECT_EQ(mixed.GetDeviceXItem("Hidden"), nullptr);  // hidden ones never match
}

}  // namespace

namespace {

TEST(Records, AppendingAnElementOfTheSameArray) {
  CStringArray names;
  names.Add("first element, long enough to live on the heap");
  names.Add(names[0]);
  names.SetAtGrow(names.GetSize(), static_cast<LPCTSTR>(names[1]));
  ASSERT_EQ(names.GetSize(), 3);
  EXPECT_EQ(names[2], "first element, long enough to live on the heap");

  DEVICE_ITEM device;
  DEVICE_KVRXDEF_ITEM def;
  def.m_KvrType = 4;
  def.m_DefID = 9;
  def.m_DefLine = "a text long enough to live on the heap, not inline";
  device.AddDevice(4, def);
  for (int i = 0; i < 20; ++i) device.AddDevice(4, device.m_DefArray[0]);
  ASSERT_EQ(device.m_DefArray.GetSize(), 21);
  EXPECT_EQ(device.m_DefArray[20].m_DefLine, "a text long enough to live on the heap, not inline");
}

}  // namespace
