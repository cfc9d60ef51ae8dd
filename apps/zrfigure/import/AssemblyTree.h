#pragma once
// The document as products and occurrences, with the shapes still to be meshed. Uses CAD library types; included by
// sources of this folder only.

#include <TopoDS_Shape.hxx>
#include <string>
#include <vector>

#include "Model.h"
#include "import/DocumentReader.h"

namespace zrfigure {

/// A model without meshes, and for each of its products the shape in part coordinates: null for assemblies.
struct AssemblyTree {
  Model model;
  std::vector<TopoDS_Shape> shapes;
};

struct AssemblyTreeOptions {
  std::string fileName;            ///< Without folders; its stem names a root that has no name, or this one.
  bool namesAreInstances = false;  ///< The format has one name a node: an assembly's name carries an instance suffix.
};

/// Walks the document from its free shapes down. A product is a definition in the document; an occurrence is a path of
/// components. Throws ImportError when the tree has more occurrences than any figure could show.
[[nodiscard]] AssemblyTree BuildAssemblyTree(const SourceDocument& source, const AssemblyTreeOptions& options);

}  // namespace zrfigure
