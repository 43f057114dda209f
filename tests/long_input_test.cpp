// Inputs far longer than real files hold: one line of 200,000 numbers, one
// device with 20,000 definitions, header and housing lists of 20,000
// entries, lines ended by CR alone. Each is read whole and right. The suite
// also runs under the sanitizers and valgrind, where a read that copies its
// input over and over would not end in the suite's time.
#include <gtest/gtest.h>

#include <string>

#include "devdef/devdef.h"
#include "tests/test_support.h"

namespace {

// "0,1,...": count numbers counting up from first, modulo 65536.
std::string NumberList(int count, int first) {
  std::string list;
  for (int i = 0; i < count; ++i) {
    if (i > 0) list += ',';
    list += std::to_string((first + i) % 65536);
  }
  return list;
}

void ExpectCountingUp(const CWordArray& words, int count, int first) {
  ASSERT_EQ(words.GetSize(), count);
  for (int i = 0; i < count; ++i) {
    if (words[i] != (first + i) % 65536) {
      ADD_FAILURE() << "element " << i << " is " << words[i];
      return;
    }
  }
}

const int kNumbers = 200000;

TEST(LongInputs, OneLineOfNumbers) {
  const std::string adapters = NumberList(kNumbers, 7);
  {
    KCDeviceDefCtrlV3 ctrl("", 5, 1, nullptr);
    ASSERT_EQ(ReadText(ctrl, "DEF_LAYOUT_VERSION = 7\nK:\n:M\nD\n{\nKVR5DEF: 1 " + NumberList(kNumbers, 3) + " 0 " +
                                 adapters + " 1 2 3 4 5 6 7 8 9 10 11 : text\n}\n"),
              1);
    DEVICE_ITEM* device = DeviceNamed(ctrl, "D");
    ASSERT_NE(device, nullptr);
    ASSERT_EQ(device->m_DefArray.GetSize(), 1);
    ExpectCountingUp(device->m_DefArray[0].m_PackageIds, kNumbers, 3);
    ExpectCountingUp(device->m_DefArray[0].m_AdapterIds, kNumbers, 7);
    EXPECT_EQ(device->m_DefArray[0].m_DefValues[10], 0x11u);
    // Only the first package number is written; the adapters go out whole,
    // the last value (read as hexadecimal) in decimal.
    EXPECT_NE(Written(ctrl).find("KVR5DEF: 1 3 0 " + adapters + " 1 2 3 4 5 6 7 8 9 10  17 :  text\r\n"),
              std::string::npos);
    ctrl.RemoveDefLists();
  }
  KCDeviceDefCtrl ctrl("", 5, 1);
  ASSERT_EQ(ReadText(ctrl, "DEF_LAYOUT_VERSION = 1\nK:\n:M\nD\n{\nKVR5DEF: 1 0 0 " + adapters + " 12 : text\n}\n"), 1);
  DEVICE_ITEM* device = DeviceNamed(ctrl, "D");
  ASSERT_NE(device, nullptr);
  ASSERT_EQ(device->m_DefArray.GetSize(), 1);
  ExpectCountingUp(device->m_DefArray[0].m_AdapterIds, kNumbers, 7);
  EXPECT_EQ(device->m_DefArray[0].m_DefValues[2], 12u);
  ctrl.RemoveDefLists();
}

// Past 8192 definitions a device's array keeps its capacity rule on a block
// reserved ahead: every definition keeps its place, its owner and its look-up.
TEST(LongInputs, ManyDefinitionsEntriesAndLinesEndedByCr) {
  const int count = 20000;
  std::string file = "DEF_LAYOUT_VERSION = 7\rHOUSING_LIST {\r";
  for (int i = 0; i < count; ++i) file += "P" + std::to_string(i) + ",\r";
  file += "}\rMODUL_LIST ";
  for (int i = 0; i < count; ++i) file += "M" + std::to_string(i) + ", ";
  file += "last;\rK:\r:M\rD\r{\rDEVICE_HOUSING_LIST: { " + NumberList(count, 0) + " }\r";
  for (int i = 1; i <= count; ++i) file += "KVR4DEF: " + std::to_string(i) + " 0 0 1 0 0 0 0 0 0 0 0 0 0 0 : t\r";
  file += "}\rNext\r{\r}\r";

  KCDeviceDefCtrlV3 ctrl("", 4, 1, nullptr);
  ASSERT_EQ(ReadText(ctrl, file), 1);
  ASSERT_EQ(DEVICE_ITEM::m_PackageList.GetSize(), count);
  EXPECT_EQ(DEVICE_ITEM::m_PackageList[count - 1], "P19999");
  ASSERT_EQ(DEVICE_ITEM::m_ModulList.GetSize(), count + 1);
  EXPECT_EQ(DEVICE_ITEM::m_ModulList[count], "last");
  DEVICE_ITEM* device = DeviceNamed(ctrl, "D");
  ASSERT_NE(device, nullptr);
  ExpectCountingUp(device->m_HousingIds, count, 0);
  ASSERT_EQ(device->GetNumDevDefs(), count);
  for (int i = 0; i < count; ++i) {
    const DEVICE_KVRXDEF_ITEM& def = device->m_DefArray[i];
    if (def.m_DefID != static_cast<DWORD>(i + 1) || def.m_pDevice != device) {
      ADD_FAILURE() << "definition " << i << " has the id " << def.m_DefID;
      break;
    }
  }
  DEVICE_KVRXDEF_ITEM* found = nullptr;
  int index = -1;
  EXPECT_EQ(ctrl.FindDeviceItem(count, nullptr, nullptr, nullptr, &index, nullptr, &found), 1);
  EXPECT_EQ(index, count - 1);
  EXPECT_EQ(found, &device->m_DefArray[count - 1]);
  EXPECT_NE(DeviceNamed(ctrl, "Next"), nullptr);
  ctrl.RemoveDefLists();
}

}  // namespace
