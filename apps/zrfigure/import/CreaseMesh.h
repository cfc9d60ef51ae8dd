#pragma once
// Plain triangles as a mesh with smooth normals and sharp edges. Knows nothing of files or of the CAD library.

#include <array>
#include <cstdint>
#include <utility>
#include <vector>

#include "Model.h"

namespace zrfigure {

/// Vertices and triangles as a file gives them; vertices need not be shared between triangles.
struct TriangleSoup {
  std::vector<std::array<float, 3>> positions;
  std::vector<std::array<std::uint32_t, 3>> triangles;
};

/// Welds equal vertices, drops degenerate and doubled triangles, and splits positions at creases of more than 30
/// degrees. Creases, borders and edges of more than two triangles become `sharpEdges`. Empty when nothing usable is
/// left.
[[nodiscard]] Mesh BuildCreasedMesh(const TriangleSoup& soup);

/// Disjoint sets of the numbers below a count. Near-constant time each (path halving, smaller number wins: so the
/// representative does not depend on the order of joins).
class DisjointSets {
public:
  explicit DisjointSets(std::size_t count);

  [[nodiscard]] std::uint32_t Find(std::uint32_t item);
  void Join(std::uint32_t a, std::uint32_t b);

private:
  std::vector<std::uint32_t> parent_;
};

}  // namespace zrfigure
