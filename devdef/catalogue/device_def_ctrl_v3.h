// KCDeviceDefCtrlV3: the controller of a layout 7 catalogue.
#ifndef DEVDEF_CATALOGUE_DEVICE_DEF_CTRL_V3_H_
#define DEVDEF_CATALOGUE_DEVICE_DEF_CTRL_V3_H_

#include "devdef/catalogue/device_def_ctrl_v2.h"

// The host's configuration content; the library only passes a pointer to it.
class cKvr5CfgContent;

class KCDeviceDefCtrlV3 : public KCDeviceDefCtrlV2 {
 public:
  // pCfgContent is not used.
  KCDeviceDefCtrlV3(CString strPath, int nKvrType, int bCheckIds, cKvr5CfgContent* pCfgContent);
  ~KCDeviceDefCtrlV3() override = default;
};

#endif  // DEVDEF_CATALOGUE_DEVICE_DEF_CTRL_V3_H_
