// A host reads a definition file, walks the catalogue, finds a definition by
// its id, names its package and writes the catalogue back to a file.
//
//   read_and_write FILE ID OUT
#include <devdef/devdef.h>

#include <cstdio>
#include <cstdlib>

// The devices of the catalogue: kinds hold manufacturers, manufacturers hold
// devices, and a list pointer is null where a kind or manufacturer has none.
static int CountDevices(KCDeviceDefCtrl& ctrl) {
  int devices = 0;
  CList<TAG_KIND_OF_DEVICE, TAG_KIND_OF_DEVICE&>& kinds = ctrl.getDeviceList();
  for (POSITION k = kinds.GetHeadPosition(); k != NULL;) {
    TAG_KIND_OF_DEVICE& kind = kinds.GetNext(k);
    if (kind.m_pManufList == NULL) continue;
    for (POSITION m = kind.m_pManufList->GetHeadPosition(); m != NULL;) {
      TAG_DEVICE_MANUF& manuf = kind.m_pManufList->GetNext(m);
      if (manuf.m_pDeviceList != NULL) devices += manuf.m_pDeviceList->GetCount();
    }
  }
  return devices;
}

// Writes the catalogue as definition file text. A file that cannot be
// opened or written comes out as a thrown CFileException*, which the catcher
// owns and frees with Delete().
static bool WriteCatalogue(KCDeviceDefCtrl& ctrl, const char* path) {
  try {
    CFile file(path, CFile::modeCreate | CFile::modeWrite);
    CArchive ar(&file, CArchive::store);
    ctrl.WriteDefFile(ar);
    ar.Close();
    file.Close();
    return true;
  } catch (CFileException* e) {
    char message[256];
    e->GetErrorMessage(message, sizeof message);
    std::fprintf(stderr, "%s\n", message);
    e->Delete();
    return false;
  }
}

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: read_and_write FILE ID OUT\n");
    return 2;
  }
  // A layout 1 file, generation 5 in force, duplicate ids reported.
  KCDeviceDefCtrl ctrl("", 5, TRUE);
  // 0: the file cannot be read or is of another layout; the reason went to
  // the message box handler (standard error unless the host installs one).
  if (!ctrl.ReadDefFile(argv[1], true)) return 1;
  std::printf("%d devices\n", CountDevices(ctrl));

  DEVICE_ITEM* device = NULL;
  int index = -1;
  if (!ctrl.FindDeviceItem(std::atoi(argv[2]), NULL, NULL, NULL, &index, &device, NULL)) {
    std::fprintf(stderr, "no visible definition has the id %s\n", argv[2]);
    return 1;
  }
  // The package text is shared by the whole process: copy it before the
  // next GetDevicePackage call if it is to be kept.
  std::printf("%s: package %s\n", device->GetDeviceName(), device->GetDevicePackage(index));
  return WriteCatalogue(ctrl, argv[3]) ? 0 : 1;
}
