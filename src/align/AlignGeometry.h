#pragma once
// The arithmetic that aligning in 3D and in 2D have in common: pure functions on points of the page or the screen.

#include <array>
#include <cstddef>

#include <dg/DPoint2D.h>
#include <dg/DVec2.h>

#include "zrcallouts/Align.h"

namespace zrcallouts::alignment {

/// Below this in both coordinates a direction points at the viewer: the single-precision epsilon.
inline constexpr double kNoDirection = 1.1920928955078125e-7;

[[nodiscard]] bool IsAxisMode(Align_Mode mode);
[[nodiscard]] bool IsSpreadMode(Align_Mode mode);
/// The axis of an axis mode: 0, 1, 2 for X, Y, Z.
[[nodiscard]] std::size_t AxisIndex(Align_Mode mode);
[[nodiscard]] bool HasDirection(const dg::DVec2& direction);

// A range is minimum and maximum of the primary coordinate, then minimum and maximum of the other.
void StartRange(std::array<double, 4>& range, double primary, double other);
void ExtendRange(std::array<double, 4>& range, double primary, double other);

/// Whether a line runs neither vertically nor horizontally, to 0.005 relatively. Along one that does, aligning is
/// centring: `mode` becomes that one, and for a horizontal line `range` and `primary` change over to the other
/// coordinate.
[[nodiscard]] bool IsSlanted(const dg::DVec2& direction, Align_Mode& mode, std::array<double, 4>& range, int& primary);

/// The primary coordinate that an aligning mode gives to every label; `current` for modes that align nothing.
[[nodiscard]] double AlignedCoordinate(Align_Mode mode, const std::array<double, 4>& range, double current);

/// The foot of `point` on the infinite line through `centre`; the point itself when there is no direction.
[[nodiscard]] dg::DPoint2D OntoLine(const dg::DPoint2D& point, const dg::DPoint2D& centre, const dg::DVec2& direction);
/// The foot of `point` on the segment, its nearer end outside it.
[[nodiscard]] dg::DPoint2D OntoSegment(const dg::DPoint2D& point, const std::array<dg::DPoint2D, 2>& segment);

/// Place `index` of `count` even places from `start` to `end`; `position` when the ends coincide.
[[nodiscard]] dg::DPoint2D EvenPlace(std::size_t index, std::size_t count, const dg::DPoint2D& position,
                                     const dg::DPoint2D& start, const dg::DPoint2D& end);
/// The other coordinate at place `index` of `count` even places over its range.
[[nodiscard]] double EvenCoordinate(std::size_t index, std::size_t count, const std::array<double, 4>& range);

/// Order of labels along a slanted line.
[[nodiscard]] bool ComesBefore(const dg::DPoint2D& left, const dg::DPoint2D& right);

}  // namespace zrcallouts::alignment
