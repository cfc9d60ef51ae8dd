#pragma once
// Finds the symbol annotations of a scene by the instances they stand on. Lives on the stack of one generator
// operation.

#include <map>

#include <du/SmartPtr.h>
#include <zrk/AnnoSetVisitor.h>
#include <zrk/Annotation.h>
#include <zrk/Instance.h>

namespace zrcallouts {

/// Visits the members of an annotation set; the first symbol annotation of an instance counts.
class AnnotationVisitor final : public zrk::AnnoSetVisitor {
public:
  AnnotationVisitor() : AnnoSetVisitor(false) {}

  bool Visit(const du::SmartPtr<zrk::Annotation>& annotation) override;

  /// The id of the symbol annotation on `instance`; 0 when there is none.
  [[nodiscard]] unsigned SymbolIdOf(const du::SmartPtr<zrk::Instance>& instance) const;

private:
  std::map<du::SmartPtr<zrk::Instance>, du::SmartPtr<zrk::Annotation>> symbols_;
};

}  // namespace zrcallouts
