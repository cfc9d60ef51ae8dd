#include "layout/placement/GridIndex.h"

#include <algorithm>
#include <cmath>

namespace zrcallouts::placement {

GridIndex::GridIndex(const FixedBox& area, std::size_t count) : area_(area) {
  constexpr Coord kMaxCellsAcross = 256;
  const Coord across =
      std::clamp<Coord>(static_cast<Coord>(std::sqrt(static_cast<double>(count)) * 1.5), 4, kMaxCellsAcross);
  columns_ = rows_ = across;
  cellWidth_ = std::max<Coord>(1, area.Width() / columns_ + 1);
  cellHeight_ = std::max<Coord>(1, area.Height() / rows_ + 1);
  cells_.resize(static_cast<std::size_t>(columns_ * rows_));
}

Coord GridIndex::Column(Coord x) const {
  return std::clamp<Coord>((x - area_.left) / cellWidth_, 0, columns_ - 1);
}

Coord GridIndex::Row(Coord y) const {
  return std::clamp<Coord>((y - area_.top) / cellHeight_, 0, rows_ - 1);
}

template <class Visitor>
void GridIndex::VisitBoxCells(const FixedBox& box, Visitor&& visit) const {
  for (Coord row = Row(box.top); row <= Row(box.bottom); ++row)
    for (Coord column = Column(box.left); column <= Column(box.right); ++column)
      visit(static_cast<std::size_t>(row * columns_ + column));
}

template <class Visitor>
void GridIndex::VisitSegmentCells(FixedPoint a, FixedPoint b, Visitor&& visit) const {
  if (a.y > b.y) std::swap(a, b);
  const double slope = a.y == b.y ? 0.0 : static_cast<double>(b.x - a.x) / static_cast<double>(b.y - a.y);
  const Coord firstRow = Row(a.y), lastRow = Row(b.y);
  for (Coord row = firstRow; row <= lastRow; ++row) {
    // The piece of the segment inside this row of cells, a raster unit wider at both ends against rounding.
    const Coord top = area_.top + row * cellHeight_;
    const Coord y0 = row == firstRow ? a.y : top, y1 = row == lastRow ? b.y : top + cellHeight_;
    Coord x0 = std::min(a.x, b.x), x1 = std::max(a.x, b.x);
    if (a.y != b.y) {
      const double atY0 = static_cast<double>(a.x) + slope * static_cast<double>(y0 - a.y);
      const double atY1 = static_cast<double>(a.x) + slope * static_cast<double>(y1 - a.y);
      x0 = std::max(x0, static_cast<Coord>(std::min(atY0, atY1)) - 1);
      x1 = std::min(x1, static_cast<Coord>(std::max(atY0, atY1)) + 1);
    }
    for (Coord column = Column(x0); column <= Column(x1); ++column)
      visit(static_cast<std::size_t>(row * columns_ + column));
  }
}

void GridIndex::Insert(std::size_t cell, std::uint32_t id) {
  cells_[cell].push_back(id);
}

void GridIndex::Remove(std::size_t cell, std::uint32_t id) {
  auto& ids = cells_[cell];
  const auto found = std::find(ids.begin(), ids.end(), id);
  if (found != ids.end()) ids.erase(found);
}

void GridIndex::Collect(std::size_t cell, std::vector<std::uint32_t>& found) const {
  for (const std::uint32_t id : cells_[cell]) {
    if (id >= lastQuery_.size()) lastQuery_.resize(id + 1, 0);
    if (lastQuery_[id] == query_) continue;
    lastQuery_[id] = query_;
    found.push_back(id);
  }
}

void GridIndex::InsertSegment(std::uint32_t id, FixedPoint a, FixedPoint b) {
  VisitSegmentCells(a, b, [&](std::size_t cell) { Insert(cell, id); });
}

void GridIndex::InsertBox(std::uint32_t id, const FixedBox& box) {
  VisitBoxCells(box, [&](std::size_t cell) { Insert(cell, id); });
}

void GridIndex::RemoveSegment(std::uint32_t id, FixedPoint a, FixedPoint b) {
  VisitSegmentCells(a, b, [&](std::size_t cell) { Remove(cell, id); });
}

void GridIndex::RemoveBox(std::uint32_t id, const FixedBox& box) {
  VisitBoxCells(box, [&](std::size_t cell) { Remove(cell, id); });
}

void GridIndex::CollectNearSegment(FixedPoint a, FixedPoint b, std::vector<std::uint32_t>& found) const {
  VisitSegmentCells(a, b, [&](std::size_t cell) { Collect(cell, found); });
}

void GridIndex::CollectNearBox(const FixedBox& box, std::vector<std::uint32_t>& found) const {
  VisitBoxCells(box, [&](std::size_t cell) { Collect(cell, found); });
}

}  // namespace zrcallouts::placement
