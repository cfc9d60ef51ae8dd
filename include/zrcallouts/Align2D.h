#pragma once
// Lines up or spreads out 2D callouts on a page: the 2D counterpart of Align.

#include <array>
#include <cstddef>
#include <vector>

#include <dg/DPoint2D.h>
#include <dg/DVec2.h>
#include <du/RefCounted.h>
#include <du/SmartPtr.h>

#include "zrcallouts/Align.h"
#include "zrcallouts/Export.h"

namespace zrk {
class View;
namespace illustration2d {
class Callout2D;
}
}  // namespace zrk

namespace zrcallouts {

/// One alignment command on 2D callouts: made, executed once, dropped. Positions are millimetres on the page. All moves
/// go to the host in one undoable edit. Spread modes move nothing unless distribution is on. [host-thread]
class ZR_CALLOUTS_API Align2D : public virtual du::RefCounted {
public:
  using Callouts2D = std::vector<du::SmartPtr<zrk::illustration2d::Callout2D>>;

  /// `callouts` stays the caller's and must outlive the command.
  Align2D(Callouts2D& callouts, Align_Mode mode, bool distribute, du::SmartPtr<zrk::View> view);
  Align2D(const Align2D& other);
  Align2D(Align2D&& other) noexcept;
  Align2D& operator=(const Align2D&) = delete;
  ~Align2D() override;

  /// Does the whole job; `points` is used by AlongLine only, which needs exactly two. False, with nothing moved,
  /// without a view, with fewer than two callouts (three when distributing), or when the line has no direction.
  bool Execute(const std::vector<dg::DPoint2D>& points);

  /// Whether the grid axis of an axis mode has a direction; true for every other mode of a usable view.
  [[nodiscard]] static bool IsAxisAvailable(const du::SmartPtr<zrk::View>& view, Align_Mode mode);

private:
  struct Move;

  bool CollectData(const std::vector<dg::DPoint2D>& points);
  bool CollectAxis(const std::vector<dg::DPoint2D>& points);
  void CollectPageSize();
  void Classify();
  [[nodiscard]] dg::DPoint2D NewPosition(const dg::DPoint2D& position,
                                         const du::SmartPtr<zrk::illustration2d::Callout2D>& callout);
  void Distribute(std::vector<Move>& moves);
  dg::DPoint2D DistributeDiagonal(std::size_t index, const dg::DPoint2D& position, const dg::DPoint2D& start,
                                  const dg::DPoint2D& end);
  dg::DPoint2D DistributeHorizOrVert(std::size_t index, const dg::DPoint2D& position, bool horizontal);
  bool GetStartEndPointsOnBoundary(const dg::DPoint2D& point, const dg::DVec2& direction,
                                   const du::SmartPtr<zrk::illustration2d::Callout2D>& callout,
                                   std::array<dg::DPoint2D, 2>& result);

  Callouts2D& callouts_;
  Align_Mode mode_;
  du::SmartPtr<zrk::View> view_;
  std::array<double, 4> range_{};  // minimum and maximum of the primary coordinate, then of the other
  int primary_ = 0;
  bool distribute_;
  std::array<dg::DVec2, 3> axes_;
  std::array<dg::DPoint2D, 2> line_;
  dg::DVec2 pageSize_{dg::DVec2::ZERO};
  bool labelsOutsidePage_ = false;
  bool slanted_ = false;
  dg::DPoint2D lineCentre_;
  dg::DVec2 lineDirection_;
};

}  // namespace zrcallouts
