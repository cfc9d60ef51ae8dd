#pragma once
// Places the labels of new callouts round the model in one view, and routes their leaders. Lives for one layout.

#include <set>
#include <vector>

#include <dg/Camera3D.h>
#include <dg/DMat44.h>
#include <dg/Pipeline.h>
#include <du/SmartPtr.h>
#include <zrcontext/Context2D.h>

#include "layout/placement/Placement.h"

namespace zrk {
class ShapeView;
}
namespace zrannotations {
class Callout;
}

namespace zrcallouts {

class Callouts;

/// Feeds the placement algorithm from the view (page, projected model, labels that stand already, label sizes, anchors
/// of shown leaders) and writes its answer back: label positions in the labels' own frames, leader routes in model
/// space. Works in the view's pixels. Needs a camera that can be inverted; otherwise nothing is moved.
class Layout final {
public:
  using CalloutSet = std::set<du::SmartPtr<zrannotations::Callout>>;

  Layout(const du::SmartPtr<zrk::ShapeView>& view, const du::SmartPtr<Callouts>& engine);

  /// False, and nothing moved, without callouts or a usable camera.
  bool Place(const CalloutSet& callouts);

private:
  [[nodiscard]] placement::Box ModelBox() const;
  [[nodiscard]] placement::Box LabelBox(const du::SmartPtr<zrannotations::Callout>& callout);
  [[nodiscard]] placement::PlacementRequest MakeRequest(const CalloutSet& callouts);
  [[nodiscard]] std::vector<placement::Point> AnchorsOf(const du::SmartPtr<zrannotations::Callout>& callout) const;
  [[nodiscard]] double DepthOf(const du::SmartPtr<zrannotations::Callout>& callout) const;
  void Apply(const du::SmartPtr<zrannotations::Callout>& callout, const placement::PlacedLabel& label) const;

  du::SmartPtr<zrk::ShapeView> view_;
  du::SmartPtr<Callouts> engine_;
  dg::DMat44 objectToPixel_;
  dg::DMat44 pixelToObject_;
  bool usable_;
  dg::Pipeline pipeline_;
  zrcontext::Context2D context_;
};

}  // namespace zrcallouts
