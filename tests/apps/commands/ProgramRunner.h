#pragma once
// Runs the zrfigure program that was built beside the test program.

#include <filesystem>
#include <string>
#include <vector>

namespace zrfigure::fixtures {

struct ProgramResult {
  int exitCode = -1;  ///< -1 when it was ended by a signal.
  std::string output;
  std::string errors;
};

/// Runs `zrfigure ARGUMENTS` in a folder, with a file as its standard input, and waits for it.
ProgramResult RunProgram(const std::vector<std::string>& arguments, const std::filesystem::path& folder,
                         const std::filesystem::path& input = "/dev/null");

std::string ReadFile(const std::filesystem::path& path);

/// A folder of its own, removed at the end.
class ScratchFolder {
public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& Path() const { return path_; }
  /// Names of the files in it, sorted.
  [[nodiscard]] std::vector<std::string> Files() const;

private:
  std::filesystem::path path_;
};

}  // namespace zrfigure::fixtures
