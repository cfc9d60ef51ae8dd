#include "PropertyValueStep.h"

#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/SbomTree.h>

namespace zrk::illustration {

PropertyValueStep::PropertyValueStep(const du::SmartPtr<SbomTree>& tree, const du::SmartPtr<SbomInstance>& instance,
                                     const SceneEdit::PropertyPlace& place, const Value& after)
    : tree_(tree),
      instance_(instance),
      place_(place),
      before_(instance->GetProperties().GetValue({place.group, place.name}, place.shapeSource)),
      after_(after) {}

PropertyValueStep::~PropertyValueStep() = default;

void PropertyValueStep::Undo() {
  Store(before_);
}

void PropertyValueStep::Redo() {
  Store(after_);
}

bool PropertyValueStep::ChangesAnything() const {
  return before_ != after_;
}

void PropertyValueStep::Store(const Value& value) {
  tree_->SetPropertyValue(instance_, {place_.group, place_.name}, place_.shapeSource, value);
}

}  // namespace zrk::illustration
