#include "import/ImportProcess.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <random>
#include <stdexcept>
#include <vector>

#include "TemporaryFolder.h"

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
    const auto start = std::chrono::steady_clock::now();
    const ImportResult result = ImportModel(request);
    EXPECT_FALSE(result.model.has_value()) << reason;
    EXPECT_NE(result.error.find(reason), std::string::npos) << result.error;
    EXPECT_LE(result.peakMemoryBytes, request.memoryLimitBytes);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20)) << reason;
  }
}

TEST(ImportProcess, GivesModelOrMessageForDamagedFiles) {
  const std::string whole = ReadWholeFile(ExampleModel());
  const std::string end = "\nENDSEC;\nEND-ISO-10303-21;\n";
  const TemporaryFolder folder;
  std::mt19937 random(20240101);
  int damaged = 0;
  for (int i = 0; i < 6; ++i) {
    std::string text = whole;
    if (i % 2 == 0) text = text.substr(0, 2000 + random() % (text.size() - 2000)) + end;
    for (int flips = 0; i % 2 == 1 && flips < 20; ++flips) {
      text[2000 + random() % (text.size() - 4000)] ^= static_cast<char>(1U << random() % 7);
    }
    damaged += text != whole ? 1 : 0;
    ImportRequest request;
    request.path = folder.Write("damaged.step", text);
    request.timeLimitSeconds = 100;
    const ImportResult result = ImportModel(request);
    EXPECT_NE(result.model.has_value(), !result.error.empty()) << i;
    EXPECT_EQ(result.error.find("not done within"), std::string::npos) << result.error;
    EXPECT_FALSE(result.model && result.model->warnings.empty()) << "damage " << i << " goes unnoticed";
  }
  EXPECT_EQ(damaged, 6);
}

}  // namespace
}  // namespace zrfigure
