#pragma once

#include <du/SmartPtr.h>
#include <zrk/OperationStep.h>
#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/PenHolder.h>
#include <zrk/illustration/TAnnotation.h>

namespace zrk::illustration {

/// The edit or replacement of a template, with its state before and after.
class TemplateOperationStep final : public OperationStep {
public:
  TemplateOperationStep(TAnnotation* callouttemplate, const TAnnotation::State& before, const TAnnotation::State& after,
                        TAnnotation::Change change);
  ~TemplateOperationStep() override;

  void Undo() override;
  void Redo() override;

private:
  const du::SmartPtr<TAnnotation> callouttemplate_;
  const TAnnotation::State before_;
  const TAnnotation::State after_;
  const TAnnotation::Change change_;
};

}  // namespace zrk::illustration
