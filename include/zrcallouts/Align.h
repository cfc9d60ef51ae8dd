#pragma once
// Lines up or spreads out the labels of 3D callouts as the user sees them in one view: Align and Align_Mode.

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <dg/DBox2D.h>
#include <dg/DMat44.h>
#include <dg/DPoint2D.h>
#include <dg/DPoint3D.h>
#include <dg/DVec2.h>
#include <dg/DVec3.h>
#include <dg/Pipeline.h>
#include <du/RefCounted.h>
#include <du/SmartPtr.h>
#include <zrannotations/Annotation.h>

#include "zrcallouts/Export.h"

namespace zrannotations {
class Callout;
}
namespace zrcontext {
class Context2D;
}
namespace zrk {
class Operation;
class ShapeView;
}  // namespace zrk

namespace zrcallouts {

/// What an alignment does, in 3D and 2D alike. The order of the values is part of the interface: along x minimum,
/// centre, maximum; along y minimum, maximum, centre.
enum Align_Mode : std::int32_t {
  MinX,        ///< Every label to the smallest x.
  CenterX,     ///< Every label to the middle between smallest and largest x.
  MaxX,        ///< Every label to the largest x.
  MinY,        ///< Every label to the smallest y.
  MaxY,        ///< Every label to the largest y.
  CenterY,     ///< Every label to the middle between smallest and largest y.
  SpreadX,     ///< In ascending x, each label pushed on until it keeps the spacing from the one before.
  SpreadY,     ///< The same along y.
  AlongAxisX,  ///< Onto one line through the middle of the labels, parallel to the world's X axis on screen.
  AlongAxisY,  ///< The same for the world's Y axis.
  AlongAxisZ,  ///< The same for the world's Z axis.
  AlongLine    ///< The same for a line given by two points.
};

/// One alignment command: made, executed once, dropped. Works in the view's pixels and carries the result back into
/// model space. Two class statics hold the running command's camera and primary axis, so two runs must not overlap.
/// [host-thread]
class ZR_CALLOUTS_API Align : public virtual du::RefCounted {
public:
  using Annotations = std::vector<du::SmartPtr<zrannotations::Annotation>>;

  /// Aligns without distribution and without an undo step. `annotations` stays the caller's and must outlive the
  /// command; the spread modes re-order it. Elements that are no callouts are passed over, but they count in the
  /// distribution.
  Align(Annotations& annotations, Align_Mode mode, du::SmartPtr<zrk::ShapeView> view);
  /// With `distribute` the labels are also spaced evenly. With an operation every move becomes a step of it, and it is
  /// recorded at the end.
  Align(Annotations& annotations, Align_Mode mode, bool distribute, du::SmartPtr<zrk::ShapeView> view,
        du::SmartPtr<zrk::Operation> operation);
  /// The copy has no measuring context of its own yet.
  Align(const Align& other);
  Align& operator=(const Align&) = delete;
  ~Align() override;

  /// Does the whole job. `points`, in model space, is used by AlongLine only, which needs exactly two. False, with
  /// nothing moved, without a view, with fewer than two annotations (spread modes apart), or when the line has no
  /// direction.
  bool Execute(const std::vector<dg::DPoint3D>& points);

  /// Whether the world axis of an axis mode has a direction on screen; true for every other mode of a usable view.
  [[nodiscard]] static bool IsAxisAvailable(const du::SmartPtr<zrk::ShapeView>& view, Align_Mode mode);
  /// Where the line through `point` along `direction` crosses the border of `box`. False for an empty box, a line that
  /// does not cross, and for a direction parallel to an axis, which is not handled here on purpose.
  static bool FindIntersectionPoints(const dg::DPoint2D& point, const dg::DVec2& direction, const dg::DBox2D& box,
                                     std::array<dg::DPoint2D, 2>& result);

private:
  struct Label;
  using Labels = std::vector<Label>;

  bool CollectData(const std::vector<dg::DPoint3D>& points, Labels& labels);
  bool CollectAxis(const std::vector<dg::DPoint3D>& points);
  void CollectPage();
  [[nodiscard]] Labels CollectLabels() const;
  void SortAlongPrimary(Labels& labels);
  [[nodiscard]] dg::DPoint3D PixelPosition(const du::SmartPtr<zrannotations::Callout>& callout) const;
  void Classify();
  [[nodiscard]] dg::DPoint3D NewPosition(const dg::DPoint3D& position,
                                         const du::SmartPtr<zrannotations::Callout>& callout, bool isFirst);
  [[nodiscard]] dg::DPoint3D OntoSlantedLine(const dg::DPoint3D& position,
                                             const du::SmartPtr<zrannotations::Callout>& callout);
  void Distribute(Labels& labels, const dg::DMat44& pixelToObject);
  dg::DPoint3D DistributeDiagonal(std::size_t index, const dg::DPoint3D& position, const dg::DPoint2D& start,
                                  const dg::DPoint2D& end);
  dg::DPoint3D DistributeHorizOrVert(std::size_t index, const dg::DPoint3D& position, bool horizontal);
  bool GetStartEndPointsOnBoundary(const dg::DPoint3D& point, const dg::DVec3& direction,
                                   const du::SmartPtr<zrannotations::Callout>& callout,
                                   std::array<dg::DPoint2D, 2>& result);
  void Place(const du::SmartPtr<zrannotations::Callout>& callout, const dg::DPoint3D& position) const;
  void SetPosition(du::SmartPtr<zrannotations::Callout> callout, dg::DPoint3D& from, dg::DPoint3D& to,
                   dg::DMat44& transform);

  static dg::DMat44 m_ObjToPx;
  static int m_idx;

  Annotations& annotations_;
  Align_Mode mode_;
  bool distribute_;
  du::SmartPtr<zrk::ShapeView> view_;
  du::SmartPtr<zrk::Operation> operation_;
  std::array<double, 4> range_{};  // minimum and maximum of the primary pixel coordinate, then of the other
  double spacing_ = 30.0;
  std::array<dg::DVec2, 3> axes_;
  dg::DPoint3D lineStart_{dg::DVec3::ZERO};
  dg::DPoint3D lineEnd_{dg::DVec3::ZERO};
  dg::DBox2D pageBox_{dg::DBox2D::EMPTY};
  double pageScale_ = 1.0;
  bool labelsOutsidePage_ = false;
  dg::Pipeline pipeline_;
  zrcontext::Context2D* context_ = nullptr;
  bool slanted_ = false;
  dg::DPoint3D lineCentre_;
  dg::DVec2 lineDirection_;
  dg::DPoint3D previous_;  // the label placed last in a spread mode
};

}  // namespace zrcallouts
