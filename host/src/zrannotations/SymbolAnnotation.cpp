#include <zrannotations/SymbolAnnotation.h>

#include <zrannotations/ConstStrings.h>
#include <zrk/ComponentInstance.h>
#include <zrk/Instance.h>

namespace zrannotations {

SymbolAnnotation::SymbolAnnotation(const du::SmartPtr<zrk::Instance>& instance)
    : zrk::Annotation(ConstStrings::zrSymbol3D), instance_(instance) {}

SymbolAnnotation::~SymbolAnnotation() = default;

unsigned SymbolAnnotation::GetAnnotationType() const {
  return SymbolKind;
}

du::SmartPtr<zrk::Instance> SymbolAnnotation::GetInstance() const {
  return instance_;
}

du::Symbol SymbolAnnotation::GetInstanceId() const {
  const du::SmartPtr<zrk::ComponentInstance> component = instance_ ? instance_->GetComponentInstance() : nullptr;
  return component ? component->GetID() : du::Symbol();
}

}  // namespace zrannotations
