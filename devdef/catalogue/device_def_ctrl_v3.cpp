#include "devdef/catalogue/device_def_ctrl_v3.h"

KCDeviceDefCtrlV3::KCDeviceDefCtrlV3(CString strPath, int nKvrType, int bCheckIds,
                                     cKvr5CfgContent* /*pCfgContent*/)
    : KCDeviceDefCtrlV2(strPath, nKvrType, bCheckIds) {
  m_nLayout = 7;
}
