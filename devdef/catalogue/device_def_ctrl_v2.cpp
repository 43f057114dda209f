#include "devdef/catalogue/device_def_ctrl_v2.h"

KCDeviceDefCtrlV2::KCDeviceDefCtrlV2(CString strPath, int nKvrType, int bCheckIds)
    : KCDeviceDefCtrl(strPath, nKvrType, bCheckIds) {
  m_nLayout = 2;
}
