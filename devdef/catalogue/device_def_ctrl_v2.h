/// \file
/// KCDeviceDefCtrlV2: the controller of a layout 2 catalogue.
#ifndef DEVDEF_CATALOGUE_DEVICE_DEF_CTRL_V2_H_
#define DEVDEF_CATALOGUE_DEVICE_DEF_CTRL_V2_H_

#include "devdef/platform/export.h"

#include "devdef/catalogue/device_def_ctrl.h"

/// The controller of a layout 2 definition file ("DEF_LAYOUT_VERSION = 2"): definition lines with three values in
/// front of the colon, and the conversion of the catalogue to layout 3 text.
///
/// Everything else, the writer included, is KCDeviceDefCtrl's. It reads only layout 2 files.
class DEVDEF_API KCDeviceDefCtrlV2 : public KCDeviceDefCtrl {
 public:
  /// Builds a layout 2 controller; the arguments are those of KCDeviceDefCtrl::KCDeviceDefCtrl.
  KCDeviceDefCtrlV2(CString strPath, int nKvrType, int bCheckIds);
  ~KCDeviceDefCtrlV2() override = default;

  /// Writes the catalogue as layout 3 text to ar's file: version 3 and eleven values on each line, the
  /// last seven taken from the seven numbers that open each definition's text; the rest of the text follows the colon.
  ///
  /// Writes as WriteDefFile does (straight to the archive's file; hidden definitions too) and changes nothing in
  /// the catalogue. No controller of this library reads the result, since none has layout 3.
  /// A failed write throws CFileException* to the caller, who frees it with Delete().
  /// \return 1 when all was written; 0 when the archive has no file (nothing written) or a text does not open
  ///         with seven numbers: the file then ends inside the failing line, and later definitions are not written.
  int ConvertDefFileToVersion3(CArchive& ar) override;

 protected:
  /// Reads a layout 2 definition line: the layout 1 line with three values (m_DefValues[0] to [2]) in front of the
  /// colon. Called and answering as KCDeviceDefCtrl::RDF_ReadKvrXDefLine.
  int RDF_ReadKvrXDefLine(POSITION posKind, POSITION posManuf, POSITION posDevice, const CString& strLine) override;

 private:
  bool WDF_WriteConvertedLine(CFile& file, DEVICE_KVRXDEF_ITEM& def, CString& strLine);
};

#endif  // DEVDEF_CATALOGUE_DEVICE_DEF_CTRL_V2_H_
