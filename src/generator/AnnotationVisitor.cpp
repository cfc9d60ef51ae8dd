#include "generator/AnnotationVisitor.h"

#include <zrannotations/SymbolAnnotation.h>

namespace zrcallouts {

bool AnnotationVisitor::Visit(const du::SmartPtr<zrk::Annotation>& annotation) {
  const auto symbol = du::DynamicCast<zrannotations::SymbolAnnotation>(annotation);
  if (symbol) symbols_.emplace(symbol->GetInstance(), annotation);
  return true;
}

unsigned AnnotationVisitor::SymbolIdOf(const du::SmartPtr<zrk::Instance>& instance) const {
  const auto found = symbols_.find(instance);
  return found == symbols_.end() ? 0 : found->second->Id();
}

}  // namespace zrcallouts
