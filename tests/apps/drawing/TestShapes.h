#pragma once
// Meshes and models made by hand, with known edges and silhouettes.

#include <numbers>

#include "visibility/View.h"

namespace zrfigure {

inline std::array<float, 3> ToFloats(Vec3 v) {
  return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

/// An axis-aligned box: split positions, 12 triangles, 12 sharp edges.
inline Mesh MakeBox(Vec3 low, Vec3 high) {
  Mesh mesh;
  const auto corner = [&](int i) {
    return ToFloats({i & 1 ? high.x : low.x, i & 2 ? high.y : low.y, i & 4 ? high.z : low.z});
  };
  for (int face = 0; face < 6; ++face) {
    const int axis = face / 2, side = face % 2, u = 1 << (axis + 1) % 3, v = 1 << (axis + 2) % 3;
    const auto first = static_cast<std::uint32_t>(mesh.positions.size());
    for (const int i : {0, side ? u : v, u | v, side ? v : u}) {  // counter-clockwise from outside
      mesh.positions.push_back(corner(side << axis | i));
      mesh.normals.emplace_back()[axis] = side ? 1.F : -1.F;
    }
    mesh.triangles.insert(mesh.triangles.end(), {{first, first + 1, first + 2}, {first, first + 2, first + 3}});
  }
  for (int i = 0; i < 8; ++i) {
    for (const int bit : {1, 2, 4}) {
      if (!(i & bit)) mesh.sharpEdges.push_back({corner(i), corner(i | bit)});
    }
  }
  return mesh;
}

/// A circle round the Z axis and the normal on it.
struct Ring {
  double radius, z, normalRadial, normalZ;
};

/// Adds the band between two rings; the surface looks to the right of the way from the first to the second.
inline void AddBand(Mesh& mesh, const Ring& from, const Ring& to, std::uint32_t sides) {
  const auto first = static_cast<std::uint32_t>(mesh.positions.size());
  for (const Ring& ring : {from, to}) {
    for (std::uint32_t i = 0; i < sides; ++i) {
      const double angle = 2 * std::numbers::pi * i / sides, c = std::cos(angle), s = std::sin(angle);
      mesh.positions.push_back(ToFloats({ring.radius * c, ring.radius * s, ring.z}));
      mesh.normals.push_back(ToFloats({ring.normalRadial * c, ring.normalRadial * s, ring.normalZ}));
    }
  }
  for (std::uint32_t i = 0; i < sides; ++i) {
    const std::uint32_t a = first + i, b = first + (i + 1) % sides;
    if (from.radius > 0) mesh.triangles.push_back({a, b, b + sides});
    if (to.radius > 0) mesh.triangles.push_back({a, b + sides, a + sides});
  }
}

/// A closed cylinder round the Z axis from z = 0 with smooth wall normals; its two rims are sharp.
inline Mesh MakeCylinder(double radius, double height, std::uint32_t sides) {
  Mesh mesh;
  AddBand(mesh, {radius, 0, 1, 0}, {radius, height, 1, 0}, sides);
  for (const std::uint32_t rim : {0U, sides}) {
    Polyline& line = mesh.sharpEdges.emplace_back();
    for (std::uint32_t i = 0; i <= sides; ++i) line.push_back(mesh.positions[rim + i % sides]);
  }
  AddBand(mesh, {0, 0, 0, -1}, {radius, 0, 0, -1}, sides);
  AddBand(mesh, {radius, height, 0, 1}, {0, height, 0, 1}, sides);
  return mesh;
}

/// A sphere round the origin, without any sharp edge.
inline Mesh MakeSphere(double radius, std::uint32_t sides) {
  Mesh mesh;
  const std::uint32_t rows = sides / 2;
  const auto ring = [=](std::uint32_t row) {
    const double latitude = std::numbers::pi * row / rows, c = -std::cos(latitude);
    // The poles are single places, or the mesh would have slits of rounding errors.
    const double s = row == 0 || row == rows ? 0 : std::sin(latitude);
    return Ring{radius * s, radius * c, s, c};
  };
  for (std::uint32_t row = 0; row < rows; ++row) AddBand(mesh, ring(row), ring(row + 1), sides);
  return mesh;
}

/// A model of an assembly with one occurrence a mesh; occurrence i + 1 shows mesh i.
inline Model MakeModel(const std::vector<Mesh>& meshes) {
  Model model;
  model.products.push_back({"assembly", true, {}, {}});
  model.occurrences.push_back({-1, 0, "assembly", {}});
  for (const Mesh& mesh : meshes) {
    const auto product = static_cast<int>(model.products.size());
    model.products.push_back({"part " + std::to_string(product), false, {}, mesh});
    model.occurrences.push_back({0, product, model.products.back().name, {}});
  }
  return model;
}

/// A view of `model` that fills an image of `size` pixels a side less a border of 20.
inline View ViewOf(const Model& model, const std::string& direction, int size) {
  std::string error;
  const double border = 20;
  return FitView(model, LeafOccurrences(model), ParseViewDirection(direction, error).value(),
                 {border, border, size - border, size - border}, {size, size});
}

}  // namespace zrfigure
