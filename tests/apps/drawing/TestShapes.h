#pragma once
// Meshes and models made by hand, with known edges and silhouettes.

#include <numbers>

#include "visibility/View.h"

namespace zrfigure {

/// An axis-aligned box: split positions, 12 triangles, 12 sharp edges.
inline Mesh MakeBox(Vec3 low, Vec3 high) {
  Mesh mesh;
  const auto corner = [&](int i) {
    return std::array{static_cast<float>(i & 1 ? high.x : low.x), static_cast<float>(i & 2 ? high.y : low.y),
                      static_cast<float>(i & 4 ? high.z : low.z)};
  };
  // Corners of each face, counter-clockwise from outside, with the face's normal.
  const std::array<std::pair<std::array<int, 4>, std::array<float, 3>>, 6> faces{{{{0, 2, 3, 1}, {0, 0, -1}},
                                                                                  {{4, 5, 7, 6}, {0, 0, 1}},
                                                                                  {{0, 1, 5, 4}, {0, -1, 0}},
                                                                                  {{2, 6, 7, 3}, {0, 1, 0}},
                                                                                  {{0, 4, 6, 2}, {-1, 0, 0}},
                                                                                  {{1, 3, 7, 5}, {1, 0, 0}}}};
  for (const auto& [corners, normal] : faces) {
    const auto first = static_cast<std::uint32_t>(mesh.positions.size());
    for (const int i : corners) {
      mesh.positions.push_back(corner(i));
      mesh.normals.push_back(normal);
    }
    mesh.triangles.push_back({first, first + 1, first + 2});
    mesh.triangles.push_back({first, first + 2, first + 3});
  }
  for (int i = 0; i < 8; ++i) {
    for (const int bit : {1, 2, 4}) {
      if (!(i & bit)) mesh.sharpEdges.push_back({corner(i), corner(i | bit)});
    }
  }
  return mesh;
}

/// A closed cylinder round the Z axis from z = 0 with smooth wall normals; its two rims are sharp.
inline Mesh MakeCylinder(double radius, double height, std::uint32_t sides) {
  Mesh mesh;
  const auto rim = [&](std::uint32_t i, double z) {
    const double angle = 2 * std::numbers::pi * (i % sides) / sides;
    return std::array{static_cast<float>(radius * std::cos(angle)), static_cast<float>(radius * std::sin(angle)),
                      static_cast<float>(z)};
  };
  for (std::uint32_t i = 0; i < sides; ++i) {
    for (const double z : {0.0, height}) {
      const auto point = rim(i, z);
      mesh.positions.push_back(point);
      mesh.normals.push_back({point[0] / static_cast<float>(radius), point[1] / static_cast<float>(radius), 0});
    }
    const std::uint32_t a = 2 * i, b = 2 * ((i + 1) % sides);
    mesh.triangles.push_back({a, b, b + 1});
    mesh.triangles.push_back({a, b + 1, a + 1});
  }
  for (const double z : {0.0, height}) {
    const auto centre = static_cast<std::uint32_t>(mesh.positions.size());
    mesh.positions.push_back({0, 0, static_cast<float>(z)});
    for (std::uint32_t i = 0; i < sides; ++i) mesh.positions.push_back(rim(i, z));
    mesh.normals.resize(mesh.positions.size(), {0, 0, z > 0 ? 1.0F : -1.0F});
    for (std::uint32_t i = 0; i < sides; ++i) {
      const std::uint32_t a = centre + 1 + i, b = centre + 1 + (i + 1) % sides;
      mesh.triangles.push_back(z > 0 ? std::array{centre, a, b} : std::array{centre, b, a});
    }
    Polyline line;
    for (std::uint32_t i = 0; i <= sides; ++i) line.push_back(rim(i, z));
    mesh.sharpEdges.push_back(line);
  }
  return mesh;
}

/// A sphere round the origin, without any sharp edge.
inline Mesh MakeSphere(double radius, std::uint32_t sides) {
  Mesh mesh;
  const std::uint32_t rows = sides / 2;
  for (std::uint32_t row = 0; row <= rows; ++row) {
    const double latitude = std::numbers::pi * row / rows;
    // The poles and the seam are single places, or the mesh would have slits of rounding errors.
    const double ring = row == 0 || row == rows ? 0 : std::sin(latitude);
    for (std::uint32_t i = 0; i < sides; ++i) {
      const double longitude = 2 * std::numbers::pi * i / sides;
      const Vec3 n{ring * std::cos(longitude), ring * std::sin(longitude), std::cos(latitude)};
      mesh.positions.push_back(
          {static_cast<float>(n.x * radius), static_cast<float>(n.y * radius), static_cast<float>(n.z * radius)});
      mesh.normals.push_back({static_cast<float>(n.x), static_cast<float>(n.y), static_cast<float>(n.z)});
    }
  }
  for (std::uint32_t row = 0; row < rows; ++row) {
    for (std::uint32_t i = 0; i < sides; ++i) {
      const std::uint32_t a = row * sides + i, b = row * sides + (i + 1) % sides;
      if (row + 1 < rows) mesh.triangles.push_back({a, a + sides, b + sides});
      if (row > 0) mesh.triangles.push_back({a, b + sides, b});
    }
  }
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
