#include "import/ModelSerialization.h"

#include <gtest/gtest.h>

#include <random>

namespace zrfigure {
namespace {

Model SmallModel() {
  Model model;
  model.sourceName = "small.step";
  Product part;
  part.name = "Büchse";
  part.properties = {{"material", "CuSn8"}, {"weldment", "false"}};
  part.mesh.positions = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
  part.mesh.normals = {{0, 0, 1}, {0, 0, 1}, {0, 0, 1}};
  part.mesh.triangles = {{0, 1, 2}};
  part.mesh.sharpEdges = {{{0, 0, 0}, {1, 0, 0}}, {}, {{1, 0, 0}, {0, 1, 0}, {0, 0, 0}}};
  Product assembly;
  assembly.name = "Welle";
  assembly.isAssembly = true;
  model.products = {assembly, part};
  Placement placement;
  placement.linear[0] = {0, 1, 0};
  placement.translation = {1, 2, 3};
  model.occurrences = {{-1, 0, "Welle", {}}, {0, 1, "Büchse:1", placement}};
  model.warnings = {"one", ""};
  return model;
}

TEST(ModelSerialization, GivesBackWhatWasWritten) {
  const std::optional<Model> model = DeserializeModel(SerializeModel(SmallModel()));
  ASSERT_TRUE(model.has_value());
  const Model expected = SmallModel();
  EXPECT_EQ(model->sourceName, expected.sourceName);
  EXPECT_EQ(model->warnings, expected.warnings);
  ASSERT_EQ(model->products.size(), 2U);
  EXPECT_TRUE(model->products[0].isAssembly);
  EXPECT_EQ(model->products[1].name, expected.products[1].name);
  EXPECT_EQ(model->products[1].properties, expected.products[1].properties);
  EXPECT_EQ(model->products[1].mesh.triangles, expected.products[1].mesh.triangles);
  EXPECT_EQ(model->products[1].mesh.sharpEdges, expected.products[1].mesh.sharpEdges);
  ASSERT_EQ(model->occurrences.size(), 2U);
  EXPECT_EQ(model->occurrences[1].name, "Büchse:1");
  EXPECT_EQ(model->occurrences[1].toWorld.linear, expected.occurrences[1].toWorld.linear);
  EXPECT_EQ(model->occurrences[1].toWorld.translation.z, 3);
  EXPECT_EQ(SerializeModel(*model), SerializeModel(expected));
}

TEST(ModelSerialization, RefusesEveryTruncationAndSurplus) {
  const std::string bytes = SerializeModel(SmallModel());
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    EXPECT_FALSE(DeserializeModel(std::string_view(bytes).substr(0, length)).has_value()) << length;
  }
  EXPECT_FALSE(DeserializeModel(bytes + '\0').has_value());
}

TEST(ModelSerialization, SurvivesFlippedBitsWithSoundModelOrNone) {
  const std::string bytes = SerializeModel(SmallModel());
  std::mt19937 random(7);
  int refused = 0;
  for (int i = 0; i < 3000; ++i) {
    std::string flipped = bytes;
    for (unsigned flips = 1 + random() % 4; flips > 0; --flips) {
      flipped[random() % flipped.size()] ^= static_cast<char>(1U << random() % 8);
    }
    const std::optional<Model> model = DeserializeModel(flipped);
    refused += model ? 0 : 1;
    for (const Occurrence& occurrence : model ? model->occurrences : std::vector<Occurrence>()) {
      ASSERT_LT(static_cast<std::size_t>(occurrence.product), model->products.size());
    }
  }
  EXPECT_GT(refused, 500);
}

TEST(ModelSerialization, RefusesIndicesOutsideTheModel) {
  const auto isRefused = [](void (*spoil)(Model&)) {
    Model model = SmallModel();
    spoil(model);
    return !DeserializeModel(SerializeModel(model)).has_value();
  };
  EXPECT_TRUE(isRefused([](Model& m) { m.products[1].mesh.triangles[0][2] = 3; }));
  EXPECT_TRUE(isRefused([](Model& m) { m.products[1].mesh.normals.pop_back(); }));
  EXPECT_TRUE(isRefused([](Model& m) { m.occurrences[1].product = 2; }));
  EXPECT_TRUE(isRefused([](Model& m) { m.occurrences[1].product = -1; }));
  EXPECT_TRUE(isRefused([](Model& m) { m.occurrences[1].parent = 1; }));
  EXPECT_TRUE(isRefused([](Model& m) { m.occurrences[1].parent = -1; }));
  EXPECT_TRUE(isRefused([](Model& m) { m.occurrences[0].parent = 0; }));
}

}  // namespace
}  // namespace zrfigure
