#pragma once
// STEP, glTF and OBJ files as a Model, in this process. A file that crashes the CAD library takes the process with it:
// programs call ImportModel() of ImportProcess.h, which runs this in a child.

#include <string>

#include "Model.h"

namespace zrfigure {

/// Reads and meshes one file.
class ModelImporter {
public:
  /// `path` may be relative to the working folder. The file is checked before the CAD library sees it.
  explicit ModelImporter(std::string path) : path_(std::move(path)) {}

  /// The whole assembly: one mesh a distinct part, deflection 0.0005 of the assembly's diagonal. Throws ImportError
  /// with the reason when the file cannot be read or has no part with faces. Not reentrant: one import at a time in a
  /// process.
  [[nodiscard]] Model Import() const;

private:
  std::string path_;
};

}  // namespace zrfigure
