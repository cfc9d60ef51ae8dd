// Broken files through the real program: one line and nothing written, or a whole figure, within time and memory.

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <future>
#include <regex>

#include "BrokenFiles.h"
#include "apps/commands/ProgramRunner.h"
#include "drawing/SvgReader.h"

namespace zrfigure::fixtures {
namespace {

constexpr ProgramLimits kLimits{20, std::size_t{3} << 30};

/// Empty, or what is wrong with how the program refused a file or drew it.
std::string FaultOf(const ProgramResult& result, const std::string& name, const TemporaryFolder& folder) {
  using Names = std::vector<std::string>;
  const Names files = folder.Files();
  if (result.exitCode == 2) {
    if (files != Names{name}) return "left files behind";
    if (result.errors.empty() || result.errors.find('\n') != result.errors.size() - 1) return "not one line";
    const std::string shown = name.substr(name.find('\n') + 1);  // a break of the line does not belong into a message
    if (result.errors.find(shown) == std::string::npos) return "does not name the file";
    return result.output.empty() ? "" : "prints to its output";
  }
  if (result.exitCode != 0) return "ended with " + std::to_string(result.exitCode);
  if (!result.errors.empty()) return "done, with an error";
  if (files != Names{std::min<std::string>(name, "figure.svg"), std::max<std::string>(name, "figure.svg")}) {
    return "files beside the figure";
  }
  const std::string svg = ReadWholeFile(folder.Path() / "figure.svg");
  static const std::regex noNumber("[\"ML ]-?(nan|inf)");
  if (std::regex_search(svg, noNumber)) return "no numbers in the figure";
  std::string error;
  const std::optional<Figure> figure = ReadSvg(svg, error);
  if (!figure) return "half a figure: " + error;
  return figure->balloons.empty() ? "a figure without balloons" : "";
}

struct Verdict {
  bool isRefused = false;
  std::string fault;
};

Verdict Judge(const BrokenFile& file) {
  const TemporaryFolder folder;
  if (file.isFolder) {
    std::filesystem::create_directory(folder.Path() / file.name);
  } else {
    folder.Write(file.name, file.bytes);
  }
  const ProgramResult result =
      RunProgram({file.name, "-o", "figure.svg", "--quiet", "--page", "120x90"}, folder.Path(), "/dev/null", kLimits);
  const std::string fault = FaultOf(result, file.name, folder);
  return {result.exitCode == 2, fault.empty() ? "" : fault + "; its errors:\n" + result.errors};
}

TEST(BrokenFiles, AreRefusedInOneLineOrGiveAWholeFigure) {
  BrokenFiles files = ForeignFiles();
  for (const BrokenFiles& some : {BrokenStepFiles(), BrokenGltfFiles(), BrokenObjFiles()}) {
    files.insert(files.end(), some.begin(), some.end());
  }
  std::vector<Verdict> verdicts(files.size());
  std::atomic<std::size_t> next{0};
  const auto work = [&] {
    for (std::size_t i; (i = next++) < files.size();) verdicts[i] = Judge(files[i]);
  };
  auto other = std::async(std::launch::async, work);
  work();
  other.get();
  std::size_t refused = 0;
  for (std::size_t i = 0; i < files.size(); ++i) {
    refused += verdicts[i].isRefused ? 1 : 0;
    if (verdicts[i].fault.empty()) continue;
    ADD_FAILURE() << files[i].name << ": " << verdicts[i].fault;
    std::ofstream("broken-" + files[i].name, std::ios::binary) << files[i].bytes;
  }
  EXPECT_GE(files.size(), 200U);
  EXPECT_GE(refused, 130U);
}

TEST(BrokenFiles, ComeFromSoundOnes) {
  const TemporaryFolder folder;
  folder.Write("small.step", SmallStepAssembly());
  const ProgramResult result = RunProgram({"small.step", "-o", "figure.svg"}, folder.Path(), "/dev/null", kLimits);
  EXPECT_EQ(result.output, "small.step: 16 occurrences, 3 items, 3 callouts\nwrote figure.svg\n") << result.errors;
}

}  // namespace
}  // namespace zrfigure::fixtures
