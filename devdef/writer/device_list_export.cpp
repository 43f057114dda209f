// The device list export: every device by number and name, with the adapter
// names of its generation 4 definitions.
#include "devdef/catalogue/catalogue_walk.h"
#include "devdef/catalogue/device_def_ctrl_v3.h"
#include "devdef/platform/exceptions.h"

namespace {

void WriteText(CArchive& ar, const CString& text) {
  if (!text.IsEmpty()) ar.Write(static_cast<LPCTSTR>(text), static_cast<UINT>(text.GetLength()));
}

}  // namespace

void KCDeviceDefCtrlV3::WriteK4DeviceList() {
  const CString path = m_strPath + "k4devicelist.txt";
  try {
    CFile file(path, CFile::modeCreate | CFile::modeWrite);
    CArchive ar(&file, CArchive::store, 4096, nullptr);
    WriteText(ar, "KOVIR32 K4 Device List \r\n");
    int number = 0;
    CString row;
    DevdefWalkDevices(m_DeviceList, [&](const DevdefDevicePlace& place) {
      DEVICE_ITEM& device = place.device;
      row.Format("%d:\t", ++number);
      WriteText(ar, row + device.m_DeviceName + "\r\n");
      // Generation 4 by the low byte alone: hidden definitions count.
      for (int i = 0; i < device.m_DefArray.GetSize(); ++i) {
        DEVICE_KVRXDEF_ITEM& def = device.m_DefArray[i];
        if (def.m_KvrType != 4) continue;
        for (int a = 0; a < def.m_AdapterIds.GetSize(); ++a) {
          row = "\t\t";
          row += DEVICE_ITEM::GetAdapterName(def.m_AdapterIds[a]);  // null adds nothing
          row += "\r\n";
          WriteText(ar, row);
        }
      }
      return false;
    });
    ar.Close();
    file.Close();
  } catch (CFileException* e) {
    e->Delete();
  } catch (CArchiveException* e) {
    e->Delete();
  }
}
