#pragma once
// A hand-made assembly for tests of selection and numbering.

#include <string>
#include <tuple>

#include "Model.h"

namespace zrfigure::fixtures {

/// Index of a new product; parts get one triangle.
inline int AddProduct(Model& model, const std::string& name, bool isAssembly) {
  const Mesh triangle{{{0, 0, 0}, {10, 0, 0}, {0, 0, 10}}, {{0, -1, 0}, {0, -1, 0}, {0, -1, 0}}, {{0, 1, 2}}, {}};
  model.products.push_back({name, isAssembly, {}, isAssembly ? Mesh() : triangle});
  return static_cast<int>(model.products.size()) - 1;
}

/// Index of a new occurrence, shifted along X so that no two stand at one place.
inline int AddOccurrence(Model& model, int parent, int product, const std::string& name) {
  model.occurrences.push_back({parent, product, name, {}});
  model.occurrences.back().toWorld.translation.x = 20.0 * static_cast<double>(model.occurrences.size() - 1);
  return static_cast<int>(model.occurrences.size()) - 1;
}

/// A press whose clamp is built in twice; its row in `parts` below is an occurrence's index.
inline Model MakePress() {
  Model model;
  model.sourceName = "press.step";
  for (const char* name : {"press", "base", "clamp", "jaw", "bolt", "lid"}) {
    AddProduct(model, name, name == std::string("press") || name == std::string("clamp"));
  }
  const std::tuple<int, int, const char*> parts[] = {{-1, 0, "press"},   // 0
                                                     {0, 1, "base_1"},   // 1
                                                     {0, 2, "clamp_1"},  // 2
                                                     {2, 3, "jaw_1"},    // 3
                                                     {2, 4, "bolt_1"},   // 4
                                                     {0, 2, "clamp_2"},  // 5
                                                     {5, 3, "jaw_1"},    // 6
                                                     {5, 4, "bolt_1"},   // 7
                                                     {0, 4, "bolt_9"},   // 8
                                                     {0, 5, "lid_1"}};   // 9, no level below
  for (const auto& [parent, product, name] : parts) AddOccurrence(model, parent, product, name);
  return model;
}

}  // namespace zrfigure::fixtures
