#pragma once
// Which parts of an item its callouts point at, and in which picture.

#include <vector>

#include "commands/Options.h"
#include "commands/Picture.h"
#include "commands/RowPlan.h"

namespace zrfigure {

/// What one picture calls out.
struct PictureCallouts {
  std::vector<int> selected;           ///< Occurrences to create callouts for, in the order given.
  std::vector<VisibleRegion> regions;  ///< Where leaders may end: one leaf a leader, ascending by occurrence.
};

struct AnchorRequest {
  const OccurrenceTree& tree;
  const std::vector<PlannedRow>& rows;
  const std::vector<int>& selected;
  CalloutMode mode = CalloutMode::OnePerItem;
  const std::vector<int>& pinned;  ///< Leaves or assemblies to keep as anchors where they are seen well enough.
  bool skipHidden = false;         ///< What is seen nowhere gets no callout.
};

/// Divides the callouts among the pictures: an item, or with PerInstance a part, goes where the best seen of its parts
/// has the largest clearance; the first picture wins ties and takes what is seen nowhere. With OnePerItem an item's
/// leader goes to the part that is seen well, near the border of the drawing and apart from the ends of other leaders;
/// an item of which nothing can be seen is called out on one part only, chosen the same way.
[[nodiscard]] std::vector<PictureCallouts> ChooseAnchors(const AnchorRequest& request,
                                                         const std::vector<Picture>& pictures);

}  // namespace zrfigure
