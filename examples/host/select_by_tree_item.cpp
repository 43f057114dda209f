// A host's tree view and its list of the last selected definitions: each
// visible definition gets a tree item, a click on an item finds its
// definition again, and the selected list says which item dropped out of
// the last ten.
//
//   select_by_tree_item FILE ID...   (each ID: a click on that definition)
#include <devdef/devdef.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

// The host's tree view, cut down to what this sample needs: items with a
// text. The library only stores, copies and compares the item handles.
class TreeView {
 public:
  _TREEITEM* InsertItem(const std::string& text) {
    m_texts.push_back(text);
    return reinterpret_cast<_TREEITEM*>(static_cast<std::uintptr_t>(m_texts.size()));
  }
  const std::string& GetItemText(_TREEITEM* item) const {
    return m_texts[reinterpret_cast<std::uintptr_t>(item) - 1];
  }

 private:
  std::vector<std::string> m_texts;
};

// Gives every visible definition an item "DEVICE ID"; returns the items by
// the id they show, as the rows a user can click.
static std::map<int, _TREEITEM*> FillTree(KCDeviceDefCtrl& ctrl, TreeView& tree) {
  std::map<int, _TREEITEM*> rows;
  CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>& kinds = ctrl.getDeviceList();
  for (POSITION k = kinds.GetHeadPosition(); k != NULL;) {
    TAG_KIND_OF_DEVICE& kind = kinds.GetNext(k);
    if (kind.m_pManufList == NULL) continue;
    for (POSITION m = kind.m_pManufList->GetHeadPosition(); m != NULL;) {
      TAG_DEVICE_MANUF& manuf = kind.m_pManufList->GetNext(m);
      if (manuf.m_pDeviceList == NULL) continue;
      for (POSITION d = manuf.m_pDeviceList->GetHeadPosition(); d != NULL;) {
        DEVICE_ITEM& device = manuf.m_pDeviceList->GetNext(d);
        // Visible indexes count only the definitions of the generation in force.
        for (int i = 0; i < device.GetNumDevDefs(); ++i) {
          const int id = device.GetDeviceID(i);
          _TREEITEM* item = tree.InsertItem(std::string(device.GetDeviceName()) + " " + std::to_string(id));
          device.SetDeviceHTree(i, item);
          rows[id] = item;
        }
      }
    }
  }
  return rows;
}

// A click on an item: its definition found by the item, then selected.
static void Click(KCDeviceDefCtrl& ctrl, const TreeView& tree, _TREEITEM* item) {
  POSITION kindPos = NULL, manufPos = NULL, devicePos = NULL;
  int index = -1;
  if (!ctrl.FindDeviceItem(item, kindPos, manufPos, devicePos, &index)) return;
  DEVICE_ITEM* device = ctrl.GetDeviceItem(kindPos, manufPos, devicePos);
  DEVICE_KVRXDEF_ITEM& def = device->GetDeviceXItemRef(index);
  int alreadySelected = 0;
  _TREEITEM* dropped = ctrl.SetSelectedDeviceList(static_cast<int>(def.m_DefID), alreadySelected);
  if (alreadySelected) {
    std::printf("%s: already among the last selected\n", tree.GetItemText(item).c_str());
    return;
  }
  std::printf("%s: selected\n", tree.GetItemText(item).c_str());
  // The item of the oldest selection once an eleventh comes in.
  if (dropped != NULL) std::printf("  %s dropped out of the last ten\n", tree.GetItemText(dropped).c_str());
}

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: select_by_tree_item FILE ID...\n");
    return 2;
  }
  KCDeviceDefCtrl ctrl("", 5, FALSE);
  if (!ctrl.ReadDefFile(argv[1], true)) return 1;
  TreeView tree;
  const std::map<int, _TREEITEM*> rows = FillTree(ctrl, tree);
  for (int i = 2; i < argc; ++i) {
    const auto row = rows.find(std::atoi(argv[i]));
    if (row == rows.end()) {
      std::printf("%s: no visible definition has this id\n", argv[i]);
      continue;
    }
    Click(ctrl, tree, row->second);
  }
  // The selected list holds copies of the definitions, newest first, each
  // with the tree item it had when it was selected.
  std::printf("last selected:");
  CList<DEVICE_KVRXDEF_ITEM, DEVICE_KVRXDEF_ITEM&>& selected = ctrl.getSelectedDeviceList();
  for (POSITION p = selected.GetHeadPosition(); p != NULL;) {
    std::printf(" [%s]", tree.GetItemText(selected.GetNext(p).m_hTree).c_str());
  }
  std::printf("\n");
  return 0;
}
