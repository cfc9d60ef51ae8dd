#pragma once
// What of a mesh can become a line, prepared once a part and used for every occurrence and view.
// Refers to the mesh it was made from, which must live as long.

#include <cstdint>
#include <vector>

#include "drawing/LineChain.h"

namespace zrfigure {

class MeshLines {
public:
  explicit MeshLines(const Mesh& mesh);

  /// Sharp edges, the same from every side.
  [[nodiscard]] const std::vector<LineChain>& SharpEdges() const { return sharpEdges_; }

  /// Silhouettes as seen from `toViewer` (part coordinates, any length): where the interpolated normal is perpendicular
  /// to it. Hollow ones, which no viewer can see, are left out for closed meshes.
  [[nodiscard]] std::vector<LineChain> Contours(Vec3 toViewer) const;

  /// True when every edge joins two triangles: then a line between two surfaces that face away cannot be seen.
  [[nodiscard]] bool Closed() const { return closed_; }

private:
  struct EdgeSide {
    std::uint32_t triangle = 0, corner = 0;  // The edge runs from `corner` to the next one of the triangle.
  };
  struct MeshEdge {
    std::uint64_t key = 0;  // Welded ids of its ends, the smaller one in the upper half.
    EdgeSide side;
  };

  void Weld();
  void CollectEdges();
  /// \return the keys of the sharp mesh edges, sorted.
  std::vector<std::uint64_t> BuildSharpEdges();
  void BuildSplitEdges(const std::vector<std::uint64_t>& sharpKeys);
  [[nodiscard]] LineSegment SegmentOfEdge(std::size_t first, std::size_t count) const;
  [[nodiscard]] std::uint64_t KeyBetween(Vec3 from, Vec3 to) const;
  [[nodiscard]] LineSegment SharpSegment(Vec3 from, Vec3 to, std::uint64_t key) const;
  [[nodiscard]] std::pair<std::size_t, std::size_t> FindEdge(std::uint64_t key) const;
  void AddTriangleContour(std::size_t triangle, const std::vector<double>& facing, Vec3 toViewer,
                          std::vector<LineSegment>& segments) const;
  static void AddSplitContour(const LineSegment& edge, Vec3 toViewer, std::vector<LineSegment>& segments);

  const Mesh* mesh_;
  std::vector<std::uint32_t> weld_;    // Position index to the id of its place.
  std::vector<std::uint32_t> places_;  // Position indices, one a place, sorted by coordinates: their order is the id.
  std::vector<MeshEdge> edges_;        // Sorted by key, then triangle.
  std::vector<LineChain> sharpEdges_;
  std::vector<LineSegment>
      splitEdges_;  // Not sharp, but the normals of the two sides differ: a contour can run along them.
  bool closed_ = false;
};

}  // namespace zrfigure
