#include "drawing/LineTicks.h"

#include "drawing/LineSmoothing.h"

namespace zrfigure {
namespace {

constexpr double kTickLength = 8;    // Pixels.
constexpr double kJoinDistance = 2;  // Pixels.
constexpr double kBeyond = 1.5;      // Pixels past a line's end.

bool IsShort(const CandidateLine& candidate) {
  return PolylineLength(candidate.line.points) < kTickLength;
}

bool Touches(const CandidateLine& line, Point2 p) {
  const auto& points = line.line.points;
  for (std::size_t i = 1; i < points.size(); ++i) {
    if (DistanceToSegment(p, points[i - 1], points[i]) < kJoinDistance) return true;
  }
  return false;
}

bool EndTouches(const CandidateLine& line, const CandidateLine& other) {
  return Touches(other, line.line.points.front()) || Touches(other, line.line.points.back());
}

/// The lines of one occurrence, by index.
class TickFinder {
public:
  TickFinder(const std::vector<CandidateLine>& lines, const IdBuffer& ids)
      : lines_(lines), ids_(ids), held_(lines.size()) {
    for (std::size_t i = 0; i < lines.size(); ++i) {
      if (!IsShort(lines[i])) {
        held_[i] = true;
        anyLong_ = true;
      } else {
        (lines[i].contour ? shortContours_ : shortEdges_).push_back(i);
      }
    }
    for (const std::size_t edge : shortEdges_) held_[edge] = CutAtStart(lines_[edge]) && CutAtEnd(lines_[edge]);
    HoldEdges();
    HoldContours();
  }

  [[nodiscard]] bool Held(std::size_t line) const { return held_[line]; }

private:
  // Does another occurrence stand where the line would go on from `end`, away from `inner`?
  [[nodiscard]] bool CutOff(int own, Point2 end, Point2 inner) const {
    const double length = Distance(inner, end);
    const Point2 beyond = length > 0 ? end + (end - inner) * (kBeyond / length) : end;
    const int there = ids_.At(static_cast<int>(std::floor(beyond.x)), static_cast<int>(std::floor(beyond.y)));
    return there != own && there != IdBuffer::kBackground;
  }
  [[nodiscard]] bool CutAtStart(const CandidateLine& line) const {
    return CutOff(line.line.occurrence, line.line.points.front(), line.line.points[1]);
  }
  [[nodiscard]] bool CutAtEnd(const CandidateLine& line) const {
    return CutOff(line.line.occurrence, line.line.points.back(), line.line.points[line.line.points.size() - 2]);
  }

  // Being held spreads from long lines over edges that touch: a flood fill.
  void HoldEdges() {
    std::vector<std::size_t> spreading;
    for (std::size_t i = 0; i < lines_.size(); ++i) {
      if (held_[i]) spreading.push_back(i);
    }
    while (!spreading.empty()) {
      const CandidateLine& holder = lines_[spreading.back()];
      spreading.pop_back();
      for (const std::size_t edge : shortEdges_) {
        const bool touching = !held_[edge] && (EndTouches(lines_[edge], holder) || EndTouches(holder, lines_[edge]));
        if (!touching) continue;
        held_[edge] = true;
        spreading.push_back(edge);
      }
    }
    if (anyLong_) return;
    for (const std::size_t edge : shortEdges_) held_[edge] = true;
  }

  void HoldContours() {
    const std::vector<bool> holders = held_;
    const auto held = [&](Point2 p) {
      for (std::size_t i = 0; i < lines_.size(); ++i) {
        if (holders[i] && Touches(lines_[i], p)) return true;
      }
      return false;
    };
    for (const std::size_t contour : shortContours_) {
      const auto& points = lines_[contour].line.points;
      held_[contour] =
          (held(points.front()) || CutAtStart(lines_[contour])) && (held(points.back()) || CutAtEnd(lines_[contour]));
    }
  }

  const std::vector<CandidateLine>& lines_;
  const IdBuffer& ids_;
  std::vector<bool> held_;
  std::vector<std::size_t> shortEdges_, shortContours_;
  bool anyLong_ = false;
};

}  // namespace

void DropTicks(std::vector<CandidateLine>& lines, const IdBuffer& ids) {
  const TickFinder ticks(lines, ids);
  std::size_t kept = 0;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (!ticks.Held(i)) continue;
    if (kept != i) lines[kept] = std::move(lines[i]);
    ++kept;
  }
  lines.resize(kept);
}

}  // namespace zrfigure
