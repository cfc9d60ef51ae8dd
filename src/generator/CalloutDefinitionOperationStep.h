#pragma once
// The undoable change of a callout's template: the new definition with the text that goes with it.

#include <du/SmartPtr.h>
#include <zrannotations/CalloutOperationStep.h>

namespace zrk::illustration {
class TAnnotation;
}

namespace zrcallouts {

class Callouts;

/// Owned by its operation. Undo restores every aspect of the callout as the base step found it.
class CalloutDefinitionOperationStep final : public zrannotations::CalloutOperationStep {
public:
  CalloutDefinitionOperationStep(const du::SmartPtr<zrannotations::Callout>& callout,
                                 const du::SmartPtr<zrk::illustration::TAnnotation>& definition,
                                 const du::SmartPtr<Callouts>& engine);
  ~CalloutDefinitionOperationStep() override;

  void Undo() override;
  void Redo() override;

private:
  du::SmartPtr<zrk::illustration::TAnnotation> definition_;
  du::SmartPtr<Callouts> engine_;
};

}  // namespace zrcallouts
