#include "visibility/VisibilityScene.h"

#include <gtest/gtest.h>

#include <tuple>

#include "apps/drawing/TestShapes.h"
#include "visibility/IdBuffer.h"

namespace zrfigure {
namespace {

// Two boxes in a row along the line of sight of the front view; the far one is wider.
Model BoxBeforeBox() {
  return MakeModel({MakeBox({-5, 0, -5}, {5, 10, 5}), MakeBox({-20, 30, -20}, {20, 40, 20})});
}

TEST(VisibilitySceneTest, NearestShownSurfaceIsPickedAndOccludes) {
  const Model model = BoxBeforeBox();
  VisibilityScene scene(model);
  const View view = ViewOf(model, "front", 400);
  const OcclusionQuery query{{0, 30, 0}, {0, -1, 0}, 0.1, 2, 0};
  const auto near = scene.Pick(view, {200, 200});
  ASSERT_TRUE(near);
  EXPECT_NEAR(near->point.y, 0, 1e-4);
  EXPECT_NEAR(near->depth, view.ToPixel(near->point).z, 1e-2);
  EXPECT_EQ(scene.Pick(view, {40, 40}).value().occurrence, 2);
  EXPECT_FALSE(scene.Pick(view, {5, 5}));
  for (const auto& [shown, nearest] : {std::pair(std::vector<int>{2, 77}, 2), {{1, 2}, 1}}) {
    scene.SetShown(shown);
    EXPECT_EQ(scene.Pick(view, {200, 200})->occurrence, nearest);
    EXPECT_EQ(scene.Occluded(query), nearest == 1);
  }
}

/// Seen from the front, from a point at a depth; with the part it belongs to.
OcclusionQuery At(double y, double tolerance, int own, double ownTolerance) {
  return {{0, y, 0}, {0, -1, 0}, tolerance, own, ownTolerance};
}

TEST(VisibilitySceneTest, NearSurfacesOccludeByWhoOwnsThem) {
  const Model model = BoxBeforeBox();
  const VisibilityScene scene(model);
  // The point stands inside the near box, whose front is at y = 0.
  const std::tuple<const char*, OcclusionQuery, bool> cases[] = {
      {"just behind", At(0.5, 0.1, -1, 0), true},
      {"within the tolerance", At(0.5, 1, -1, 0), false},
      {"own within own tolerance", At(0.5, 0.1, 1, 1), false},
      {"foreign within own tolerance", At(0.5, 0.1, 2, 1), true},
      {"own beyond own tolerance", At(5, 0.1, 1, 1), true},
      {"foreign beyond own surface", At(35, 0.1, 2, 100), true},
      {"in front", At(-1, 0, -1, 0), false}};
  for (const auto& [name, query, occluded] : cases) EXPECT_EQ(scene.Occluded(query), occluded) << name;
}

TEST(IdBufferTest, EveryPixelAgreesWithAPickAtItsCentre) {
  Model model = MakeModel({MakeBox({0, 0, 0}, {30, 20, 10}), MakeSphere(12, 32), MakeCylinder(6, 25, 24)});
  model.occurrences[2].toWorld.translation = {15, 10, 15};
  model.occurrences[3].toWorld.linear = {{{0, 0, 1}, {0, 1, 0}, {-1, 0, 0}}};  // Lying along -X, mirrored.
  const VisibilityScene scene(model);
  const View view = ViewOf(model, "iso", 160);
  const IdBuffer buffer = RenderIdBuffer(scene, view);
  std::vector<int> seen(model.occurrences.size());
  for (int y = 0; y < buffer.height; ++y) {
    for (int x = 0; x < buffer.width; ++x) {
      const auto hit = scene.Pick(view, {x + 0.5, y + 0.5});
      ASSERT_EQ(buffer.At(x, y), hit ? hit->occurrence : IdBuffer::kBackground) << x << ' ' << y;
      if (hit) ++seen[hit->occurrence];
    }
  }
  for (const int leaf : LeafOccurrences(model)) EXPECT_GT(seen[leaf], 100) << leaf;
  EXPECT_EQ(buffer.At(-1, 80), IdBuffer::kBackground);
  EXPECT_EQ(buffer.At(160, 80), IdBuffer::kBackground);
  EXPECT_EQ(RenderIdBuffer(scene, view).ids, buffer.ids);
}

}  // namespace
}  // namespace zrfigure
