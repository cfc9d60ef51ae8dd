#pragma once
// Collects the labels that stand in a scene already, as boxes in pixels. Lives on the stack of one layout.

#include <functional>
#include <set>
#include <vector>

#include <du/SmartPtr.h>
#include <zrannotations/Callout.h>
#include <zrk/AnnoSetVisitor.h>

#include "layout/placement/Geometry.h"

namespace zrcallouts {

/// Visits the members of an annotation set; callouts that are to be laid out themselves are left out.
class CalloutLayoutVisitor final : public zrk::AnnoSetVisitor {
public:
  using CalloutSet = std::set<du::SmartPtr<zrannotations::Callout>>;
  using BoxOfLabel = std::function<placement::Box(const du::SmartPtr<zrannotations::Callout>&)>;

  CalloutLayoutVisitor(const CalloutSet& toBePlaced, BoxOfLabel boxOfLabel)
      : AnnoSetVisitor(false), toBePlaced_(toBePlaced), boxOfLabel_(std::move(boxOfLabel)) {}

  bool Visit(const du::SmartPtr<zrk::Annotation>& annotation) override;

  [[nodiscard]] const std::vector<placement::Box>& GetBoxes() const { return boxes_; }

private:
  const CalloutSet& toBePlaced_;
  BoxOfLabel boxOfLabel_;
  std::vector<placement::Box> boxes_;
};

}  // namespace zrcallouts
