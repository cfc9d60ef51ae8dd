#pragma once
// A hand-made assembly for tests of selection and numbering.

#include "Model.h"

namespace zrfigure::fixtures {

/// Index of a new product; parts get one triangle.
inline int AddProduct(Model& model, const std::string& name, bool isAssembly) {
  Product product;
  product.name = name;
  product.isAssembly = isAssembly;
  if (!isAssembly) {
    product.mesh.positions = {{0, 0, 0}, {10, 0, 0}, {0, 0, 10}};
    product.mesh.normals = {{0, -1, 0}, {0, -1, 0}, {0, -1, 0}};
    product.mesh.triangles = {{0, 1, 2}};
  }
  model.products.push_back(product);
  return static_cast<int>(model.products.size()) - 1;
}

/// Index of a new occurrence, shifted along X so that no two stand at one place.
inline int AddOccurrence(Model& model, int parent, int product, const std::string& name) {
  Occurrence occurrence;
  occurrence.parent = parent;
  occurrence.product = product;
  occurrence.name = name;
  occurrence.toWorld.translation = {20.0 * static_cast<double>(model.occurrences.size()), 0, 0};
  model.occurrences.push_back(occurrence);
  return static_cast<int>(model.occurrences.size()) - 1;
}

/// press            0
///   base_1         1
///   clamp_1        2
///     jaw_1        3
///     bolt_1       4
///   clamp_2        5
///     jaw_1        6
///     bolt_1       7
///   bolt_9         8
///   lid_1          9   (no level below)
inline Model MakePress() {
  Model model;
  model.sourceName = "press.step";
  const int press = AddProduct(model, "press", true);
  const int base = AddProduct(model, "base", false);
  const int clamp = AddProduct(model, "clamp", true);
  const int jaw = AddProduct(model, "jaw", false);
  const int bolt = AddProduct(model, "bolt", false);
  const int lid = AddProduct(model, "lid", false);
  const int root = AddOccurrence(model, -1, press, "press");
  AddOccurrence(model, root, base, "base_1");
  for (const char* name : {"clamp_1", "clamp_2"}) {
    const int assembly = AddOccurrence(model, root, clamp, name);
    AddOccurrence(model, assembly, jaw, "jaw_1");
    AddOccurrence(model, assembly, bolt, "bolt_1");
  }
  AddOccurrence(model, root, bolt, "bolt_9");
  AddOccurrence(model, root, lid, "lid_1");
  return model;
}

}  // namespace zrfigure::fixtures
