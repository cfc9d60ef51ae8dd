#include "commands/OutputFiles.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <system_error>

#include <unistd.h>

namespace zrfigure {

namespace fs = std::filesystem;

bool CheckOutputPath(const fs::path& path, std::string& error) {
  const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
  std::error_code code;
  if (!fs::is_directory(folder, code)) {
    error = path.string() + ": the folder " + folder.string() + " does not exist";
  } else if (fs::is_directory(path, code)) {
    error = path.string() + ": is a folder";
  } else if (access(folder.c_str(), W_OK) != 0) {
    error = path.string() + ": the folder " + folder.string() + " cannot be written to";
  } else {
    return true;
  }
  return false;
}

std::string LowerExtension(const fs::path& path) {
  std::string extension = path.extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return extension;
}

void OutputFiles::Add(fs::path path, std::string bytes) {
  files_.push_back({std::move(path), {}, std::move(bytes)});
}

bool OutputFiles::Stage(File& file, std::string& error) const {
  file.staged = file.path;
  file.staged += ".part-" + std::to_string(getpid());
  std::ofstream stream(file.staged, std::ios::binary | std::ios::trunc);
  stream.write(file.bytes.data(), static_cast<std::streamsize>(file.bytes.size()));
  stream.close();
  if (stream) return true;
  error = file.path.string() + ": cannot be written: " + std::strerror(errno);
  return false;
}

void OutputFiles::RemoveStaged() {
  std::error_code ignored;
  for (const File& file : files_) {
    if (!file.staged.empty()) fs::remove(file.staged, ignored);
  }
}

bool OutputFiles::Commit(std::string& error) {
  for (File& file : files_) {
    if (Stage(file, error)) continue;
    RemoveStaged();
    return false;
  }
  for (File& file : files_) {
    std::error_code code;
    fs::rename(file.staged, file.path, code);
    if (!code) continue;
    error = file.path.string() + ": cannot be written: " + code.message();
    RemoveStaged();
    return false;
  }
  return true;
}

std::vector<std::string> OutputFiles::Paths() const {
  std::vector<std::string> paths;
  for (const File& file : files_) paths.push_back(file.path.string());
  return paths;
}

}  // namespace zrfigure
