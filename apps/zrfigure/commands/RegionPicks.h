#pragma once
// Answers the host's picks from a rendered view.

#include <vector>

#include <zrk/PickService.h>

#include "commands/HostStructure.h"
#include "visibility/VisibleRegions.h"

namespace zrfigure {

/// Gives the deepest visible point of each occurrence in one fixed view. The structure must outlive it. [any-thread]
class RegionPicks final : public zrk::PickService {
public:
  RegionPicks(const HostStructure& structure, std::vector<VisibleRegion> regions);
  ~RegionPicks() override;

  bool FindVisiblePoint(const du::SmartPtr<zrk::ShapeView>& view, const du::SmartPtr<zrk::ShapeInstance>& shapeInstance,
                        dg::DPoint3D& point) override;

private:
  const HostStructure& structure_;
  const std::vector<VisibleRegion> regions_;
};

}  // namespace zrfigure
