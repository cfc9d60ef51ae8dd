#pragma once

#include <du/Export.h>
#include <du/SmartPtr.h>

namespace zrk {

class Annotation;

/// Walks the annotations of a set, see AnnoSet::Visit.
class ZR_HOST_API AnnoSetVisitor {
public:
  /// `includeReferenced`: also visit annotations that the set only refers to.
  explicit AnnoSetVisitor(bool includeReferenced);
  virtual ~AnnoSetVisitor();
  /// Called once for each annotation; false ends the walk. The base answers true.
  virtual bool Visit(const du::SmartPtr<Annotation>& annotation);
  [[nodiscard]] bool IncludesReferenced() const;

private:
  bool includeReferenced_;
};

}  // namespace zrk
