#pragma once

#include <du/SmartPtr.h>
#include <zrk/OperationStep.h>
#include <zrk/illustration2d/Scene2D.h>
#include <zrservices/illustration2d/CalloutPosition.h>

namespace zrservices::illustration2d {

/// Moves the label of one 2D callout and tells the sheet.
class CalloutPositionStep final : public zrk::OperationStep {
public:
  CalloutPositionStep(const du::SmartPtr<zrk::illustration2d::Scene2D>& scene, const CalloutPosition& before,
                      const CalloutPosition& after);
  ~CalloutPositionStep() override;

  void Undo() override;
  void Redo() override;

private:
  void Apply(const CalloutPosition& position) const;

  const du::SmartPtr<zrk::illustration2d::Scene2D> scene_;
  const CalloutPosition before_;
  const CalloutPosition after_;
};

}  // namespace zrservices::illustration2d
