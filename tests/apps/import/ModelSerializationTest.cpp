#include "import/ModelSerialization.h"

#include <gtest/gtest.h>

#include <tuple>

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
  const Model expected = SmallModel();
  const std::optional<Model> model = DeserializeModel(SerializeModel(expected));
  ASSERT_TRUE(model && model->products.size() == 2 && model->occurrences.size() == 2);
  EXPECT_EQ(std::tie(model->sourceName, model->warnings), std::tie(expected.sourceName, expected.warnings));
  const Product &assembly = model->products[0], &part = model->products[1], &sent = expected.products[1];
  EXPECT_TRUE(assembly.isAssembly);
  EXPECT_EQ(std::tie(part.name, part.properties, part.mesh.triangles, part.mesh.sharpEdges),
            std::tie(sent.name, sent.properties, sent.mesh.triangles, sent.mesh.sharpEdges));
  const Occurrence &back = model->occurrences[1], &first = expected.occurrences[1];
  EXPECT_EQ(std::tie(back.name, back.toWorld.linear), std::tie(first.name, first.toWorld.linear));
  EXPECT_EQ(back.toWorld.translation.z, 3);
  EXPECT_EQ(SerializeModel(*model), SerializeModel(expected));
}

TEST(ModelSerialization, RefusesEveryTruncationSurplusAndHugeCount) {
  const std::string bytes = SerializeModel(SmallModel());
  int refused = 0;
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    EXPECT_FALSE(DeserializeModel(std::string_view(bytes).substr(0, at)).has_value()) << at;
    const std::optional<Model> model = DeserializeModel(std::string(bytes).replace(at, 1, "\xff"));
    refused += model ? 0 : 1;
    for (const Occurrence& occurrence : model ? model->occurrences : std::vector<Occurrence>()) {
      ASSERT_LT(static_cast<std::size_t>(occurrence.product), model->products.size()) << at;
    }
  }
  EXPECT_GT(refused, 100);
  EXPECT_FALSE(DeserializeModel(bytes + '\0').has_value());
}

TEST(ModelSerialization, RefusesIndicesOutsideTheModel) {
  void (*const spoilers[])(Model&) = {[](Model& m) { m.products[1].mesh.triangles[0][2] = 3; },
                                      [](Model& m) { m.products[1].mesh.normals.pop_back(); },
                                      [](Model& m) { m.occurrences[1].product = 2; },
                                      [](Model& m) { m.occurrences[1].product = -1; },
                                      [](Model& m) { m.occurrences[1].parent = 1; },
                                      [](Model& m) { m.occurrences[1].parent = -1; },
                                      [](Model& m) { m.occurrences[0].parent = 0; }};
  for (std::size_t i = 0; i < std::size(spoilers); ++i) {
    Model model = SmallModel();
    spoilers[i](model);
    EXPECT_FALSE(DeserializeModel(SerializeModel(model)).has_value()) << "spoiler " << i;
  }
}

}  // namespace
}  // namespace zrfigure
