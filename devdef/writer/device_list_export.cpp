// The device list export: every device by number and name, with the adapter
// names of its generation 4 definitions.
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
    POSITION posKind = m_DeviceList.GetHeadPosition();
    for (int k = 0; k < m_DeviceList.GetCount(); ++k) {
      TAG_KIND_OF_DEVICE& kind = m_DeviceList.GetNext(posKind);
      if (kind.m_pManufList == nullptr) continue;
      POSITION posManuf = kind.m_pManufList->GetHeadPosition();
      for (int m = 0; m < kind.m_pManufList->GetCount(); ++m) {
        TAG_DEVICE_MANUF& manuf = kind.m_pManufList->GetNext(posManuf);
        if (manuf.m_pDeviceList == nullptr) continue;
        POSITION posDevice = manuf.m_pDeviceList->GetHeadPosition();
        for (int d = 0; d < manuf.m_pDeviceList->GetCount(); ++d) {
          DEVICE_ITEM& device = manuf.m_pDeviceList->GetNext(posDevice);
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
        }
      }
    }
    ar.Close();
    file.Close();
  } catch (CFileException* e) {
    e->Delete();
  } catch (CArchiveException* e) {
    e->Delete();
  }
}
