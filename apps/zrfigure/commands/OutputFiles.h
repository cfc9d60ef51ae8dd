#pragma once
// The files a command writes: checked before the work, written together after it.

#include <filesystem>
#include <string>
#include <vector>

namespace zrfigure {

/// Whether a file can be written there: its folder exists and may be written to, and the path is no folder. Touches
/// nothing. \return false with one line in `error` that begins with the path.
[[nodiscard]] bool CheckOutputPath(const std::filesystem::path& path, std::string& error);

/// The path's extension in lower case, with its dot; empty when it has none.
[[nodiscard]] std::string LowerExtension(const std::filesystem::path& path);

/// A set of files that appear together. Nothing is touched before Commit().
class OutputFiles {
public:
  void Add(std::filesystem::path path, std::string bytes);

  /// Writes every file beside its place first and moves them there only when all are complete. On failure the files of
  /// this set are removed again and files that were there before stay as they were, unless a move itself fails midway.
  [[nodiscard]] bool Commit(std::string& error);

  /// Paths in the order they were added.
  [[nodiscard]] std::vector<std::string> Paths() const;

private:
  struct File {
    std::filesystem::path path;
    std::filesystem::path staged;
    std::string bytes;
  };

  [[nodiscard]] bool Stage(File& file, std::string& error) const;
  void RemoveStaged();

  std::vector<File> files_;
};

}  // namespace zrfigure
