// Look-ups by id and by tree item, and the found and selected lists.
#include <gtest/gtest.h>

#include "devdef/devdef.h"
#include "tests/test_support.h"

namespace {

_TREEITEM* Tree(int n) { return reinterpret_cast<_TREEITEM*>(static_cast<uintptr_t>(0x1000 + n)); }

// Kind A without manufacturers, kind B with an empty manufacturer and one with
// devices; ids 1 to 4 with 2 hidden (generation 3 while 5 is in force), and
// id 4294967295 on the last definition.
const char kCatalogue[] =
    "DEF_LAYOUT_VERSION = 1\n"
    "A:\n"
    "B:\n:Empty\n:Maker\n"
    "D1\n{\nKVR3DEF: 2 0 0 0 0 :hidden\nKVR5DEF: 1 0 0 0 0 :one\nKVR5DEF: 3 0 0 0 0 :three\n}\n"
    "D2\n{\nKVR5DEF: 3 0 0 0 0 :three again\nKVR5DEF: -1 0 0 0 0 :max\n}\n";

class QueryTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(ReadText(ctrl, kCatalogue), 1);
    d1 = DeviceNamed(ctrl, "D1");
    d2 = DeviceNamed(ctrl, "D2");
    ASSERT_NE(d1, nullptr);
    ASSERT_NE(d2, nullptr);
  }
  TestCtrl ctrl{"", 5, 0};
  DEVICE_ITEM* d1 = nullptr;
  DEVICE_ITEM* d2 = nullptr;
};

TEST_F(QueryTest, FindByIdWritesOutputsOnlyOnAHit) {
  POSITION kind = nullptr, manuf = nullptr, device = nullptr;
  int index = -7;
  DEVICE_ITEM* dev = nullptr;
  DEVICE_KVRXDEF_ITEM* def = nullptr;
  ASSERT_EQ(ctrl.FindDeviceItem(3, &kind, &manuf, &device, &index, &dev, &def), 1);
  EXPECT_EQ(dev, d1);  // the first in walk order wins
  EXPECT_EQ(index, 1);  // the hidden definition takes no visible index
  EXPECT_EQ(def, &d1->m_DefArray[2]);
  EXPECT_EQ(ctrl.GetDeviceItem(kind, manuf, device), d1);
  EXPECT_EQ(ctrl.getDeviceList().GetAt(kind).m_Name, "B");

  // The id is a 32-bit value whatever the width of unsigned long.
  ASSERT_EQ(ctrl.FindDeviceItem(-1, nullptr, nullptr, nullptr, &index, &dev, nullptr), 1);
  EXPECT_EQ(dev, d2);
  EXPECT_EQ(index, 1);

  // A hidden id is not found, while FindId sees it; nothing is written.
  POSITION untouched = reinterpret_cast<POSITION>(&index);
  kind = manuf = device = untouched;
  EXPECT_EQ(ctrl.FindDeviceItem(2, &kind, &manuf, &device, &index, &dev, &def), 0);
  EXPECT_EQ(kind, untouched);
  EXPECT_EQ(index, 1);
  EXPECT_EQ(ctrl.FindId(ctrl, 2), 1);
  EXPECT_EQ(ctrl.FindDeviceItem(99, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(ctrl.FindDeviceItem(1, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 1);
}

TEST_F(QueryTest, FindByTreeItemMovesTheCallersPositions) {
  d2->SetDeviceHTree(0, Tree(1));
  POSITION kind = nullptr, manuf = nullptr, device = nullptr;
  int index = -7;
  ASSERT_EQ(ctrl.FindDeviceItem(Tree(1), kind, manuf, device, &index), 1);
  EXPECT_EQ(index, 0);
  EXPECT_EQ(ctrl.GetDeviceItem(kind, manuf, device), d2);
  // A null tree item matches the first visible definition without one.
  ASSERT_EQ(ctrl.FindDeviceItem(nullptr, kind, manuf, device, &index), 1);
  EXPECT_EQ(ctrl.GetDeviceItem(kind, manuf, device), d1);
  EXPECT_EQ(index, 0);

  index = -7;
  EXPECT_EQ(ctrl.FindDeviceItem(Tree(2), kind, manuf, device, &index), 0);
  EXPECT_EQ(kind, nullptr);
  EXPECT_EQ(manuf, nullptr);
  EXPECT_EQ(device, nullptr);
  EXPECT_EQ(index, -7);

  TestCtrl empty("", 5, 0);
  POSITION mark = reinterpret_cast<POSITION>(&index);
  kind = manuf = device = mark;
  EXPECT_EQ(empty.FindDeviceItem(Tree(1), kind, manuf, device, nullptr), 0);
  EXPECT_EQ(kind, nullptr);
  EXPECT_EQ(manuf, mark);
  EXPECT_EQ(device, mark);
}

TEST_F(QueryTest, GetDeviceItemAndNameLookup) {
  POSITION kindA = ctrl.getDeviceList().GetHeadPosition();
  POSITION kind = nullptr, manuf = nullptr, device = nullptr;
  ASSERT_EQ(ctrl.FindDeviceItem(1, &kind, &manuf, &device, nullptr, nullptr, nullptr), 1);
  EXPECT_EQ(ctrl.GetDeviceItem(kindA, manuf, device), nullptr);  // kind A has no manufacturer list
  EXPECT_EQ(ctrl.GetDeviceItem(nullptr, manuf, device), nullptr);
  EXPECT_EQ(ctrl.GetDeviceItem(kind, nullptr, device), nullptr);
  EXPECT_EQ(ctrl.GetDeviceItem(kind, manuf, nullptr), nullptr);
  DEVICE_KVRXDEF_ITEM out;
  EXPECT_EQ(ctrl.FindDeviceItem(CString("D1"), out), 0);
  EXPECT_EQ(out.m_DefID, 0u);
}

TEST_F(QueryTest, SelectedListKeepsTheLastTen) {
  // Ten more devices with ids 100..110 and tree items.
  std::string more = "DEF_LAYOUT_VERSION = 1\nC:\n:M\n";
  for (int id = 100; id <= 110; ++id) more += "E" + std::to_string(id) + "\n{\nKVR5DEF: " + std::to_string(id) + " 0 0 0 0 :x\n}\n";
  ASSERT_EQ(ReadText(ctrl, more), 1);
  for (int id = 100; id <= 110; ++id) DeviceNamed(ctrl, "E" + std::to_string(id))->SetDeviceHTree(0, Tree(id));

  int already = -1;
  EXPECT_EQ(ctrl.SetSelectedDeviceList(2, already), nullptr);  // hidden: not selectable
  EXPECT_EQ(already, 0);
  EXPECT_EQ(ctrl.getSelectedDeviceList().GetCount(), 0);
  for (int id = 100; id <= 109; ++id) {
    EXPECT_EQ(ctrl.SetSelectedDeviceList(id, already), nullptr);
    EXPECT_EQ(already, 0);
  }
  // Selecting the oldest again changes nothing.
  EXPECT_EQ(ctrl.SetSelectedDeviceList(100, already), nullptr);
  EXPECT_EQ(already, 1);
  EXPECT_EQ(ctrl.getSelectedDeviceList().GetCount(), 10);
  // The eleventh pushes out the oldest and gives its tree item back.
  EXPECT_EQ(ctrl.SetSelectedDeviceList(110, already), Tree(100));
  ASSERT_EQ(ctrl.getSelectedDeviceList().GetCount(), 10);
  EXPECT_EQ(ctrl.getSelectedDeviceList().GetHead().m_DefID, 110u);
  EXPECT_EQ(ctrl.getSelectedDeviceList().GetTail().m_DefID, 101u);

  // A copy is independent of the catalogue.
  DeviceNamed(ctrl, "E110")->SetDeviceHTree(0, Tree(999));
  EXPECT_EQ(ctrl.getSelectedDeviceList().GetHead().m_hTree, Tree(110));
}

TEST_F(QueryTest, InitSelectedDeviceListRestoresInListOrder) {
  int ids[11] = {1, 3, 3, 2, 99, -1};
  ctrl.InitSelectedDeviceList(6, ids);
  std::vector<unsigned> order;
  CList<DEVICE_KVRXDEF_ITEM, DEVICE_KVRXDEF_ITEM&>& selected = ctrl.getSelectedDeviceList();
  for (POSITION p = selected.GetHeadPosition(); p != nullptr;) order.push_back(selected.GetNext(p).m_DefID);
  // Repeated, hidden and unknown ids are passed over.
  EXPECT_EQ(order, (std::vector<unsigned>{1, 3, 0xFFFFFFFFu}));
  ctrl.InitSelectedDeviceList(11, ids);
  ctrl.InitSelectedDeviceList(0, nullptr);
  ctrl.InitSelectedDeviceList(-3, nullptr);
  ctrl.InitSelectedDeviceList(2, nullptr);
  EXPECT_EQ(selected.GetCount(), 3);
}

TEST_F(QueryTest, FoundList) {
  DEVICE_KVRXDEF_ITEM empty;
  EXPECT_EQ(ctrl.FoundDeviceList_addItem(empty), -1);
  EXPECT_EQ(ctrl.FoundDeviceList_addItem(d1->m_DefArray[1]), 1);
  EXPECT_EQ(ctrl.FoundDeviceList_addItem(d1->m_DefArray[1]), 2);
  EXPECT_EQ(ctrl.getFoundDeviceList().GetHead().m_pDevice, d1);
  int already = 0;
  ctrl.SetSelectedDeviceList(1, already);
  ctrl.FoundDeviceList_clear();
  EXPECT_EQ(ctrl.FoundDeviceList_getCount(), 0);
  EXPECT_EQ(ctrl.getSelectedDeviceList().GetCount(), 1);
}

}  // namespace
