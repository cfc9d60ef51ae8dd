#include "import/ModelImporter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>

#include "BoxGltf.h"
#include "TemporaryFolder.h"
#include "import/CreaseMesh.h"
#include "import/ImportProcess.h"
#include "import/NameText.h"
#include "visibility/VectorMath.h"

namespace zrfigure {
namespace {

namespace fs = std::filesystem;

Model Imported(const fs::path& path) {
  ImportRequest request;
  request.path = path.string();
  ImportResult result = ImportModel(request);
  EXPECT_EQ(result.error, "");
  return result.model.value_or(Model{});
}

const Product& ProductOf(const Model& model, const Occurrence& occurrence) {
  return model.products[static_cast<std::size_t>(occurrence.product)];
}

using Quantities = std::vector<std::pair<std::string, int>>;

/// Of the parts, by product.
Quantities PartQuantities(const Model& model) {
  Quantities quantities;
  for (int i = 0; const Product& product : model.products) {
    const auto count = std::ranges::count(model.occurrences, i++, &Occurrence::product);
    if (!product.isAssembly) quantities.emplace_back(product.name, count);
  }
  return quantities;
}

long QuantityOf(const Model& model, const std::string& name) {
  return std::ranges::count(model.occurrences, name, [&](const Occurrence& o) { return ProductOf(model, o).name; });
}

const Product& ProductNamed(const Model& model, const std::string& name) {
  for (const Product& product : model.products) {
    if (product.name == name) return product;
  }
  throw std::out_of_range("no product '" + name + "'");
}

/// Of the enclosed body; positive when triangles wind outward.
double Volume(const Mesh& mesh) {
  double sum = 0;
  for (const auto& [a, b, c] : mesh.triangles) {
    sum += Dot(ToVec3(mesh.positions[a]), Cross(ToVec3(mesh.positions[b]), ToVec3(mesh.positions[c])));
  }
  return sum / 6;
}

/// The box round all parts.
void ExpectBox(const Model& model, Vec3 low, Vec3 high) {
  Vec3 least{1e9, 1e9, 1e9}, most{-1e9, -1e9, -1e9};
  for (const Occurrence& occurrence : model.occurrences) {
    for (const auto& position : ProductOf(model, occurrence).mesh.positions) {
      const Vec3 p = TransformPoint(occurrence.toWorld, ToVec3(position));
      least = {std::min(least.x, p.x), std::min(least.y, p.y), std::min(least.z, p.z)};
      most = {std::max(most.x, p.x), std::max(most.y, p.y), std::max(most.z, p.z)};
    }
  }
  EXPECT_LT(Length(least - low) + Length(most - high), 0.01);
}

/// Over models that others made; skipped where they are not at hand.
class SharedModelTest : public testing::Test {
protected:
  void SetUp() override {
    if (!fs::exists(folder_)) GTEST_SKIP() << "no models in " << folder_;
  }

  const fs::path folder_ = ZR_MODELS_DIR;
};

TEST_F(SharedModelTest, GivesItsPartsAndSoundMeshesFromAnyWorkingFolder) {
  const fs::path before = fs::current_path();
  fs::current_path(folder_);  // External references stand beside their file, not here.
  const std::tuple<const char*, int, std::size_t> files[] = {
      {"as1-oc-214.glb", 18, 5}, {"MarbleTea.stp", 22, 16},         {"Mykroscope.step", 7, 7},
      {"as1-oc-214.stp", 18, 5}, {"large-testhall.step", 3680, 75}, {"s1-c5-214/s1-c5-214.stp", 11, 8}};
  for (const auto& [file, leaves, distinct] : files) {
    SCOPED_TRACE(file);
    const Model model = Imported(file);
    int parts = 0;
    for (const auto& [name, quantity] : PartQuantities(model)) {
      parts += quantity;
      EXPECT_TRUE(quantity > 0 && name.find("=>[") == std::string::npos && name != "COMPOUND") << name;
    }
    EXPECT_EQ(std::pair(parts, PartQuantities(model).size()), std::pair(leaves, distinct));
    EXPECT_EQ(model.warnings, std::vector<std::string>());
    for (const Product& product : model.products) EXPECT_EQ(product.isAssembly, product.mesh.triangles.empty());
  }
  fs::current_path(before);
  // Versions come off product names only where the identifier lacks them.
  const Model tea = Imported(folder_ / "MarbleTea.stp");
  EXPECT_EQ(tea.products.front().name, "tea02");  // "tea02 v55", identifier "tea02"
  EXPECT_EQ(QuantityOf(tea, "servo v1"), 2);      // identifier "servo v1"; the assembly and its own geometry
  EXPECT_EQ(ProductNamed(tea, "frame").properties.at("material"), "Steel");
}

TEST_F(SharedModelTest, NamesMissingReferencesAndLeavesTheirPartsOut) {
  const TemporaryFolder copy;
  fs::copy(folder_ / "s1-c5-214", copy.Path());
  fs::remove(copy.Path() / "FOOT_BACK_000.stp");
  const Model model = Imported(copy.Path() / "s1-c5-214.stp");
  EXPECT_EQ(model.warnings,
            (std::vector<std::string>{"referenced file 'FOOT_BACK_000.stp' cannot be read",
                                      "part 'FOOT_BACK_000' has no faces and is left out (2 occurrences)"}));
  EXPECT_EQ(QuantityOf(model, "FOOT_BACK_000"), 0);
  EXPECT_EQ(QuantityOf(model, "FOOT_FRONT_000"), 2);
}

const Model& Unit() {
  static const Model model = Imported(ExampleModel());
  return model;
}

TEST(ExampleModelTest, MeshesWindOutwardAndFollowTheSurfaces) {
  for (const Product& product : Unit().products) {
    EXPECT_TRUE(product.isAssembly || Volume(product.mesh) > 0) << product.name;
  }
  constexpr double plate = 16 * (570 * 220 - 3.14159265 * 4 * (6.5 * 6.5 + 4.5 * 4.5));
  EXPECT_NEAR(Volume(ProductNamed(Unit(), "Mounting plate").mesh), plate, plate * 1e-4);
  EXPECT_EQ(Unit().warnings, std::vector<std::string>());
  EXPECT_EQ(ProductNamed(Unit(), "Frame weldment").properties.at("weldment"), "true");
}

TEST(ExampleModelTest, DrawsNeitherSeamsNorTangentEdges) {
  // Four circles; the seams of the two cylinders are not drawn, nor where a key's flanks run into its round ends.
  EXPECT_EQ(ProductNamed(Unit(), "Washer 12").mesh.sharpEdges.size(), 4U);
  EXPECT_EQ(ProductNamed(Unit(), "Parallel key 8x7x36").mesh.sharpEdges.size(), 8U);
  EXPECT_EQ(ProductNamed(Unit(), "Side rail").mesh.positions.size(), 48U);  // eight faces of four corners, two of eight
}

TEST(ExampleModelTest, PartWithSecondRepresentationStaysOnePart) {
  std::string text = ReadWholeFile(ExampleModel());
  ASSERT_NE(text.find("#1537 = SHAPE_DEFINITION_REPRESENTATION(#1538,#1544)"), std::string::npos) << "the gusset";
  text.insert(text.rfind("ENDSEC;"), R"(#900001 = SHELL_BASED_SURFACE_MODEL('',(#1546));
#900002 = MANIFOLD_SURFACE_SHAPE_REPRESENTATION('',(#900001),#1728);
#900003 = SHAPE_DEFINITION_REPRESENTATION(#1538,#900002);
)");
  const TemporaryFolder folder;
  const Model model = Imported(folder.Write("hybrid.step", text));
  EXPECT_EQ(PartQuantities(model), PartQuantities(Unit()));
  EXPECT_EQ(ProductNamed(model, "Gusset").mesh.triangles.size(), ProductNamed(Unit(), "Gusset").mesh.triangles.size());
}

TEST(ExampleModelTest, TextOfAnyEncodingBecomesUtf8) {
  const std::pair<const char*, const char*> encoded[] = {
      {"Windows-1252", "'Gr\xF6\xDF\x65 f\xFCr 2\x96\x34 mm'"},
      {"UTF-8", "'Größe für 2–4 mm'"},
      {"escapes", "'Gr\\X2\\00F600DF\\X0\\e f\\X2\\00FC\\X0\\r 2\\X2\\2013\\X0\\4 mm'"}};
  for (const auto& [encoding, name] : encoded) {
    const TemporaryFolder folder;
    std::string text = ReadWholeFile(ExampleModel());
    const std::string before = "'V-belt pulley'";
    for (std::size_t at; (at = text.find(before)) != std::string::npos;) text.replace(at, before.size(), name);
    EXPECT_EQ(QuantityOf(Imported(folder.Write("text.step", text)), "Größe für 2–4 mm"), 1) << encoding;
  }
}

Model ImportedBoxes(const std::string& nodes) {
  const TemporaryFolder folder;
  folder.Write("box.bin", BoxBuffer());
  return Imported(folder.Write("box.gltf", BoxDocument(nodes)));
}

TEST(ModelImporter, TurnsGltfToMillimetresAndZUp) {
  const Model model = ImportedBoxes(kOneBoxNode);
  ASSERT_EQ(model.occurrences.size(), 2U) << "an assembly with one part";
  ExpectBox(model, {0, -3000, 0}, {1000, 0, 2000});
  const Mesh& box = ProductOf(model, model.occurrences[1]).mesh;
  EXPECT_EQ(std::pair(box.sharpEdges.size(), box.positions.size()), std::pair(std::size_t{12}, std::size_t{24}));
  EXPECT_NEAR(Volume(box), 6e9, 1e4);
}

TEST(ModelImporter, MergesWhatGltfRepeatsAndCollapsesRepresentations) {
  const Model model = ImportedBoxes(
      R"([{"name":"Rack","children":[1,2,3,6]},{"name":"Box_1","mesh":0},{"name":"Box_2","mesh":1,"translation":[5,0,0]},)"
      R"({"name":"Bracket","children":[4,5]},{"name":"=>[0:1:1:3]","mesh":2},{"name":"=>[0:1:1:4]","mesh":3},)"
      R"({"name":"Empty frame"}])");
  EXPECT_EQ(PartQuantities(model), (Quantities{{"Box", 2}, {"Bracket", 1}}));
}

TEST(ModelImporter, KeepsObjUnitsAndStandsItUp) {
  const TemporaryFolder folder;
  const Model model = Imported(folder.Write("two.obj",
                                            "# two triangles\no flat\nv 0 0 0\nv 10 0 0\nv 0 20 0\nf 1 2 3\n"
                                            "o far\nv 0 0 -30\nv 10 0 -30\nv 0 20 -30\nf 4 5 6\n"));
  EXPECT_EQ(PartQuantities(model), (Quantities{{"flat", 1}, {"far", 1}}));
  ExpectBox(model, {0, 0, 0}, {10, 30, 20});
}

/// An upright prism whose quads share no vertex; open at both ends.
TriangleSoup Tube(int sides) {
  TriangleSoup soup;
  const auto corner = [sides](int i, float z) {
    const double angle = 2 * std::numbers::pi * (i % sides) / sides;
    return std::array<float, 3>{static_cast<float>(10 * std::cos(angle)), static_cast<float>(10 * std::sin(angle)), z};
  };
  for (int i = 0; i < sides; ++i) {
    const auto first = static_cast<std::uint32_t>(soup.positions.size());
    for (const float z : {0.F, 5.F}) soup.positions.insert(soup.positions.end(), {corner(i, z), corner(i + 1, z)});
    soup.triangles.insert(soup.triangles.end(), {{first, first + 1, first + 3}, {first, first + 3, first + 2}});
  }
  return soup;
}

TEST(CreaseMesh, SmoothsAngleBelowThirtyDegreesAndSplitsAbove) {
  const Mesh round = BuildCreasedMesh(Tube(13));  // 27.7 degrees from side to side
  EXPECT_EQ(round.positions.size(), 26U);
  ASSERT_EQ(round.sharpEdges.size(), 2U) << "the two rims";
  EXPECT_EQ(round.sharpEdges[0].size(), 14U);
  EXPECT_EQ(round.sharpEdges[0].front(), round.sharpEdges[0].back());
  for (std::size_t i = 0; i < round.normals.size(); ++i) {
    const auto& n = round.normals[i];
    EXPECT_NEAR(std::hypot(n[0], n[1], n[2]), 1, 1e-5);
    EXPECT_NEAR((n[0] * round.positions[i][0] + n[1] * round.positions[i][1]) / 10, 1, 1e-3) << "radial";
  }
  const Mesh angular = BuildCreasedMesh(Tube(11));  // 32.7 degrees
  EXPECT_EQ(angular.positions.size(), 44U);
  EXPECT_EQ(angular.sharpEdges.size(), 33U) << "a rib and two rim pieces a side";
}

TEST(NameText, CleansTextToValidUtf8WithoutControls) {
  const std::pair<const char*, const char*> texts[] = {
      {"  Schraube\r\n M8\t", "Schraube M8"},
      {"f\xC3\xBCr \xE6\x97\xA5 \xF0\x9F\x94\xA9", "f\xC3\xBCr \xE6\x97\xA5 \xF0\x9F\x94\xA9"},
      {"a\xFC\142\xC3", "ab"},                         // raw and cut sequences
      {"\xC0\x80\xED\xA0\x80\xF4\x90\x80\x80x", "x"},  // overlong, surrogate, out of range
      {"a\xC2\x85\142", "a b"}};
  for (const auto& [text, clean] : texts) EXPECT_EQ(CleanText(text), clean);
  EXPECT_LT(CleanText(std::string(1 << 18, 'x')).size(), 1100u);
}

TEST(NameText, TakesOffOnlyRealSuffixes) {
  EXPECT_EQ(WithoutInstanceSuffix("Clip v2:1"), "Clip v2");
  for (const char* name : {"nut", "nut_", "_3", "nut_a3", "M8x30"}) EXPECT_EQ(WithoutInstanceSuffix(name), name);
  for (const char* name : {"SOLID 1", "Solid plate", "=>", "[0:1]"}) EXPECT_FALSE(IsInventedName(name)) << name;
  for (const auto& [name, id] : {std::pair{"servo v1", "servo v1"}, {"tea02 vx", "tea02"}, {" v5", ""}}) {
    EXPECT_FALSE(IsVersionOf(name, id)) << name;
  }
}

}  // namespace
}  // namespace zrfigure
