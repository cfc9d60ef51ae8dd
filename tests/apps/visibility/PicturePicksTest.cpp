// Turning the camera round a model: leaders end on what can be seen of their parts, and stay where they are as long as
// that is a good place.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <map>

#include <gtest/gtest.h>

#include "commands/FigurePlan.h"
#include "commands/HostProcess.h"
#include "commands/HostSession.h"
#include "commands/Selection.h"
#include "import/ImportProcess.h"
#include "visibility/VisibilityScene.h"

namespace zrfigure {
namespace {

constexpr int kStepDegrees = 10;

/// Casts rays by looking at every triangle: shares nothing with how pictures are made.
class PlainRays {
public:
  PlainRays(const Model& model, const std::vector<int>& leaves, const View& view) {
    for (int leaf : leaves) {
      const Occurrence& occurrence = model.occurrences[leaf];
      const Mesh& mesh = model.products[occurrence.product].mesh;
      std::vector<Vec3> pixels;
      for (const auto& position : mesh.positions) {
        pixels.push_back(view.ToPixel(TransformPoint(occurrence.toWorld, ToVec3(position))));
      }
      for (const auto& t : mesh.triangles) triangles_.push_back({leaf, {pixels[t[0]], pixels[t[1]], pixels[t[2]]}});
    }
  }

  /// Occurrence and depth of what is nearest at a point of the image; -1 for nothing.
  [[nodiscard]] std::pair<int, double> Cast(double x, double y) const {
    std::pair<int, double> nearest{-1, std::numeric_limits<double>::infinity()};
    for (const Triangle& triangle : triangles_) {
      const auto& [a, b, c] = triangle.corners;
      const double area = Cross2(a, b, c.x, c.y);
      const double u = Cross2(b, c, x, y) / area, v = Cross2(c, a, x, y) / area, w = 1 - u - v;
      if (area == 0 || u < -kSlack || v < -kSlack || w < -kSlack) continue;
      const double depth = u * a.z + v * b.z + w * c.z;
      if (depth < nearest.second) nearest = {triangle.occurrence, depth};
    }
    return nearest;
  }

private:
  static constexpr double kSlack = 1e-9;
  struct Triangle {
    int occurrence;
    std::array<Vec3, 3> corners;
  };
  static double Cross2(Vec3 a, Vec3 b, double x, double y) { return (b.x - a.x) * (y - a.y) - (b.y - a.y) * (x - a.x); }

  std::vector<Triangle> triangles_;
};

/// Distance from a pixel to the nearest one that shows something else; 0 when it shows something else itself.
double PlainClearance(const IdBuffer& ids, int x, int y, int occurrence) {
  double nearest = std::min({x + 1, y + 1, ids.width - x, ids.height - y});
  for (int row = 0; row < ids.height; ++row) {
    for (int column = 0; column < ids.width; ++column) {
      if (ids.At(column, row) != occurrence) nearest = std::min(nearest, std::hypot(column - x, row - y));
    }
  }
  return nearest;
}

/// One view of the model, and what the leaders do in it.
class Look {
public:
  Look(const OccurrenceTree& tree, const VisibilityScene& scene, const ViewDirection& direction)
      : view(FitView(tree.GetModel(), tree.Leaves(), direction, {100, 100, 700, 500}, {800, 600})),
        ids(RenderIdBuffer(scene, view)),
        regions_(FindVisibleRegions(ids, view)),
        rays_(tree.GetModel(), tree.Leaves(), view) {}

  /// Parts of a callout with a leader that ends nowhere visible are hidden, every one of them.
  void ExpectHidden(const CalloutState& callout) const {
    for (const LeaderState& any : callout.leaders) {
      EXPECT_EQ(FindRegion(regions_, any.occurrence), nullptr) << callout.text;
    }
  }
  void ExpectVisibleEnd(const LeaderState& leader) const {
    const Vec3 end = view.ToPixel(leader.anchor);
    const auto [occurrence, depth] = rays_.Cast(end.x, end.y);
    EXPECT_EQ(occurrence, leader.occurrence);
    EXPECT_NEAR(depth, end.z, 3);
  }
  /// Whether the end is at another place than where the last view had it; if so that place was no good any more.
  [[nodiscard]] bool Jumped(const LeaderState& leader, Vec3 before) const {
    const Vec3 old = view.ToPixel(before), end = view.ToPixel(leader.anchor);
    if (std::hypot(old.x - end.x, old.y - end.y) <= 1.5) return false;
    const double room = PlainClearance(ids, static_cast<int>(std::floor(old.x)), static_cast<int>(std::floor(old.y)),
                                       leader.occurrence);
    const VisibleRegion* region = FindRegion(regions_, leader.occurrence);
    EXPECT_LT(room, 0.7 * (region != nullptr ? region->clearancePx : 0));
    return true;
  }

  const View view;
  const IdBuffer ids;

private:
  const std::vector<VisibleRegion> regions_;
  const PlainRays rays_;
};

TEST(PicturePicksTest, LeadersFollowWhatCanBeSeenAsTheCameraTurnsAndDoNotJumpWhereTheyNeedNot) {
  ImportRequest request;
  request.path = (std::filesystem::path(ZR_MODELS_DIR) / "MarbleTea.stp").string();
  if (!std::filesystem::exists(request.path)) GTEST_SKIP() << "no " << request.path;
  const ImportResult import = ImportModel(request);
  ASSERT_TRUE(import.model) << import.error;
  const OccurrenceTree tree(*import.model, {});
  HostProcess process("en");
  std::string error;
  ASSERT_TRUE(process.LoadComponent(error)) << error;
  const TextMeasure text(28);
  HostSession session(tree, ViewDirection(), text);
  session.SetTemplate(*BuiltInTemplate("number"), "en");
  session.SetMode(CalloutMode::OnePerItem);
  const VisibilityScene scene(*import.model);
  int shown = 0, hidden = 0, kept = 0, moved = 0;
  std::map<std::pair<unsigned, std::size_t>, Vec3> before;
  for (int azimuth = 0; azimuth < 360; azimuth += kStepDegrees) {
    SCOPED_TRACE(azimuth);
    const Look look(tree, scene, *ParseViewDirection(std::to_string(azimuth) + ",20", error));
    session.SetView(look.view, {0, 0, 800, 600});
    session.SetPicture(look.view, look.ids);
    if (azimuth == 0) session.Generate(SelectOccurrences(tree, -1, {}), false);
    for (const CalloutState& callout : session.GetCallouts()) {
      for (std::size_t i = 0; i < callout.leaders.size(); ++i) {
        const LeaderState& leader = callout.leaders[i];
        if (leader.hidden) continue;
        SCOPED_TRACE(callout.text);
        const std::pair<unsigned, std::size_t> key(callout.id, i);
        ++(leader.occluded ? hidden : shown);
        if (leader.occluded) {
          look.ExpectHidden(callout);
        } else {
          look.ExpectVisibleEnd(leader);
          if (before.count(key) > 0) ++(look.Jumped(leader, before[key]) ? moved : kept);
        }
        before[key] = leader.anchor;
      }
    }
  }
  std::printf("ends: %d visible, %d hidden; %d stayed, %d moved\n", shown, hidden, kept, moved);
  EXPECT_GT(shown, 36 * 8);
  EXPECT_GT(hidden, 0);
  EXPECT_GT(kept, moved);
}

}  // namespace
}  // namespace zrfigure
