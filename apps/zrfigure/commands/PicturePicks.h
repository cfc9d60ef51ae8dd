#pragma once
// Answers the host's picks from a rendered picture of its view.

#include <vector>

#include <dg/Camera3D.h>
#include <zrk/PickService.h>

#include "commands/HostStructure.h"
#include "visibility/IdBuffer.h"
#include "visibility/VisibleRegions.h"

namespace zrfigure {

/// Answers at once what one picture shows of an occurrence: where it is deepest, and what stands at a pixel. Picks in a
/// view that has turned since are dropped. The structure must outlive it. [any-thread]
class PicturePicks final : public zrk::PickService {
public:
  /// `camera` is what `view` is in the host.
  PicturePicks(const HostStructure& structure, const View& view, const dg::Camera3D& camera, IdBuffer ids);
  ~PicturePicks() override;

  void RequestPick(const du::SmartPtr<zrk::PickEvent>& event) override;

private:
  const HostStructure& structure_;
  const View view_;
  const dg::Camera3D camera_;
  const IdBuffer ids_;
  const std::vector<VisibleRegion> regions_;
};

}  // namespace zrfigure
