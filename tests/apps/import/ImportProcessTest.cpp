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

std::string ErrorOf(const std::string& path) {
  ImportRequest request;
  request.path = path;
  const ImportResult result = ImportModel(request);
  EXPECT_NE(result.model.has_value(), !result.error.empty());
  return result.error;
}

struct BadInput {
  const char* name;
  const char* file;
  std::string content;
  const char* reason;
  bool isRefusedUnread = true;
};

void PrintTo(const BadInput& input, std::ostream* out) {
  *out << input.file;
}

class BadInputs : public testing::TestWithParam<BadInput> {};

TEST_P(BadInputs, GiveOneClearLine) {
  const TemporaryFolder folder;
  ImportRequest request;
  request.path = folder.Write(GetParam().file, GetParam().content);
  const ImportResult result = ImportModel(request);
  EXPECT_FALSE(result.model.has_value());
  EXPECT_EQ(result.error, "cannot read '" + request.path + "': " + GetParam().reason);
  EXPECT_EQ(result.peakMemoryBytes == 0, GetParam().isRefusedUnread) << "whether a child was needed";
}

const std::string kStepHead =
    "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION((''),'2;1');\nFILE_NAME('','',(''),(''),'','','');\n"
    "FILE_SCHEMA(('AUTOMOTIVE_DESIGN'));\nENDSEC;\nDATA;\n";

INSTANTIATE_TEST_SUITE_P(
    ImportProcess, BadInputs,
    testing::Values(
        BadInput{"Empty", "a.step", "", "the file is empty"},
        BadInput{"UnknownExtension", "a.dwg", "AC1032",
                 "unknown extension '.dwg'; supported are .step .stp .p21 .glb .gltf .obj"},
        BadInput{"NoExtension", "model", "x",
                 "the name has no extension; supported are .step .stp .p21 .glb .gltf .obj"},
        BadInput{"TextAsStep", "a.STP", "hello", "not a STEP file"},
        BadInput{"CutStep", "a.p21", kStepHead + "#1=PRODUCT('a',",
                 "the STEP file is cut short: it does not end with END-ISO-10303-21"},
        BadInput{"StepWithoutShape", "a.stp", kStepHead + "ENDSEC;\nEND-ISO-10303-21;\n",
                 "no product structure or shape in the STEP file", false},
        BadInput{"StepSyntax", "a.stp", kStepHead + "#1=PRODUCT((((;\nENDSEC;\nEND-ISO-10303-21;\n",
                 "the STEP file is damaged", false},
        BadInput{"TextAsGlb", "a.glb", "{}", "not a binary glTF file"},
        BadInput{"OldGlb", "a.glb", std::string("glTF\1\0\0\0\x0c\0\0\0", 12),
                 "glTF version 1; only version 2 can be read"},
        BadInput{"CutGlb", "a.glb", std::string("glTF\2\0\0\0\xff\0\0\0", 12), "the glTF file is cut short"},
        BadInput{"GltfWithoutJson", "a.gltf", "glTF", "not a glTF file: no JSON object"},
        BadInput{"CutGltf", "a.gltf", "{\"asset\":", "the glTF file is cut short"},
        BadInput{"GltfWithoutScene", "a.gltf", "{\"asset\":{\"version\":\"2.0\"}}", "the mesh file is damaged", false},
        BadInput{"BinaryAsObj", "a.obj", std::string("v 0\0 1", 6), "not an OBJ file: binary content"},
        BadInput{"ProseAsObj", "a.obj", "Dear all,", "not an OBJ file"},
        BadInput{"ObjWithoutFaces", "a.obj", "v 0 0 0\nv 1 0 0\n", "no solid or surface in file", false}),
    [](const testing::TestParamInfo<BadInput>& input) { return std::string(input.param.name); });

TEST(ImportProcess, RefusesWhatIsNoReadableFile) {
  const TemporaryFolder folder;
  EXPECT_EQ(ErrorOf("no/such.step"), "cannot read 'no/such.step': no such file");
  std::filesystem::create_directory(folder.Path() / "folder.step");
  EXPECT_NE(ErrorOf((folder.Path() / "folder.step").string()).find("is a folder"), std::string::npos);
  EXPECT_NE(ErrorOf("/dev/null").find("not a regular file"), std::string::npos);
}

struct Fault {
  const char* name;
  void (*happen)();
  const char* reason;
};

void PrintTo(const Fault& fault, std::ostream* out) {
  *out << fault.name;
}

class Faults : public testing::TestWithParam<Fault> {};

TEST_P(Faults, OfTheChildBecomeAnError) {
  ImportRequest request;
  request.path = ExampleModel().string();
  request.beforeImport = GetParam().happen;
  request.timeLimitSeconds = 60;
  const ImportResult result = ImportModel(request);
  EXPECT_FALSE(result.model.has_value());
  EXPECT_NE(result.error.find(GetParam().reason), std::string::npos) << result.error;
}

INSTANTIATE_TEST_SUITE_P(
    ImportProcess, Faults,
    testing::Values(Fault{"Abort", [] { std::abort(); }, "the CAD library crashed (Aborted)"},
                    Fault{"Segfault", [] { std::raise(SIGSEGV); }, "the CAD library crashed (Segmentation fault)"},
                    Fault{"SilentExit", [] { _exit(0); }, "ended the import without a result"},
                    Fault{"Exception", [] { throw std::runtime_error("no luck"); }, "the CAD library gave up: no luck"},
                    Fault{"ForeignException", [] { throw 42; }, "the CAD library gave up"}),
    [](const testing::TestParamInfo<Fault>& fault) { return std::string(fault.param.name); });

TEST(ImportProcess, KillsChildThatExceedsItsTime) {
  ImportRequest request;
  request.path = ExampleModel().string();
  request.timeLimitSeconds = 0.2;
  request.beforeImport = [] {
    for (;;) pause();
  };
  const auto start = std::chrono::steady_clock::now();
  EXPECT_NE(ImportModel(request).error.find("not done within 0.2 s"), std::string::npos);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(ImportProcess, StopsEndlessAllocationAtTheMemoryLimit) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "sanitizers allow no limit";
#endif
  ImportRequest request;
  request.path = ExampleModel().string();
  request.memoryLimitBytes = std::uint64_t{1} << 30;
  request.beforeImport = [] {
    std::vector<std::vector<char>> hoard;
    for (;;) hoard.emplace_back(std::size_t{64} << 20);
  };
  const ImportResult result = ImportModel(request);
  EXPECT_NE(result.error.find("it needs more than 1024 MB of memory"), std::string::npos) << result.error;
  EXPECT_LE(result.peakMemoryBytes, request.memoryLimitBytes);
}

TEST(ImportProcess, ReadsRelativePathsAndNeedsLittleMemory) {
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(ExampleModel().parent_path());
  ImportRequest request;
  request.path = "drive-unit.step";
  const ImportResult result = ImportModel(request);
  std::filesystem::current_path(before);
  EXPECT_TRUE(result.model.has_value()) << result.error;
  EXPECT_GT(result.peakMemoryBytes, 0U);
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
