#pragma once
// Importing in a child process: whatever a damaged file does to the CAD library, the caller gets a model or one line of
// text.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "Model.h"

namespace zrfigure {

struct ImportRequest {
  std::string path;                             ///< May be relative to the working folder.
  double timeLimitSeconds = 300;                ///< Wall clock; the child is killed then.
  std::uint64_t memoryLimitBytes = 8ULL << 30;  ///< Of the child; 0 for none.
  std::function<void()> beforeImport;           ///< Runs in the child before it reads the file; empty in production.
};

struct ImportResult {
  std::optional<Model> model;
  std::string error;  ///< Empty with a model, else one line such as "cannot read 'x.stp': not a STEP file".
  std::uint64_t peakMemoryBytes = 0;  ///< Of the child; 0 when none was started.
};

/// Reads and meshes the file in a forked child and hands the model over. Files that are missing, empty or visibly of
/// another format are refused without a child. No exception escapes. Call it before the process starts threads of its
/// own, or while these hold no lock that the CAD library could want. [host-thread]
[[nodiscard]] ImportResult ImportModel(const ImportRequest& request);

}  // namespace zrfigure
