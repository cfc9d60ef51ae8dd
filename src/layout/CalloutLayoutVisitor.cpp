#include "layout/CalloutLayoutVisitor.h"

namespace zrcallouts {

bool CalloutLayoutVisitor::Visit(const du::SmartPtr<zrk::Annotation>& annotation) {
  const auto callout = du::DynamicCast<zrannotations::Callout>(annotation);
  if (callout && toBePlaced_.count(callout) == 0) boxes_.push_back(boxOfLabel_(callout));
  return true;
}

}  // namespace zrcallouts
