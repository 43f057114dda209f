// The controller that an analysis reads with: the library's controller of
// a layout, with the one step the analysis asks of it beside a read.
#ifndef DEVDEF_TOOLS_ANALYSIS_ANALYSIS_CTRL_H_
#define DEVDEF_TOOLS_ANALYSIS_ANALYSIS_CTRL_H_

#include <memory>

#include "devdef/devdef.h"

struct AnalysisOptions;

class AnalysisCtrl {
 public:
  virtual ~AnalysisCtrl() = default;
  virtual KCDeviceDefCtrl& Ctrl() = 0;
  // Reads line as a definition line into the device at posDevice, as the
  // block reader hands it over, without the duplicate-id check.
  virtual void ReadDefinitionLine(POSITION posDevice, const CString& line) = 0;

  // The controller of layout (1, 2 or 7) with the options' path prefix,
  // generation and id check.
  static std::unique_ptr<AnalysisCtrl> Make(int layout, const AnalysisOptions& options);
};

#endif  // DEVDEF_TOOLS_ANALYSIS_ANALYSIS_CTRL_H_
