#pragma once
// Repairs of an imported model that need no CAD library: products that a format has multiplied, parts without a
// surface.

#include "Model.h"

namespace zrfigure {

/// Makes one product of products with equal names and equal meshes, and of assemblies with equal names and equal
/// children. For formats that repeat a definition for every occurrence. The first one in file order stays.
void MergeEqualProducts(Model& model);

/// Drops parts without triangles, and assemblies left without parts, from the tree and from the products, with one
/// warning a product. The root goes too when nothing is left: then the model has no occurrences.
void DropEmptyParts(Model& model);

}  // namespace zrfigure
