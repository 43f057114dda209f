// KCDeviceDefCtrlV2: the controller of a layout 2 catalogue.
#ifndef DEVDEF_CATALOGUE_DEVICE_DEF_CTRL_V2_H_
#define DEVDEF_CATALOGUE_DEVICE_DEF_CTRL_V2_H_

#include "devdef/catalogue/device_def_ctrl.h"

class KCDeviceDefCtrlV2 : public KCDeviceDefCtrl {
 public:
  KCDeviceDefCtrlV2(CString strPath, int nKvrType, int bCheckIds);
  ~KCDeviceDefCtrlV2() override = default;

 protected:
  // Reads a layout 2 definition line: three values in front of the colon.
  int RDF_ReadKvrXDefLine(POSITION posKind, POSITION posManuf, POSITION posDevice, const CString& strLine) override;
};

#endif  // DEVDEF_CATALOGUE_DEVICE_DEF_CTRL_V2_H_
