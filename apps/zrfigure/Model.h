#pragma once
// The imported assembly as plain values: what the CAD reader hands over and everything else of the program works on.
// Lengths in millimetres, Z up, right-handed. No CAD library type appears here.

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace zrfigure {

struct Vec3 {
  double x = 0, y = 0, z = 0;
};

/// Affine placement in row-vector form: p' = p * linear + translation.
struct Placement {
  std::array<std::array<double, 3>, 3> linear{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  Vec3 translation;
};

using Polyline = std::vector<std::array<float, 3>>;

/// Triangles of one part in part coordinates. Positions are split where the surface has a sharp edge, so that `normals`
/// (one a position, unit length, outward) are smooth inside a face region. `sharpEdges` are the edges that a drawing
/// shows from every side: borders, and edges where the surface is not tangent-continuous. Seams and tangent edges are
/// not in it.
struct Mesh {
  std::vector<std::array<float, 3>> positions;
  std::vector<std::array<float, 3>> normals;
  std::vector<std::array<std::uint32_t, 3>> triangles;
  std::vector<Polyline> sharpEdges;
};

/// A part or assembly definition; occurrences share it.
struct Product {
  std::string name;  ///< As in the file, less technical decoration; never empty.
  bool isAssembly = false;
  std::map<std::string, std::string> properties;  ///< User-defined properties of the file, e.g. "material", "weldment".
  Mesh mesh;                                      ///< Empty for assemblies.
};

/// A node of the assembly tree. Node 0 is the root; parents come before children; children stand in file order.
struct Occurrence {
  int parent = -1;    ///< Index of the parent node; -1 at the root.
  int product = -1;   ///< Index into Model::products.
  std::string name;   ///< Instance name as in the file; the product's name when the file gives none.
  Placement toWorld;  ///< Part coordinates to world, all levels composed.
};

struct Model {
  std::string sourceName;  ///< File name without folders.
  std::vector<Product> products;
  std::vector<Occurrence> occurrences;
  std::vector<std::string> warnings;  ///< What was skipped or repaired, one line each.
};

}  // namespace zrfigure
