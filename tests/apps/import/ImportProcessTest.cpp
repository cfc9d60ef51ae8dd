#include "import/ImportProcess.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <random>
#include <stdexcept>
#include <vector>

#include "TemporaryFolder.h"
#include "apps/commands/SmallAssembly.h"
#include "import/ModelSerialization.h"

namespace zrfigure {
namespace {

ImportResult Import(const std::string& path) {
  ImportRequest request;
  request.path = path;
  const ImportResult result = ImportModel(request);
  EXPECT_NE(result.model.has_value(), !result.error.empty());
  return result;
}

const std::string kStepHead =
    "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION((''),'2;1');\nFILE_NAME('','',(''),(''),'','','');\n"
    "FILE_SCHEMA(('AUTOMOTIVE_DESIGN'));\nENDSEC;\nDATA;\n";

TEST(ImportProcess, GivesOneClearLineForBadFiles) {
  struct BadInput {
    const char* file;
    std::string content;
    const char* reason;
    bool isRefusedUnread = true;
  };
  const BadInput inputs[] = {
      {"empty.step", "", "the file is empty"},
      {"a.dwg", "AC1032", "unknown extension '.dwg'; supported are .step .stp .p21 .glb .gltf .obj"},
      {"model", "x", "the name has no extension; supported are .step .stp .p21 .glb .gltf .obj"},
      {"text.STP", "hello", "not a STEP file"},
      {"cut.p21", kStepHead + "#1=A('", "the STEP file is cut short: it does not end with END-ISO-10303-21"},
      {"no-shape.stp", kStepHead + "ENDSEC;\nEND-ISO-10303-21;\n", "no product structure or shape in the STEP file",
       false},
      {"syntax.stp", kStepHead + "#1=PRODUCT((((;\nENDSEC;\nEND-ISO-10303-21;\n", "the STEP file is damaged", false},
      {"text.glb", "{}", "not a binary glTF file"},
      {"old.glb", std::string("glTF\1\0\0\0\x0c\0\0\0", 12), "glTF version 1; only version 2 can be read"},
      {"cut.glb", std::string("glTF\2\0\0\0\xff\0\0\0", 12), "the glTF file is cut short"},
      {"no-json.gltf", "glTF", "not a glTF file: no JSON object"},
      {"cut.gltf", "{\"asset\":", "the glTF file is cut short"},
      {"no-scene.gltf", "{\"asset\":{\"version\":\"2.0\"}}", "the mesh file is damaged", false},
      {"binary.obj", std::string("v 0\0 1", 6), "not an OBJ file: binary content"},
      {"prose.obj", "Dear all,", "not an OBJ file"},
      {"no-faces.obj", "v 0 0 0\nv 1 0 0\n", "no solid or surface in file", false}};
  const TemporaryFolder folder;
  for (const BadInput& input : inputs) {
    const std::string path = folder.Write(input.file, input.content);
    const ImportResult result = Import(path);
    EXPECT_EQ(result.error, "cannot read '" + path + "': " + input.reason);
    EXPECT_EQ(result.peakMemoryBytes == 0, input.isRefusedUnread) << input.file << ": whether a child was needed";
  }
  EXPECT_EQ(Import("/dev/null").error, "cannot read '/dev/null': not a regular file");
}

void Hoard() {
  std::vector<std::vector<char>> hoard;
  for (;;) hoard.emplace_back(std::size_t{64} << 20);
}

TEST(ImportProcess, TurnsEveryFaultOfTheChildIntoAnError) {
  const std::pair<void (*)(), const char*> faults[] = {
    {[] { std::abort(); }, "the CAD library crashed (Aborted)"},
    {[] { std::raise(SIGSEGV); }, "the CAD library crashed (Segmentation fault)"},
    {[] { _exit(0); }, "ended the import without a result"},
    {[] { throw std::runtime_error("no luck"); }, "the CAD library gave up: no luck"},
    {[] { throw 42; }, "the CAD library gave up"},
    {[] {
       for (;;) pause();
     },
     "not done within 2 s"},
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)  // They allow no limit.
    {Hoard, "it needs more than 1024 MB of memory"},
#endif
  };
  for (const auto& [happen, reason] : faults) {
    ImportRequest request;
    request.path = ExampleModel().string();
    request.beforeImport = happen;
    request.timeLimitSeconds = reason[0] == 'n' ? 2 : 60;
    request.memoryLimitBytes = std::uint64_t{1} << 30;
    const ImportResult result = ImportModel(request);
    EXPECT_FALSE(result.model.has_value()) << reason;
    EXPECT_NE(result.error.find(reason), std::string::npos) << result.error;
    EXPECT_LE(result.peakMemoryBytes, request.memoryLimitBytes);
  }
}

TEST(ImportProcess, DamageInsideAFileIsTold) {
  const std::string whole = ReadWholeFile(ExampleModel());
  const TemporaryFolder folder;
  std::mt19937 random(20240101);
  for (int i = 0; i < 6; ++i) {
    std::string text = whole;
    if (i % 2 == 0) {
      text = text.substr(0, 2000 + random() % (text.size() - 2000)) + "\nENDSEC;\nEND-ISO-10303-21;\n";
    }
    for (int flips = 0; i % 2 == 1 && flips < 20; ++flips) {
      text[2000 + random() % (text.size() - 4000)] ^= static_cast<char>(1U << random() % 7);
    }
    const ImportResult result = Import(folder.Write("damaged.step", text));
    EXPECT_FALSE(result.model && result.model->warnings.empty()) << "damage " << i << " goes unnoticed";
  }
}

Model SmallModel() {
  Model model = fixtures::MakePress();
  model.warnings = {"one", ""};
  model.products[1].properties = {{"material", "CuSn8"}, {"weldment", "false"}};
  model.products[1].mesh.sharpEdges = {{{0, 0, 0}, {1, 0, 0}}, {}, {{1, 0, 0}, {0, 1, 0}, {0, 0, 0}}};
  return model;
}

TEST(ModelSerialization, GivesBackWhatWasWritten) {
  const std::string bytes = SerializeModel(SmallModel());
  const std::optional<Model> model = DeserializeModel(bytes);
  ASSERT_TRUE(model);
  EXPECT_EQ(SerializeModel(*model), bytes);
  const Product& part = model->products.at(1);
  EXPECT_EQ(std::pair(part.properties, part.mesh.sharpEdges),
            std::pair(SmallModel().products[1].properties, SmallModel().products[1].mesh.sharpEdges));
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
                                      [](Model& m) { m.occurrences[1].product = 6; },
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
