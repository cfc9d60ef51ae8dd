#pragma once
// Labels at given pixels of a 3D view, or at given millimetres of a sheet, to be aligned.

#include <cmath>
#include <vector>

#include <dg/Camera3D.h>
#include <dg/DMat44.h>
#include <dg/FMat33.h>
#include <dg/Location.h>
#include <zrcallouts/Align.h>
#include <zrcallouts/Align2D.h>
#include <zrk/MakeObject.h>
#include <zrk/illustration/PenHolder.h>
#include <zrk/illustration2d/Callout2D.h>
#include <zrk/illustration2d/Document2D.h>
#include <zrk/illustration2d/PageBorder2D.h>
#include <zrk/illustration2d/Scene2D.h>
#include <zrk/illustration2d/Text2D.h>
#include <zrk/illustration2d/View2D.h>

#include "support/SceneFixture.h"

namespace zrtest {

using Points = std::vector<dg::DPoint2D>;

/// The rows are what the model's axes become on screen, and the origin's pixel.
inline dg::DMat44 CameraOf(const dg::DVec3& x, const dg::DVec3& y, const dg::DVec3& z, const dg::DVec3& origin) {
  dg::DMat44 matrix;
  const dg::DVec3 rows[] = {x, y, z, origin};
  for (int row = 0; row < 4; ++row) {
    matrix.m[row][0] = rows[row].x;
    matrix.m[row][1] = rows[row].y;
    matrix.m[row][2] = rows[row].z;
  }
  return matrix;
}

inline const Points kThree{{10, 40}, {50, 0}, {20, 50}};

inline void ExpectPoints(const Points& actual, const Points& expected) {
  ASSERT_EQ(actual.size(), expected.size());
  for (std::size_t i = 0; i < actual.size(); ++i) {
    EXPECT_NEAR(actual[i].x, expected[i].x, 1e-6) << "x of label " << i;
    EXPECT_NEAR(actual[i].y, expected[i].y, 1e-6) << "y of label " << i;
  }
}

/// All labels hang on one part that is moved, turned by a quarter and twice its size: a label's frame has the part's
/// position and size, but not its turn. On screen, X runs along (3, 4), Y straight up and Z to the right; so do the
/// axes of a sheet's grid.
class AlignFixture : public SceneFixture {
protected:
  AlignFixture() {
    dg::FMat33 quarterTurnTwiceTheSize;
    const double rows[3][3] = {{0, 2, 0}, {-2, 0, 0}, {0, 0, 2}};
    for (int i = 0; i < 9; ++i) quarterTurnTwiceTheSize.m[i / 3][i % 3] = rows[i / 3][i % 3];
    part_.shape->SetLocation(dg::Location(quarterTurnTwiceTheSize, partAt_));
    SetCamera(CameraOf({3, 4, 0}, {0, -2, 0}, {5, 0, 1}, {7, 9, 11}));
    sheet_->AddView(sheetView_);
    sheetView_->SetGridAxes({dg::DVec2(3, 4), dg::DVec2(0, -2), dg::DVec2(5, 0)});
  }
  ~AlignFixture() override { sheet_->Destroy(); }
  void SetCamera(const dg::DMat44& objectToPixel) {
    toPixel_ = objectToPixel;
    dg::Camera3D camera;
    camera.SetObjectToPixel(objectToPixel);
    view_->SetCamera(camera);
  }
  /// Replaces the labels; each has a depth of its own, 100 and on.
  void Place(const Points& pixels) {
    labels_.clear();
    annotations_.clear();
    dg::DMat44 toModel = toPixel_;
    ASSERT_TRUE(toModel.Invert());
    for (const dg::DPoint2D& pixel : pixels) {
      labels_.push_back(MakeCallout(TextTemplate("A"), part_));
      annotations_.push_back(labels_.back());
      const dg::DVec3 offset =
          dg::DPoint3D(pixel.x, pixel.y, 99.0 + static_cast<double>(labels_.size())) * toModel - partAt_;
      labels_.back()->SetLabelPosition(dg::DPoint3D(offset.x / 2, offset.y / 2, offset.z / 2));
    }
  }
  void PlaceOnSheet(const Points& positions, const TemplatePtr& preset = {}) {
    callouts_.clear();
    for (const dg::DPoint2D& position : positions) {
      callouts_.push_back(zrk::MakeObject<zrk::illustration2d::Callout2D>());
      callouts_.back()->SetPosition(position);
      callouts_.back()->SetLabelSize({10, 4});
      callouts_.back()->SetPreset(preset);
    }
  }
  void SetPage(const dg::DVec2& millimetres) {
    sheet_->GetDocument2D()->SetPageBorder(
        zrk::MakeObject<zrk::illustration2d::PageBorder2D>(millimetres, dg::LengthUnit::MILLIMETER));
  }
  /// In the order of Place, whatever the command did to its list; depths must be as they were.
  [[nodiscard]] Points Pixels() const {
    Points pixels;
    for (const CalloutPtr& label : labels_) {
      dg::DPoint3D at = label->GetPosition();
      if (label->GetLabelPlacementState() != 1) at = {at.x * 2 + partAt_.x, at.y * 2 + partAt_.y, at.z * 2 + partAt_.z};
      const dg::DPoint3D pixel = at * toPixel_;
      EXPECT_NEAR(pixel.z, 100.0 + static_cast<double>(pixels.size()), 1e-6);
      pixels.emplace_back(pixel.x, pixel.y);
    }
    return pixels;
  }
  [[nodiscard]] Points Positions() const {
    Points positions;
    for (const auto& callout : callouts_) positions.push_back(callout->GetPosition());
    return positions;
  }
  bool Run(zrcallouts::Align_Mode mode, bool distribute, const std::vector<dg::DPoint3D>& line = {},
           const du::SmartPtr<zrk::Operation>& operation = {}) {
    const du::SmartPtr<zrcallouts::Align> align(
        new zrcallouts::Align(annotations_, mode, distribute, view_, operation));
    return align->Execute(line);
  }
  bool RunOnSheet(zrcallouts::Align_Mode mode, bool distribute, const Points& line = {}) {
    return zrcallouts::Align2D(callouts_, mode, distribute, sheetView_).Execute(line);
  }
  [[nodiscard]] du::SmartPtr<zrk::Operation> NewOperation() const {
    return zrk::MakeObject<zrk::Operation>("Align", scene_, true);
  }

  const dg::DPoint3D partAt_{5, -6, 7};
  const Part part_ = structure_->AddPart(structure_->Root(), "part");
  dg::DMat44 toPixel_;
  std::vector<CalloutPtr> labels_;
  zrcallouts::Align::Annotations annotations_;
  const du::SmartPtr<zrk::illustration2d::Scene2D> sheet_ = zrk::MakeObject<zrk::illustration2d::Scene2D>();
  const du::SmartPtr<zrk::illustration2d::View2D> sheetView_ = zrk::MakeObject<zrk::illustration2d::View2D>();
  zrcallouts::Align2D::Callouts2D callouts_;
};

}  // namespace zrtest
