#include "AnnoSetStep.h"

#include <zrk/Operation.h>

namespace zrk {

AnnoSetStep::AnnoSetStep(Kind kind, AnnoSet* set, const du::SmartPtr<Annotation>& annotation,
                         const AnnoSet::Place& place)
    : kind_(kind), set_(set), annotation_(annotation), place_(place) {}

AnnoSetStep::~AnnoSetStep() = default;

void AnnoSetStep::Undo() {
  kind_ == Kind::Added ? Leave() : Enter();
}

void AnnoSetStep::Redo() {
  kind_ == Kind::Added ? Enter() : Leave();
}

void AnnoSetStep::Enter() {
  set_->PutBack(annotation_, place_);
}

void AnnoSetStep::Leave() {
  set_->Remove(annotation_, place_.isReferenced, nullptr);
}

}  // namespace zrk
