#include "commands/RegionPicks.h"

#include <utility>

namespace zrfigure {

RegionPicks::RegionPicks(const HostStructure& structure, std::vector<VisibleRegion> regions)
    : structure_(structure), regions_(std::move(regions)) {}

RegionPicks::~RegionPicks() = default;

bool RegionPicks::FindVisiblePoint(const du::SmartPtr<zrk::ShapeView>& /*view*/,
                                   const du::SmartPtr<zrk::ShapeInstance>& shapeInstance, dg::DPoint3D& point) {
  const VisibleRegion* region = FindRegion(regions_, structure_.FindOccurrence(shapeInstance));
  if (region == nullptr) return false;
  point = dg::DPoint3D(region->worldPoint.x, region->worldPoint.y, region->worldPoint.z);
  return true;
}

}  // namespace zrfigure
