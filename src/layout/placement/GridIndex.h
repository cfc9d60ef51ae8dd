#pragma once
// Uniform grid over the page that tells which items lie near a segment or box. Single thread.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "layout/placement/FixedGeometry.h"

namespace zrcallouts::placement {

/// Index of numbered shapes by the grid cells they touch. What lies outside the area counts to the border cells.
/// A query names a superset of the shapes that meet the asked one, each once, in an order fixed by the insertions.
class GridIndex {
public:
  /// Cells are sized for about `count` shapes spread over `area`.
  GridIndex(const FixedBox& area, std::size_t count);

  void InsertSegment(std::uint32_t id, FixedPoint a, FixedPoint b);
  void InsertBox(std::uint32_t id, const FixedBox& box);
  void RemoveSegment(std::uint32_t id, FixedPoint a, FixedPoint b);
  void RemoveBox(std::uint32_t id, const FixedBox& box);

  /// Adds to `found` the ids near the segment that are not in it since the last StartQuery.
  void CollectNearSegment(FixedPoint a, FixedPoint b, std::vector<std::uint32_t>& found) const;
  void CollectNearBox(const FixedBox& box, std::vector<std::uint32_t>& found) const;

  /// Forgets which ids were collected; call before the first Collect of a query.
  void StartQuery() const { ++query_; }

private:
  template <class Visitor>
  void VisitSegmentCells(FixedPoint a, FixedPoint b, Visitor&& visit) const;
  template <class Visitor>
  void VisitBoxCells(const FixedBox& box, Visitor&& visit) const;
  [[nodiscard]] Coord Column(Coord x) const;
  [[nodiscard]] Coord Row(Coord y) const;
  void Insert(std::size_t cell, std::uint32_t id);
  void Remove(std::size_t cell, std::uint32_t id);
  void Collect(std::size_t cell, std::vector<std::uint32_t>& found) const;

  FixedBox area_;
  Coord columns_ = 1, rows_ = 1, cellWidth_ = 1, cellHeight_ = 1;
  std::vector<std::vector<std::uint32_t>> cells_;
  mutable std::vector<std::uint32_t> lastQuery_;  ///< By id: the query that collected it last.
  mutable std::uint32_t query_ = 0;
};

}  // namespace zrcallouts::placement
