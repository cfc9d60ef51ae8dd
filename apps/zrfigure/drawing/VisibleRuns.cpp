#include "drawing/VisibleRuns.h"

namespace zrfigure {
namespace {

// Quantitative invisibility by sampling: a point every kStep pixels along the projected line asks one ray whether
// anything stands before it; between two samples that disagree bisection finds the change. A line between surfaces is
// asked for a little outside the material it bounds, which decides the grazing cases without tolerances along the ray.
// Cost: one ray a sample, about kBisections more a change.
constexpr double kStep = 1.5;
constexpr int kBisections = 6;
constexpr double kOutside = 0.5;           // Pixels that a sample stands off the surfaces beside the line.
constexpr double kMostOutside = 4;         // Limit to that where facets are coarse.
constexpr double kNearPx = 0.75;           // Depth in pixels within which surfaces are taken to touch.
constexpr double kBeside = 2.5;            // Where to look for what the line separates, pixels to either side.
constexpr std::size_t kShortClassRun = 5;  // Samples; a shorter change of line class is not shown.

std::array<std::array<double, 3>, 3> InverseTranspose(const std::array<std::array<double, 3>, 3>& m) {
  std::array<std::array<double, 3>, 3> cofactors{};
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) {
      cofactors[i][j] = m[(i + 1) % 3][(j + 1) % 3] * m[(i + 2) % 3][(j + 2) % 3] -
                        m[(i + 1) % 3][(j + 2) % 3] * m[(i + 2) % 3][(j + 1) % 3];
    }
  }
  const double determinant = m[0][0] * cofactors[0][0] + m[0][1] * cofactors[0][1] + m[0][2] * cofactors[0][2];
  if (determinant == 0) return m;
  for (auto& row : cofactors) {
    for (double& value : row) value /= determinant;
  }
  return cofactors;
}

/// A candidate line with its projection and a parameter: pixels along the line from its start.
class ProjectedChain {
public:
  ProjectedChain(const OccurrenceView& view, const LineChain& chain) : view_(view), chain_(chain) {
    const Placement& toWorld = view.input.model.occurrences[view.occurrence].toWorld;
    world_.push_back(TransformPoint(toWorld, chain.segments.front().ends[0]));
    for (const LineSegment& segment : chain.segments) world_.push_back(TransformPoint(toWorld, segment.ends[1]));
    for (const Vec3 point : world_) {
      const Vec3 pixel = view.input.view.ToPixel(point);
      pixels_.push_back({pixel.x, pixel.y});
      const std::size_t n = pixels_.size();
      if (n > 1) lengths_.push_back(Distance(pixels_[n - 2], pixels_[n - 1]));
      along_.push_back(n == 1 ? 0 : along_.back() + lengths_.back());
    }
  }

  [[nodiscard]] double Length() const { return along_.back(); }
  [[nodiscard]] bool Closed() const {
    return world_.size() > 2 && zrfigure::Length(world_.front() - world_.back()) == 0;
  }

  [[nodiscard]] Point2 PixelAt(double s) const {
    const auto [segment, t] = Locate(s);
    return pixels_[segment] + (pixels_[segment + 1] - pixels_[segment]) * t;
  }

  [[nodiscard]] bool VisibleAt(double s) const {
    const auto [index, t] = Locate(s);
    const LineSegment& segment = chain_.segments[index];
    const std::optional<Vec3> outside = Outside(segment, t);
    if (!outside) return false;
    const View& camera = view_.input.view;
    const double pixelsOut =
        chain_.contour ? std::min(kMostOutside, kOutside + segment.bulge * camera.scale) : kOutside;
    OcclusionQuery query;
    query.point = world_[index] + (world_[index + 1] - world_[index]) * t + *outside * (pixelsOut / camera.scale);
    query.toViewer = camera.direction.toViewer;
    query.tolerance = kNearPx / camera.scale;
    return !view_.input.scene.Occluded(query);
  }

  [[nodiscard]] LineClass ClassAt(double s) const {
    const auto [index, t] = Locate(s);
    const Point2 along = pixels_[index + 1] - pixels_[index];
    const double length = lengths_[index];
    if (length == 0) return LineClass::Edge;
    const Point2 across{-along.y / length * kBeside, along.x / length * kBeside};
    const Point2 at = PixelAt(s);
    return IsOwn(at + across) && IsOwn(at - across) ? LineClass::Edge : LineClass::Outline;
  }

  /// The projected line between two parameters.
  [[nodiscard]] std::vector<Point2> Cut(double from, double to) const {
    std::vector<Point2> points{PixelAt(from)};
    for (std::size_t i = 0; i < along_.size(); ++i) {
      if (along_[i] > from && along_[i] < to) points.push_back(pixels_[i]);
    }
    points.push_back(PixelAt(to));
    return points;
  }

private:
  struct Location {
    std::size_t segment;
    double t;
  };

  [[nodiscard]] Location Locate(double s) const {
    auto next = static_cast<std::size_t>(std::ranges::upper_bound(along_, s) - along_.begin());
    next = std::clamp<std::size_t>(next, 1, along_.size() - 1);
    const double length = along_[next] - along_[next - 1];
    return {next - 1, length > 0 ? std::clamp((s - along_[next - 1]) / length, 0.0, 1.0) : 0.0};
  }

  [[nodiscard]] Vec3 WorldNormal(Vec3 n) const {
    const auto& m = view_.normalMatrix;
    return Normalized({n.x * m[0][0] + n.y * m[1][0] + n.z * m[2][0], n.x * m[0][1] + n.y * m[1][1] + n.z * m[2][1],
                       n.x * m[0][2] + n.y * m[1][2] + n.z * m[2][2]});
  }

  // Unit vector out of the surfaces that face the viewer: zero for a line without surfaces, nothing when all face away
  // and the part's own material hides the line. Only facing surfaces count, because another part may touch the others.
  [[nodiscard]] std::optional<Vec3> Outside(const LineSegment& segment, double t) const {
    Vec3 sum;
    bool facing = segment.surfaces == 0;
    for (int i = 0; i < segment.surfaces; ++i) {
      const auto& ends = segment.normals[i];
      Vec3 normal = WorldNormal(ends[0] + (ends[1] - ends[0]) * t);
      const double towardViewer = Dot(normal, view_.input.view.direction.toViewer);
      if (!chain_.contour && towardViewer <= 1e-6) {
        if (view_.closed) continue;
        normal = normal * -1;
      }
      facing = true;
      sum = sum + normal;
    }
    if (!facing) return std::nullopt;
    return Normalized(sum);
  }

  [[nodiscard]] bool IsOwn(Point2 p) const {
    return view_.input.ids.At(static_cast<int>(std::floor(p.x)), static_cast<int>(std::floor(p.y))) == view_.occurrence;
  }

  const OccurrenceView& view_;
  const LineChain& chain_;
  std::vector<Vec3> world_;
  std::vector<Point2> pixels_;
  std::vector<double> lengths_;  // Of the segments in pixels.
  std::vector<double> along_;
};

struct Sample {
  double at = 0;
  bool visible = false;
  LineClass lineClass = LineClass::Edge;
};

std::vector<Sample> TakeSamples(const ProjectedChain& line) {
  const int count = std::max(1, static_cast<int>(std::ceil(line.Length() / kStep)));
  std::vector<Sample> samples(count);
  for (int i = 0; i < count; ++i) {
    samples[i].at = line.Length() * (i + 0.5) / count;
    samples[i].visible = line.VisibleAt(samples[i].at);
  }
  return samples;
}

// One sample that differs from both its neighbours is noise of grazing rays.
void CloseSingleGaps(std::vector<Sample>& samples) {
  for (std::size_t i = 1; i + 1 < samples.size(); ++i) {
    if (samples[i - 1].visible == samples[i + 1].visible) samples[i].visible = samples[i - 1].visible;
  }
}

double FindChange(const ProjectedChain& line, const Sample& before, const Sample& after) {
  double low = before.at, high = after.at;
  for (int i = 0; i < kBisections; ++i) {
    const double middle = (low + high) / 2;
    (line.VisibleAt(middle) == before.visible ? low : high) = middle;
  }
  return (low + high) / 2;
}

// Gives every class run in [begin, end) that is too short the class of the run before it, or after it at the start.
void SmoothClasses(std::vector<Sample>& samples, std::size_t begin, std::size_t end) {
  for (std::size_t from = begin, to = begin; from < end; from = to) {
    while (to < end && samples[to].lineClass == samples[from].lineClass) ++to;
    if (to - from >= kShortClassRun || (from == begin && to == end)) continue;
    const LineClass neighbour = from > begin ? samples[from - 1].lineClass : samples[to].lineClass;
    for (std::size_t i = from; i < to; ++i) samples[i].lineClass = neighbour;
    if (from > begin) continue;
    to = begin;  // The first run grew: look at it again.
  }
}

}  // namespace

OccurrenceView::OccurrenceView(const LineArtInput& lineArt, int index, bool closedMesh)
    : input(lineArt),
      occurrence(index),
      closed(closedMesh),
      normalMatrix(InverseTranspose(lineArt.model.occurrences[index].toWorld.linear)) {}

Vec3 OccurrenceView::ToViewerInPart() const {
  const Vec3 v = input.view.direction.toViewer;
  const auto& m = normalMatrix;
  return {v.x * m[0][0] + v.y * m[0][1] + v.z * m[0][2], v.x * m[1][0] + v.y * m[1][1] + v.z * m[1][2],
          v.x * m[2][0] + v.y * m[2][1] + v.z * m[2][2]};
}

std::vector<ArtLine> VisibleRuns(const OccurrenceView& view, const LineChain& chain) {
  const ProjectedChain line(view, chain);
  std::vector<Sample> samples = TakeSamples(line);
  CloseSingleGaps(samples);
  std::vector<ArtLine> lines;
  const auto add = [&](double from, double to, LineClass lineClass) {
    lines.push_back({view.occurrence, lineClass, line.Cut(from, to)});
  };
  for (std::size_t begin = 0, end = 0; begin < samples.size(); begin = end) {
    while (end < samples.size() && samples[end].visible == samples[begin].visible) ++end;
    if (!samples[begin].visible) continue;
    for (std::size_t i = begin; i < end; ++i) samples[i].lineClass = line.ClassAt(samples[i].at);
    SmoothClasses(samples, begin, end);
    double from = begin == 0 ? 0 : FindChange(line, samples[begin - 1], samples[begin]);
    for (std::size_t i = begin + 1; i < end; ++i) {
      if (samples[i].lineClass == samples[i - 1].lineClass) continue;
      const double change = (samples[i - 1].at + samples[i].at) / 2;
      add(from, change, samples[i - 1].lineClass);
      from = change;
    }
    add(from, end == samples.size() ? line.Length() : FindChange(line, samples[end - 1], samples[end]),
        samples[end - 1].lineClass);
  }
  const bool wraps = line.Closed() && lines.size() > 1 && samples.front().visible && samples.back().visible &&
                     lines.front().lineClass == lines.back().lineClass;
  if (wraps) {
    auto& last = lines.back().points;
    last.insert(last.end(), lines.front().points.begin() + 1, lines.front().points.end());
    lines.front() = std::move(lines.back());
    lines.pop_back();
  }
  return lines;
}

}  // namespace zrfigure
