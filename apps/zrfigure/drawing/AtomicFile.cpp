#include "drawing/AtomicFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>

namespace zrfigure {
namespace {

bool WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

// Process and counter make the name unique; O_EXCL guards against what is left.
std::string TemporaryName(const std::filesystem::path& path) {
  static std::atomic<int> counter{0};
  return path.string() + ".tmp-" + std::to_string(::getpid()) + "-" + std::to_string(++counter);
}

}  // namespace

bool WriteFileAtomically(const std::filesystem::path& path, std::string_view bytes, std::string& error) {
  const std::string temporary = TemporaryName(path);
  const int file = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  int failure = file < 0 ? errno : 0;
  if (file >= 0) {
    if (!WriteAll(file, bytes)) failure = errno;
    if (::close(file) != 0 && failure == 0) failure = errno;
    if (failure == 0 && ::rename(temporary.c_str(), path.c_str()) != 0) failure = errno;
    if (failure != 0) ::unlink(temporary.c_str());
  }
  if (failure == 0) return true;
  error = "cannot write '" + path.string() + "': " + std::strerror(failure);
  return false;
}

}  // namespace zrfigure
