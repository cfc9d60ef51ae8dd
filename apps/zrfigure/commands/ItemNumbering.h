#pragma once
// Numbers that follow the places of the labels: order round a figure, and the item list renumbered to it.

#include <vector>

#include <du/SmartPtr.h>

#include "visibility/VectorMath.h"

namespace zrk {
class Operation;
namespace illustration {
class ItemsList;
}
}  // namespace zrk

namespace zrfigure {

/// An item's label on the page.
struct LabelPlace {
  unsigned item = 0;
  Point2 at;
};

/// The items as somebody meets them who walks round the middle of the labels clockwise, from their upper left corner.
/// An item with several labels is met at the first. Labels at one angle: the nearer one, then the lower id.
[[nodiscard]] std::vector<unsigned> OrderClockwise(std::vector<LabelPlace> labels);

/// Renumbers the list so that numbers ascend along `order`; items that are not in it come behind, as they were. Flat
/// numbers are handed round among the rows; hierarchical paths are permuted among siblings, an assembly standing where
/// the first item below it stands. Each change is a step of the operation, and labels follow it.
void Renumber(const du::SmartPtr<zrk::illustration::ItemsList>& list, const std::vector<unsigned>& order,
              const du::SmartPtr<zrk::Operation>& operation);

}  // namespace zrfigure
