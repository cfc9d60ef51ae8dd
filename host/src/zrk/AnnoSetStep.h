#pragma once

#include <du/SmartPtr.h>
#include <zrk/AnnoSet.h>
#include <zrk/Annotation.h>
#include <zrk/OperationStep.h>

namespace zrk {

/// The entry of an annotation into a set, or its removal, together with the place it had there.
class AnnoSetStep final : public OperationStep {
public:
  enum class Kind { Added, Removed };

  AnnoSetStep(Kind kind, AnnoSet* set, const du::SmartPtr<Annotation>& annotation, const AnnoSet::Place& place);
  ~AnnoSetStep() override;

  void Undo() override;
  void Redo() override;

private:
  void Enter();
  void Leave();

  const Kind kind_;
  const du::SmartPtr<AnnoSet> set_;
  const du::SmartPtr<Annotation> annotation_;
  const AnnoSet::Place place_;
};

}  // namespace zrk
