#include "visibility/VisibilityScene.h"

#include <gtest/gtest.h>

#include "apps/drawing/TestShapes.h"
#include "visibility/IdBuffer.h"

namespace zrfigure {
namespace {

// Two boxes in a row along the line of sight of the front view; the far one is wider.
Model BoxBeforeBox() {
  return MakeModel({MakeBox({-5, 0, -5}, {5, 10, 5}), MakeBox({-20, 30, -20}, {20, 40, 20})});
}

TEST(VisibilitySceneTest, PickMeetsTheNearestSurface) {
  const Model model = BoxBeforeBox();
  const VisibilityScene scene(model);
  const View view = ViewOf(model, "front", 400);
  const auto near = scene.Pick(view, {200, 200});
  ASSERT_TRUE(near);
  EXPECT_EQ(near->occurrence, 1);
  EXPECT_NEAR(near->point.y, 0, 1e-4);
  EXPECT_NEAR(near->depth, view.ToPixel(near->point).z, 1e-2);
  EXPECT_EQ(scene.Pick(view, {40, 40}).value().occurrence, 2);
  EXPECT_FALSE(scene.Pick(view, {5, 5}));
}

TEST(VisibilitySceneTest, HiddenOccurrencesNeitherPickNorOcclude) {
  const Model model = BoxBeforeBox();
  VisibilityScene scene(model);
  const View view = ViewOf(model, "front", 400);
  const OcclusionQuery query{{0, 30, 0}, {0, -1, 0}, 0.1, 2, 0};
  EXPECT_TRUE(scene.Occluded(query));
  scene.SetShown(std::vector<int>{2, 77});
  EXPECT_EQ(scene.Pick(view, {200, 200})->occurrence, 2);
  EXPECT_FALSE(scene.Occluded(query));
  scene.SetShown(std::vector<int>{1, 2});
  EXPECT_EQ(scene.Pick(view, {200, 200})->occurrence, 1);
}

TEST(VisibilitySceneTest, NearSurfacesOccludeByWhoOwnsThem) {
  const Model model = BoxBeforeBox();
  const VisibilityScene scene(model);
  struct Case {
    const char* name;
    double y;  // The point stands inside the near box, whose front is at y = 0.
    int own;
    double tolerance, ownTolerance;
    bool occluded;
  };
  const Case cases[] = {{"just behind", 0.5, -1, 0.1, 0, true},
                        {"within the tolerance", 0.5, -1, 1, 0, false},
                        {"own within own tolerance", 0.5, 1, 0.1, 1, false},
                        {"foreign within own tolerance", 0.5, 2, 0.1, 1, true},
                        {"own beyond own tolerance", 5, 1, 0.1, 1, true},
                        {"foreign beyond own surface", 35, 2, 0.1, 100, true},
                        {"in front", -1, -1, 0, 0, false}};
  for (const Case& c : cases) {
    EXPECT_EQ(scene.Occluded({{0, c.y, 0}, {0, -1, 0}, c.tolerance, c.own, c.ownTolerance}), c.occluded) << c.name;
  }
}

TEST(VisibilitySceneTest, EmptySceneShowsNothing) {
  const Model model = MakeModel({});
  const VisibilityScene scene(model);
  const View view = ViewOf(model, "iso", 50);
  EXPECT_FALSE(scene.Pick(view, {25, 25}));
  EXPECT_FALSE(scene.Occluded({{0, 0, 0}, {0, 0, 1}, 0, -1, 0}));
  EXPECT_EQ(RenderIdBuffer(scene, view).At(25, 25), IdBuffer::kBackground);
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
