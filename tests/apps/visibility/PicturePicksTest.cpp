// Turning the camera round a model: leaders end on what can be seen of their parts, and stay where they are as long as
// that is a good place.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>

#include <gtest/gtest.h>

#include "commands/FigurePlan.h"
#include "commands/HostProcess.h"
#include "commands/HostSession.h"
#include "import/ImportProcess.h"
#include "visibility/VisibilityScene.h"

namespace zrfigure {
namespace {

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
struct Look {
  Look(const OccurrenceTree& tree, const VisibilityScene& model, const ViewDirection& direction)
      : scene(model),
        view(FitView(tree.GetModel(), tree.Leaves(), direction, {100, 100, 700, 500}, {800, 600})),
        ids(RenderIdBuffer(scene, view)),
        regions(FindVisibleRegions(ids, view)) {}

  /// The end lies on its part where that can be seen, or nothing can be seen of any part of the callout.
  void ExpectGoodEnd(const CalloutState& callout, const LeaderState& leader) const {
    if (leader.occluded) {
      for (const LeaderState& any : callout.leaders) EXPECT_EQ(FindRegion(regions, any.occurrence), nullptr);
      return;
    }
    const Vec3 end = view.ToPixel(leader.anchor);
    const auto hit = scene.Pick(view, {end.x, end.y});
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->occurrence, leader.occurrence);
    EXPECT_NEAR(hit->depth, end.z, 3);
  }
  /// Whether the end is at another place than where the last view had it; if so that place was no good any more.
  [[nodiscard]] bool Jumped(const LeaderState& leader, Vec3 before) const {
    const Vec3 old = view.ToPixel(before), end = view.ToPixel(leader.anchor);
    if (std::hypot(old.x - end.x, old.y - end.y) <= 1.5) return false;
    const double room = PlainClearance(ids, static_cast<int>(std::floor(old.x)), static_cast<int>(std::floor(old.y)),
                                       leader.occurrence);
    const VisibleRegion* region = FindRegion(regions, leader.occurrence);
    EXPECT_LT(room, 0.7 * (region != nullptr ? region->clearancePx : 0));
    return true;
  }

  const VisibilityScene& scene;
  const View view;
  const IdBuffer ids;
  const std::vector<VisibleRegion> regions;
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
  for (int azimuth = 0; azimuth < 360; azimuth += 10) {
    SCOPED_TRACE(azimuth);
    const Look look(tree, scene, *ParseViewDirection(std::to_string(azimuth) + ",20", error));
    session.SetView(look.view, {0, 0, 800, 600});
    session.SetPicture(look.view, look.ids);
    if (azimuth == 0) session.Generate(tree.Leaves(), false);
    for (const CalloutState& callout : session.GetCallouts()) {
      SCOPED_TRACE(callout.text);
      for (std::size_t i = 0; i < callout.leaders.size(); ++i) {
        const LeaderState& leader = callout.leaders[i];
        if (leader.hidden) continue;
        ++(leader.occluded ? hidden : shown);
        look.ExpectGoodEnd(callout, leader);
        const auto [last, isNew] = before.try_emplace({callout.id, i});
        if (!leader.occluded && !isNew) ++(look.Jumped(leader, last->second) ? moved : kept);
        last->second = leader.anchor;
      }
    }
  }
  EXPECT_GT(shown, 36 * 8);
  EXPECT_GT(hidden, 0);
  EXPECT_GT(kept, moved);
}

}  // namespace
}  // namespace zrfigure
