#pragma once
// A CAD file as a document of the CAD library. Uses CAD library types; included by sources of this folder only.

#include <TDocStd_Document.hxx>
#include <string>
#include <vector>

#include "import/FileCheck.h"
#include "import/StepProductFacts.h"

namespace zrfigure {

/// The file's product structure with names, placements and shapes; millimetres, Z up.
struct SourceDocument {
  Handle(TDocStd_Document) document;
  StepProductFactsByEntry facts;
  std::vector<std::string> warnings;
};

/// Reads the whole file. Throws ImportError when the CAD library reports failure. `path` must be absolute: external
/// references are looked up beside it. Not reentrant: two loads at once corrupt each other's geometry.
[[nodiscard]] SourceDocument ReadDocument(const std::string& path, FileFormat format);

}  // namespace zrfigure
