// KCDeviceDefCtrlV2: the controller of a layout 2 catalogue.
#ifndef DEVDEF_CATALOGUE_DEVICE_DEF_CTRL_V2_H_
#define DEVDEF_CATALOGUE_DEVICE_DEF_CTRL_V2_H_

#include "devdef/platform/export.h"

#include "devdef/catalogue/device_def_ctrl.h"

class DEVDEF_API KCDeviceDefCtrlV2 : public KCDeviceDefCtrl {
 public:
  KCDeviceDefCtrlV2(CString strPath, int nKvrType, int bCheckIds);
  ~KCDeviceDefCtrlV2() override = default;

  // Writes the catalogue with version 3 and eleven values on each line, the
  // last seven taken from the start of each definition's text. 0 when the
  // archive has no file or a text does not open with seven numbers; then
  // the file ends inside the failing line.
  int ConvertDefFileToVersion3(CArchive& ar) override;

 protected:
  // Reads a layout 2 definition line: three values in front of the colon.
  int RDF_ReadKvrXDefLine(POSITION posKind, POSITION posManuf, POSITION posDevice, const CString& strLine) override;

 private:
  bool WDF_WriteConvertedLine(CFile& file, DEVICE_KVRXDEF_ITEM& def, CString& strLine);
};

#endif  // DEVDEF_CATALOGUE_DEVICE_DEF_CTRL_V2_H_
