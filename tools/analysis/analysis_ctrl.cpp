#include "tools/analysis/analysis_ctrl.h"

#include "tools/analysis/analysis.h"

namespace {

template <class Base>
class LayoutCtrl final : public Base, public AnalysisCtrl {
 public:
  template <class... Args>
  explicit LayoutCtrl(Args... args) : Base(args...) {}
  KCDeviceDefCtrl& Ctrl() override { return *this; }
  void ReadDefinitionLine(POSITION posDevice, const CString& line) override {
    const int checkIds = this->m_bCheckIds;
    this->m_bCheckIds = 0;
    this->RDF_ReadKvrXDefLine(nullptr, nullptr, posDevice, line);
    this->m_bCheckIds = checkIds;
  }
};

}  // namespace

std::unique_ptr<AnalysisCtrl> AnalysisCtrl::Make(int layout, const AnalysisOptions& options) {
  const CString prefix(options.pathPrefix.c_str());
  const int checkIds = options.checkIds ? 1 : 0;
  if (layout == 2) return std::make_unique<LayoutCtrl<KCDeviceDefCtrlV2>>(prefix, options.generation, checkIds);
  if (layout == 7) {
    return std::make_unique<LayoutCtrl<KCDeviceDefCtrlV3>>(prefix, options.generation, checkIds,
                                                           static_cast<cKvr5CfgContent*>(nullptr));
  }
  return std::make_unique<LayoutCtrl<KCDeviceDefCtrl>>(prefix, options.generation, checkIds);
}
