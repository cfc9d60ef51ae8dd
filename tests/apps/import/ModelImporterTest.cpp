#include "import/ModelImporter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <map>
#include <regex>

#include "TemporaryFolder.h"
#include "import/ImportProcess.h"
#include "import/VectorMath.h"

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

/// Quantities of the parts by product, in first-seen order.
std::vector<std::pair<std::string, int>> PartQuantities(const Model& model) {
  std::map<int, int> count;
  std::vector<int> order;
  for (const Occurrence& occurrence : model.occurrences) {
    if (ProductOf(model, occurrence).isAssembly) continue;
    if (++count[occurrence.product] == 1) order.push_back(occurrence.product);
  }
  std::vector<std::pair<std::string, int>> quantities;
  for (const int i : order) quantities.emplace_back(model.products[static_cast<std::size_t>(i)].name, count[i]);
  return quantities;
}

int QuantityOf(const Model& model, const std::string& name) {
  return static_cast<int>(
      std::count_if(model.occurrences.begin(), model.occurrences.end(),
                    [&](const Occurrence& occurrence) { return ProductOf(model, occurrence).name == name; }));
}

/// The first product of that name; an empty one, with a failure, when there is none.
const Product& ProductNamed(const Model& model, const std::string& name) {
  static const Product none;
  const auto found =
      std::find_if(model.products.begin(), model.products.end(), [&](const Product& p) { return p.name == name; });
  if (found != model.products.end()) return *found;
  ADD_FAILURE() << "no product '" << name << "'";
  return none;
}

std::string PropertyOf(const Product& product, const std::string& key) {
  const auto found = product.properties.find(key);
  return found == product.properties.end() ? std::string() : found->second;
}

Vec3 PointOf(const std::array<float, 3>& p) {
  return {p[0], p[1], p[2]};
}

/// Of the enclosed body; positive when triangles wind outward.
double Volume(const Mesh& mesh) {
  double sum = 0;
  for (const auto& t : mesh.triangles) {
    sum += Dot(PointOf(mesh.positions[t[0]]), Cross(PointOf(mesh.positions[t[1]]), PointOf(mesh.positions[t[2]])));
  }
  return sum / 6;
}

/// Least cosine between a triangle and the normals at its corners, slivers left out.
double WorstNormal(const Mesh& mesh) {
  double worst = 1;
  for (const auto& t : mesh.triangles) {
    const Vec3 origin = PointOf(mesh.positions[t[0]]);
    const Vec3 cross = Cross(PointOf(mesh.positions[t[1]]) - origin, PointOf(mesh.positions[t[2]]) - origin);
    if (Length(cross) < 1e-3) continue;
    for (const std::uint32_t corner : t) worst = std::min(worst, Dot(Normalized(cross), PointOf(mesh.normals[corner])));
  }
  return worst;
}

std::array<double, 6> WorldBox(const Model& model) {
  std::array<double, 6> box{1e9, 1e9, 1e9, -1e9, -1e9, -1e9};
  for (const Occurrence& occurrence : model.occurrences) {
    const auto& m = occurrence.toWorld.linear;
    for (const auto& p : ProductOf(model, occurrence).mesh.positions) {
      const Vec3 rotated = Vec3{m[0][0], m[0][1], m[0][2]} * p[0] + Vec3{m[1][0], m[1][1], m[1][2]} * p[1] +
                           Vec3{m[2][0], m[2][1], m[2][2]} * p[2];
      const Vec3 world = rotated + occurrence.toWorld.translation;
      const std::array<double, 3> values{world.x, world.y, world.z};
      for (std::size_t i = 0; i < 3; ++i) {
        box[i] = std::min(box[i], values[i]);
        box[i + 3] = std::max(box[i + 3], values[i]);
      }
    }
  }
  return box;
}

/// Width, depth and height in ascending order: for files that disagree on which axis stands up.
std::array<double, 3> SortedExtents(const Model& model) {
  const auto box = WorldBox(model);
  std::array<double, 3> extents{box[3] - box[0], box[4] - box[1], box[5] - box[2]};
  std::sort(extents.begin(), extents.end());
  return extents;
}

struct KnownModel {
  const char* file;
  int leaves;
  int distinct;
};

void PrintTo(const KnownModel& known, std::ostream* out) {
  *out << known.file;
}

std::string TestName(std::string text) {
  std::erase_if(text, [](unsigned char c) { return std::isalnum(c) == 0; });
  return text;
}

class KnownModels : public testing::TestWithParam<KnownModel> {};

TEST_P(KnownModels, GiveTheirPartsAndSoundMeshes) {
  const KnownModel& known = GetParam();
  const fs::path path = fs::path(ZR_MODELS_DIR) / known.file;
  if (!fs::exists(path)) GTEST_SKIP() << "no " << path;
  const Model model = Imported(path);
  const auto quantities = PartQuantities(model);
  int leaves = 0;
  for (const auto& [name, quantity] : quantities) leaves += quantity;
  EXPECT_EQ(leaves, known.leaves);
  EXPECT_EQ(static_cast<int>(quantities.size()), known.distinct);
  EXPECT_TRUE(model.warnings.empty()) << model.warnings.front();
  for (const Product& product : model.products) {
    EXPECT_EQ(product.isAssembly, product.mesh.triangles.empty()) << product.name;
    EXPECT_EQ(product.name.find("=>["), std::string::npos);
    EXPECT_NE(product.name, "COMPOUND");
  }
}

INSTANTIATE_TEST_SUITE_P(ModelImporter, KnownModels,
                         testing::Values(KnownModel{"as1-oc-214.stp", 18, 5}, KnownModel{"as1-oc-214.glb", 18, 5},
                                         KnownModel{"MarbleTea.stp", 22, 16}, KnownModel{"Mykroscope.step", 7, 7},
                                         KnownModel{"large-testhall.step", 3680, 75},
                                         KnownModel{"s1-c5-214/s1-c5-214.stp", 11, 8}),
                         [](const testing::TestParamInfo<KnownModel>& known) { return TestName(known.param.file); });

TEST(ModelImporter, CountsTheSamePartsInStepAndGltf) {
  if (!fs::exists(fs::path(ZR_MODELS_DIR) / "as1-oc-214.glb")) GTEST_SKIP();
  const Model step = Imported(fs::path(ZR_MODELS_DIR) / "as1-oc-214.stp");
  const Model gltf = Imported(fs::path(ZR_MODELS_DIR) / "as1-oc-214.glb");
  const std::vector<std::pair<std::string, int>> expected{
      {"nut", 8}, {"rod", 1}, {"bolt", 6}, {"l-bracket", 2}, {"plate", 1}};
  EXPECT_EQ(PartQuantities(step), expected);
  EXPECT_EQ(PartQuantities(gltf), expected);
  EXPECT_EQ(QuantityOf(step, "nut-bolt-assembly"), 6);
  EXPECT_EQ(QuantityOf(gltf, "nut-bolt-assembly"), 6);
  const auto stepSize = SortedExtents(step);
  const auto gltfSize = SortedExtents(gltf);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(stepSize[i], gltfSize[i], 0.05);
}

TEST(ModelImporter, FindsExternalReferencesFromAnyWorkingFolder) {
  const fs::path folder = fs::path(ZR_MODELS_DIR) / "s1-c5-214";
  if (!fs::exists(folder)) GTEST_SKIP();
  const fs::path before = fs::current_path();
  fs::current_path(folder.parent_path());
  const Model model = Imported("s1-c5-214/s1-c5-214.stp");
  fs::current_path(before);
  EXPECT_EQ(PartQuantities(model).size(), 8U);
}

TEST(ModelImporter, NamesMissingReferencesAndLeavesTheirPartsOut) {
  const fs::path folder = fs::path(ZR_MODELS_DIR) / "s1-c5-214";
  if (!fs::exists(folder)) GTEST_SKIP();
  const TemporaryFolder copy;
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (entry.path().filename() != "FOOT_BACK_000.stp") fs::copy(entry.path(), copy.Path());
  }
  const Model model = Imported(copy.Path() / "s1-c5-214.stp");
  const std::vector<std::string> expected{"referenced file 'FOOT_BACK_000.stp' cannot be read",
                                          "part 'FOOT_BACK_000' has no faces and is left out (2 occurrences)"};
  EXPECT_EQ(model.warnings, expected);
  EXPECT_EQ(QuantityOf(model, "FOOT_BACK_000"), 0);
  EXPECT_EQ(QuantityOf(model, "FOOT_FRONT_000"), 2);
}

TEST(ModelImporter, TakesVersionsOffProductNamesOnlyWhereTheIdentifierLacksThem) {
  if (!fs::exists(fs::path(ZR_MODELS_DIR) / "MarbleTea.stp")) GTEST_SKIP();
  const Model model = Imported(fs::path(ZR_MODELS_DIR) / "MarbleTea.stp");
  EXPECT_EQ(model.products.front().name, "tea02");  // "tea02 v55", identifier "tea02"
  EXPECT_EQ(QuantityOf(model, "servo v1"), 2);      // identifier "servo v1"; the assembly and its own geometry
  EXPECT_EQ(PropertyOf(ProductNamed(model, "frame"), "material"), "Steel");
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
  EXPECT_EQ(PropertyOf(ProductNamed(Unit(), "Frame weldment"), "weldment"), "true");
  EXPECT_EQ(PropertyOf(ProductNamed(Unit(), "Drive shaft"), "material"), "C45");
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

/// What the first match of `pattern` in `text` captures.
std::string NumberBehind(const std::string& text, const std::string& pattern) {
  std::smatch match;
  return std::regex_search(text, match, std::regex(pattern)) ? match[1].str() : std::string();
}

TEST_F(ExampleModelTest, PartWithSecondRepresentationStaysOnePart) {
  std::string text = ReadWholeFile(ExampleModel());
  const std::string product = NumberBehind(text, R"(#(\d+) = PRODUCT\('Gusset')");
  const std::string formation =
      NumberBehind(text, R"(#(\d+) = PRODUCT_DEFINITION_FORMATION\('','',#)" + product + R"(\))");
  const std::string definition = NumberBehind(text, R"(#(\d+) = PRODUCT_DEFINITION\('design','',#)" + formation + ",");
  const std::string shape = NumberBehind(text, R"(#(\d+) = PRODUCT_DEFINITION_SHAPE\('','',#)" + definition + R"(\))");
  const std::string solid = NumberBehind(text, R"(SHAPE_DEFINITION_REPRESENTATION\(#)" + shape + R"(,#(\d+)\))");
  const std::string start = "#" + solid + R"( = ADVANCED_BREP_SHAPE_REPRESENTATION\()";
  const std::string brep = NumberBehind(text, start + R"('',\(#\d+,#(\d+)\))");
  const std::string context = NumberBehind(text, start + R"('',\([^)]*\),#(\d+)\))");
  const std::string shell = NumberBehind(text, "#" + brep + R"( = MANIFOLD_SOLID_BREP\('',#(\d+)\))");
  ASSERT_FALSE(shell.empty() || context.empty() || shape.empty());
  const std::string second = "#900001 = SHELL_BASED_SURFACE_MODEL('',(#" + shell + "));\n" +
                             "#900002 = MANIFOLD_SURFACE_SHAPE_REPRESENTATION('',(#900001),#" + context + ");\n" +
                             "#900003 = SHAPE_DEFINITION_REPRESENTATION(#" + shape + ",#900002);\n";
  text.insert(text.rfind("ENDSEC;"), second);
  const TemporaryFolder folder;
  const Model model = Imported(folder.Write("hybrid.step", text));
  EXPECT_EQ(PartQuantities(model), PartQuantities(Unit()));
  EXPECT_EQ(ProductNamed(model, "Gusset").mesh.triangles.size(), ProductNamed(Unit(), "Gusset").mesh.triangles.size());
}

struct EncodedName {
  const char* encoding;
  const char* text;
};

void PrintTo(const EncodedName& name, std::ostream* out) {
  *out << name.encoding;
}

class StepText : public testing::TestWithParam<EncodedName> {};

TEST_P(StepText, OfAnyEncodingBecomesUtf8) {
  std::string text = ReadWholeFile(ExampleModel());
  const std::string before = "'V-belt pulley'";
  for (std::size_t at = text.find(before); at != std::string::npos; at = text.find(before)) {
    text.replace(at, before.size(), GetParam().text);
  }
  const TemporaryFolder folder;
  EXPECT_EQ(QuantityOf(Imported(folder.Write("text.step", text)), "Größe für 2–4 mm"), 1);
}

INSTANTIATE_TEST_SUITE_P(
    ModelImporter, StepText,
    testing::Values(EncodedName{"Windows1252", "'Gr\xF6\xDF\x65 f\xFCr 2\x96\x34 mm'"},
                    EncodedName{"Utf8", "'Größe für 2–4 mm'"},
                    EncodedName{"Escapes", "'Gr\\X2\\00F600DF\\X0\\e f\\X2\\00FC\\X0\\r 2\\X2\\2013\\X0\\4 mm'"}),
    [](const testing::TestParamInfo<EncodedName>& name) { return std::string(name.param.encoding); });

/// Buffer and glTF of a box of 1 x 2 x 3 metres, one corner at the origin, with the given nodes.
class BoxGltf {
public:
  BoxGltf() {
    std::string buffer;
    for (int i = 0; i < 8; ++i) {
      const std::array<float, 3> corner{i & 1 ? 1.F : 0.F, i & 2 ? 2.F : 0.F, i & 4 ? 3.F : 0.F};
      buffer.append(reinterpret_cast<const char*>(corner.data()), sizeof corner);
    }
    const std::array<std::uint16_t, 36> indices{0, 2, 3, 0, 3, 1, 4, 5, 7, 4, 7, 6, 0, 1, 5, 0, 5, 4,
                                                2, 6, 7, 2, 7, 3, 0, 4, 6, 0, 6, 2, 1, 3, 7, 1, 7, 5};
    buffer.append(reinterpret_cast<const char*>(indices.data()), sizeof indices);
    folder_.Write("box.bin", buffer);
  }

  /// Meshes 0 to 3 are equal boxes; each has accessors of its own, as exporters write that lose sharing.
  [[nodiscard]] std::string Write(const std::string& nodes) const {
    std::string meshes;
    std::string accessors;
    int next = 0;
    for (const char* name : {"Box", "Box", "SOLID", "COMPOUND"}) {
      const std::string comma = next == 0 ? "" : ",";
      meshes += comma + R"({"name":")" + name + R"(","primitives":[{"attributes":{"POSITION":)" + std::to_string(next) +
                R"(},"indices":)" + std::to_string(next + 1) + "}]}";
      accessors += comma +
                   R"({"bufferView":0,"componentType":5126,"count":8,"type":"VEC3","min":[0,0,0],"max":[1,2,3]},)"
                   R"({"bufferView":1,"componentType":5123,"count":36,"type":"SCALAR"})";
      next += 2;
    }
    return folder_.Write("box.gltf",
                         R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],"nodes":)" + nodes +
                             R"(,"meshes":[)" + meshes + R"(],"accessors":[)" + accessors +
                             R"(],"buffers":[{"uri":"box.bin","byteLength":168}],"bufferViews":[)"
                             R"({"buffer":0,"byteLength":96},{"buffer":0,"byteOffset":96,"byteLength":72}]})");
  }

private:
  TemporaryFolder folder_;
};

TEST(ModelImporter, TurnsGltfToMillimetresAndZUp) {
  const Model model = Imported(BoxGltf().Write(R"([{"name":"Box_1","mesh":0}])"));
  ASSERT_EQ(model.occurrences.size(), 2U) << "an assembly with one part";
  EXPECT_TRUE(model.products[0].isAssembly);
  const std::array<double, 6> expected{0, -3000, 0, 1000, 0, 2000};
  for (std::size_t i = 0; i < 6; ++i) EXPECT_NEAR(WorldBox(model)[i], expected[i], 0.01);
  const Mesh& box = ProductOf(model, model.occurrences[1]).mesh;
  EXPECT_EQ(box.sharpEdges.size(), 12U);
  EXPECT_EQ(box.positions.size(), 24U);
  EXPECT_NEAR(Volume(box), 6e9, 1e4);
}

TEST(ModelImporter, MergesWhatGltfRepeatsAndCollapsesRepresentations) {
  const Model model = Imported(BoxGltf().Write(
      R"([{"name":"Rack","children":[1,2,3,6]},{"name":"Box_1","mesh":0},{"name":"Box_2","mesh":1,"translation":[5,0,0]},)"
      R"({"name":"Bracket","children":[4,5]},{"name":"=>[0:1:1:3]","mesh":2},{"name":"=>[0:1:1:4]","mesh":3},)"
      R"({"name":"Empty frame"}])"));
  const std::vector<std::pair<std::string, int>> expected{{"Box", 2}, {"Bracket", 1}};
  EXPECT_EQ(PartQuantities(model), expected);
  EXPECT_EQ(model.products.size(), 3U);
}

TEST(ModelImporter, KeepsObjUnitsAndStandsItUp) {
  const TemporaryFolder folder;
  const Model model = Imported(folder.Write("two.obj",
                                            "# two triangles\no flat\nv 0 0 0\nv 10 0 0\nv 0 20 0\nf 1 2 3\n"
                                            "o far\nv 0 0 -30\nv 10 0 -30\nv 0 20 -30\nf 4 5 6\n"));
  const std::vector<std::pair<std::string, int>> expected{{"flat", 1}, {"far", 1}};
  EXPECT_EQ(PartQuantities(model), expected);
  EXPECT_EQ(model.products[0].name, "two");
  const std::array<double, 6> box{0, 0, 0, 10, 30, 20};
  for (std::size_t i = 0; i < 6; ++i) EXPECT_NEAR(WorldBox(model)[i], box[i], 1e-4);
}

}  // namespace
}  // namespace zrfigure
