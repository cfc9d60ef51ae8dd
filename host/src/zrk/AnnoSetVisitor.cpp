#include <zrk/AnnoSetVisitor.h>

namespace zrk {

AnnoSetVisitor::AnnoSetVisitor(bool includeReferenced) : includeReferenced_(includeReferenced) {}

AnnoSetVisitor::~AnnoSetVisitor() = default;

bool AnnoSetVisitor::Visit(const du::SmartPtr<Annotation>&) {
  return true;
}

bool AnnoSetVisitor::IncludesReferenced() const {
  return includeReferenced_;
}

}  // namespace zrk
