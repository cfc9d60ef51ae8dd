#include "import/ModelImporter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <numeric>
#include <stdexcept>

#include "BoxGltf.h"
#include "TemporaryFolder.h"
#include "import/ImportProcess.h"
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

/// Quantities of the parts by product, in first-seen order.
Quantities PartQuantities(const Model& model) {
  std::map<int, std::size_t> places;
  Quantities quantities;
  for (const Occurrence& occurrence : model.occurrences) {
    const Product& product = ProductOf(model, occurrence);
    if (product.isAssembly) continue;
    const auto [place, isNew] = places.emplace(occurrence.product, quantities.size());
    if (isNew) quantities.emplace_back(product.name, 0);
    ++quantities[place->second].second;
  }
  return quantities;
}

long QuantityOf(const Model& model, const std::string& name) {
  return std::count_if(model.occurrences.begin(), model.occurrences.end(),
                       [&](const Occurrence& occurrence) { return ProductOf(model, occurrence).name == name; });
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

/// Least cosine between a triangle and the normals at its corners, slivers left out.
double WorstNormal(const Mesh& mesh) {
  double worst = 1;
  for (const auto& t : mesh.triangles) {
    const Vec3 origin = ToVec3(mesh.positions[t[0]]);
    const Vec3 cross = Cross(ToVec3(mesh.positions[t[1]]) - origin, ToVec3(mesh.positions[t[2]]) - origin);
    if (Length(cross) < 1e-3) continue;
    for (const std::uint32_t corner : t) worst = std::min(worst, Dot(Normalized(cross), ToVec3(mesh.normals[corner])));
  }
  return worst;
}

struct WorldBox {
  Vec3 low{1e9, 1e9, 1e9}, high{-1e9, -1e9, -1e9};
};

WorldBox BoxOf(const Model& model) {
  WorldBox box;
  for (const Occurrence& occurrence : model.occurrences) {
    for (const auto& position : ProductOf(model, occurrence).mesh.positions) {
      const Vec3 p = TransformPoint(occurrence.toWorld, ToVec3(position));
      box.low = {std::min(box.low.x, p.x), std::min(box.low.y, p.y), std::min(box.low.z, p.z)};
      box.high = {std::max(box.high.x, p.x), std::max(box.high.y, p.y), std::max(box.high.z, p.z)};
    }
  }
  return box;
}

void ExpectBox(const Model& model, Vec3 low, Vec3 high) {
  EXPECT_LT(Length(BoxOf(model).low - low), 0.01);
  EXPECT_LT(Length(BoxOf(model).high - high), 0.01);
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
    const Quantities quantities = PartQuantities(model);
    EXPECT_EQ(std::accumulate(quantities.begin(), quantities.end(), 0, [](int n, auto& q) { return n + q.second; }),
              leaves);
    EXPECT_EQ(quantities.size(), distinct);
    EXPECT_EQ(model.warnings, std::vector<std::string>());
    for (const Product& product : model.products) {
      EXPECT_EQ(product.isAssembly, product.mesh.triangles.empty()) << product.name;
      EXPECT_TRUE(product.name.find("=>[") == std::string::npos && product.name != "COMPOUND") << product.name;
    }
  }
  fs::current_path(before);
}

TEST_F(SharedModelTest, CountsTheSamePartsInStepAndGltf) {
  std::vector<double> diagonals;
  for (const char* file : {"as1-oc-214.stp", "as1-oc-214.glb"}) {
    const Model model = Imported(folder_ / file);
    EXPECT_EQ(PartQuantities(model), (Quantities{{"nut", 8}, {"rod", 1}, {"bolt", 6}, {"l-bracket", 2}, {"plate", 1}}));
    EXPECT_EQ(QuantityOf(model, "nut-bolt-assembly"), 6);
    diagonals.push_back(Length(BoxOf(model).high - BoxOf(model).low));
  }
  EXPECT_NEAR(diagonals[0], diagonals[1], 0.05);
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

TEST_F(SharedModelTest, TakesVersionsOffProductNamesOnlyWhereTheIdentifierLacksThem) {
  const Model model = Imported(folder_ / "MarbleTea.stp");
  EXPECT_EQ(model.products.front().name, "tea02");  // "tea02 v55", identifier "tea02"
  EXPECT_EQ(QuantityOf(model, "servo v1"), 2);      // identifier "servo v1"; the assembly and its own geometry
  EXPECT_EQ(ProductNamed(model, "frame").properties.at("material"), "Steel");
}

class ExampleModelTest : public testing::Test {
protected:
  static const Model& Unit() {
    static const Model model = Imported(ExampleModel());
    return model;
  }
};

TEST_F(ExampleModelTest, HasPartsFastenersAndWeldment) {
  EXPECT_TRUE(Unit().warnings.empty());
  EXPECT_EQ(Unit().sourceName, "drive-unit.step");
  EXPECT_GE(PartQuantities(Unit()).size(), 15U);
  for (const char* fastener : {"Stud bolt M12x90", "Washer 12", "Hex nut M12", "Hex bolt M8x30", "Washer 8"}) {
    EXPECT_EQ(QuantityOf(Unit(), fastener), 4) << fastener;
  }
  EXPECT_EQ(ProductNamed(Unit(), "Frame weldment").properties.at("weldment"), "true");
  EXPECT_EQ(ProductNamed(Unit(), "Drive shaft").properties.at("material"), "C45");
}

TEST_F(ExampleModelTest, MeshesWindOutwardAndFollowTheSurfaces) {
  for (const Product& product : Unit().products) {
    if (product.isAssembly) continue;
    EXPECT_GT(Volume(product.mesh), 0) << product.name;
    EXPECT_GT(WorstNormal(product.mesh), 0.8) << product.name;
  }
  constexpr double kHoles = 3.14159265 * 16 * (4 * 6.5 * 6.5 + 4 * 4.5 * 4.5);
  const double plate = 570.0 * 220 * 16 - kHoles;
  EXPECT_NEAR(Volume(ProductNamed(Unit(), "Mounting plate").mesh), plate, plate * 1e-4);
}

TEST_F(ExampleModelTest, DrawsNeitherSeamsNorTangentEdges) {
  // Four circles; the seams of the two cylinders are not drawn, nor where a key's flanks run into its round ends.
  EXPECT_EQ(ProductNamed(Unit(), "Washer 12").mesh.sharpEdges.size(), 4U);
  EXPECT_EQ(ProductNamed(Unit(), "Parallel key 8x7x36").mesh.sharpEdges.size(), 8U);
  const Mesh& rail = ProductNamed(Unit(), "Side rail").mesh;
  EXPECT_EQ(rail.sharpEdges.size(), 24U);
  EXPECT_EQ(rail.positions.size(), 48U);  // eight faces of four corners, two of eight
}

TEST_F(ExampleModelTest, PartWithSecondRepresentationStaysOnePart) {
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

TEST_F(ExampleModelTest, TextOfAnyEncodingBecomesUtf8) {
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
  EXPECT_TRUE(model.products[0].isAssembly);
  ExpectBox(model, {0, -3000, 0}, {1000, 0, 2000});
  const Mesh& box = ProductOf(model, model.occurrences[1]).mesh;
  EXPECT_EQ(box.sharpEdges.size(), 12U);
  EXPECT_EQ(box.positions.size(), 24U);
  EXPECT_NEAR(Volume(box), 6e9, 1e4);
}

TEST(ModelImporter, MergesWhatGltfRepeatsAndCollapsesRepresentations) {
  const Model model = ImportedBoxes(
      R"([{"name":"Rack","children":[1,2,3,6]},{"name":"Box_1","mesh":0},{"name":"Box_2","mesh":1,"translation":[5,0,0]},)"
      R"({"name":"Bracket","children":[4,5]},{"name":"=>[0:1:1:3]","mesh":2},{"name":"=>[0:1:1:4]","mesh":3},)"
      R"({"name":"Empty frame"}])");
  EXPECT_EQ(PartQuantities(model), (Quantities{{"Box", 2}, {"Bracket", 1}}));
  EXPECT_EQ(model.products.size(), 3U);
}

TEST(ModelImporter, KeepsObjUnitsAndStandsItUp) {
  const TemporaryFolder folder;
  const Model model = Imported(folder.Write("two.obj",
                                            "# two triangles\no flat\nv 0 0 0\nv 10 0 0\nv 0 20 0\nf 1 2 3\n"
                                            "o far\nv 0 0 -30\nv 10 0 -30\nv 0 20 -30\nf 4 5 6\n"));
  EXPECT_EQ(PartQuantities(model), (Quantities{{"flat", 1}, {"far", 1}}));
  EXPECT_EQ(model.products[0].name, "two");
  ExpectBox(model, {0, 0, 0}, {10, 30, 20});
}

}  // namespace
}  // namespace zrfigure
