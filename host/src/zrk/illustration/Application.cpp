#include <zrk/illustration/Application.h>

#include <atomic>

namespace zrk::illustration {

namespace {
std::atomic<bool> runningFoliant{false};
}

bool IsRunningFoliant() {
  return runningFoliant;
}

void SetRunningFoliant(bool on) {
  runningFoliant = on;
}

}  // namespace zrk::illustration
