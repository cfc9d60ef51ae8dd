#pragma once
// A folder of its own for every test, gone with it.

#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace zrfigure {

class TemporaryFolder {
public:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "zrfigure-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }

  [[nodiscard]] const std::filesystem::path& Path() const { return path_; }

  /// Names of what is in it, sorted.
  [[nodiscard]] std::vector<std::string> Files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
  }

  std::string Write(const std::string& name, const std::string& content) const {
    std::ofstream(path_ / name, std::ios::binary) << content;
    return (path_ / name).string();
  }

private:
  std::filesystem::path path_;
};

inline std::string ReadWholeFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline std::filesystem::path ExampleModel() {
  return std::filesystem::path(ZR_SOURCE_DIR) / "examples/drive-unit.step";
}

}  // namespace zrfigure
