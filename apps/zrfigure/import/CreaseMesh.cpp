#include "import/CreaseMesh.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <tuple>
#include <unordered_map>

#include "import/VectorMath.h"

// Idea: welding turns the soup into a topology. Triangles round a vertex that are connected through edges below the
// crease angle share one output position; so corners (triangle, vertex) are joined across every smooth edge, and each
// set of corners becomes one position whose normal is the angle-weighted sum of its triangles' normals (Thuermer and
// Wuethrich, "Computing vertex normals from polygonal facets", 1998). Sharp segments are then chained through vertices
// where exactly two of them meet. Cost: linear in triangles but for two sorts.

namespace zrfigure {
namespace {

using Triangle = std::array<std::uint32_t, 3>;

constexpr double kCreaseCosine = std::numbers::sqrt3 / 2;  // 30 degrees
constexpr double kWeldTolerance = 1e-6;                    // of the part's diagonal

/// Gives vertices closer than a tolerance one number. A point is looked up in all cells that its tolerance box touches,
/// so that cell borders separate nothing.
class Welder {
public:
  explicit Welder(double tolerance) : tolerance_(tolerance), cell_(4 * tolerance) {}

  std::uint32_t NumberOf(const Vec3& p) {
    const std::array<std::int64_t, 3> low{Cell(p.x - tolerance_), Cell(p.y - tolerance_), Cell(p.z - tolerance_)};
    const std::array<std::int64_t, 3> high{Cell(p.x + tolerance_), Cell(p.y + tolerance_), Cell(p.z + tolerance_)};
    for (std::int64_t x = low[0]; x <= high[0]; ++x) {
      for (std::int64_t y = low[1]; y <= high[1]; ++y) {
        for (std::int64_t z = low[2]; z <= high[2]; ++z) {
          const auto [first, last] = cells_.equal_range(Key(x, y, z));
          for (auto entry = first; entry != last; ++entry) {
            if (Length(points_[entry->second] - p) <= tolerance_) return entry->second;
          }
        }
      }
    }
    const auto number = static_cast<std::uint32_t>(points_.size());
    points_.push_back(p);
    cells_.emplace(Key(Cell(p.x), Cell(p.y), Cell(p.z)), number);
    return number;
  }

  [[nodiscard]] const std::vector<Vec3>& Points() const { return points_; }

private:
  [[nodiscard]] std::int64_t Cell(double value) const { return static_cast<std::int64_t>(std::floor(value / cell_)); }

  static std::uint64_t Key(std::int64_t x, std::int64_t y, std::int64_t z) {
    const auto mix = [](std::int64_t v, std::uint64_t factor) { return static_cast<std::uint64_t>(v) * factor; };
    return mix(x, 0x9E3779B97F4A7C15U) ^ mix(y, 0xC2B2AE3D27D4EB4FU) ^ mix(z, 0x165667B19E3779F9U);
  }

  double tolerance_;
  double cell_;
  std::vector<Vec3> points_;
  std::unordered_multimap<std::uint64_t, std::uint32_t> cells_;
};

bool IsFinite(const std::array<float, 3>& p) {
  return std::isfinite(p[0]) && std::isfinite(p[1]) && std::isfinite(p[2]);
}

double Diagonal(const std::vector<std::array<float, 3>>& positions) {
  std::array<double, 3> low{1e300, 1e300, 1e300};
  std::array<double, 3> high{-1e300, -1e300, -1e300};
  for (const auto& p : positions) {
    if (!IsFinite(p)) continue;
    for (std::size_t i = 0; i < 3; ++i) {
      low[i] = std::min<double>(low[i], p[i]);
      high[i] = std::max<double>(high[i], p[i]);
    }
  }
  return low[0] > high[0] ? 0 : std::hypot(high[0] - low[0], high[1] - low[1], high[2] - low[2]);
}

/// A side of a triangle, its ends in ascending order.
struct Side {
  std::uint32_t low, high;
  std::uint32_t triangle;
  bool isForward;  ///< The triangle runs from low to high.

  [[nodiscard]] bool IsSameEdge(const Side& other) const { return low == other.low && high == other.high; }
};

class CreaseBuilder {
public:
  explicit CreaseBuilder(const TriangleSoup& soup)
      : welder_(std::max(Diagonal(soup.positions) * kWeldTolerance, 1e-12)) {
    Weld(soup);
    DropDoubles();
    for (const Triangle& t : triangles_) normals_.push_back(NormalOf(t));
  }

  Mesh Build() {
    DisjointSets corners(3 * triangles_.size());
    const std::vector<Side> sides = SortedSides();
    for (std::size_t begin = 0; begin < sides.size();) {
      std::size_t end = begin + 1;
      while (end < sides.size() && sides[end].IsSameEdge(sides[begin])) ++end;
      ClassifyEdge(sides, begin, end, corners);
      begin = end;
    }
    Mesh mesh = EmitTriangles(corners);
    mesh.sharpEdges = ChainSegments();
    return mesh;
  }

private:
  void Weld(const TriangleSoup& soup) {
    constexpr std::uint32_t kUnusable = 0xFFFFFFFF;
    std::vector<std::uint32_t> numbers;
    numbers.reserve(soup.positions.size());
    for (const auto& p : soup.positions) {
      numbers.push_back(IsFinite(p) ? welder_.NumberOf({p[0], p[1], p[2]}) : kUnusable);
    }
    for (const Triangle& t : soup.triangles) {
      if (std::any_of(t.begin(), t.end(), [&](std::uint32_t i) { return i >= numbers.size(); })) continue;
      const Triangle welded{numbers[t[0]], numbers[t[1]], numbers[t[2]]};
      const bool isUsable = std::find(welded.begin(), welded.end(), kUnusable) == welded.end();
      const bool isDegenerate = welded[0] == welded[1] || welded[1] == welded[2] || welded[2] == welded[0];
      if (isUsable && !isDegenerate) triangles_.push_back(welded);
    }
  }

  /// Double-sided surfaces hold every triangle twice; left alone, each of their edges would count as a junction of
  /// four.
  void DropDoubles() {
    std::vector<std::pair<Triangle, std::size_t>> sorted;
    for (std::size_t i = 0; i < triangles_.size(); ++i) {
      Triangle key = triangles_[i];
      std::sort(key.begin(), key.end());
      sorted.emplace_back(key, i);
    }
    std::sort(sorted.begin(), sorted.end());
    std::vector<std::size_t> kept;
    for (std::size_t i = 0; i < sorted.size(); ++i) {
      if (i == 0 || sorted[i].first != sorted[i - 1].first) kept.push_back(sorted[i].second);
    }
    std::sort(kept.begin(), kept.end());
    std::vector<Triangle> unique;
    for (const std::size_t i : kept) unique.push_back(triangles_[i]);
    triangles_ = std::move(unique);
  }

  [[nodiscard]] const Vec3& Point(std::uint32_t vertex) const { return welder_.Points()[vertex]; }

  [[nodiscard]] Vec3 NormalOf(const Triangle& t) const {
    return Normalized(Cross(Point(t[1]) - Point(t[0]), Point(t[2]) - Point(t[0])));
  }

  [[nodiscard]] std::vector<Side> SortedSides() const {
    std::vector<Side> sides;
    sides.reserve(3 * triangles_.size());
    for (std::uint32_t t = 0; t < triangles_.size(); ++t) {
      for (std::size_t i = 0; i < 3; ++i) {
        const std::uint32_t from = triangles_[t][i];
        const std::uint32_t to = triangles_[t][(i + 1) % 3];
        sides.push_back({std::min(from, to), std::max(from, to), t, from < to});
      }
    }
    std::sort(sides.begin(), sides.end(), [](const Side& a, const Side& b) {
      return std::tie(a.low, a.high, a.triangle) < std::tie(b.low, b.high, b.triangle);
    });
    return sides;
  }

  void ClassifyEdge(const std::vector<Side>& sides, std::size_t begin, std::size_t end, DisjointSets& corners) {
    if (end - begin == 2 && IsSmooth(sides[begin], sides[begin + 1])) {
      const Side& a = sides[begin];
      const Side& b = sides[begin + 1];
      // Neighbours that wind against each other have opposite normals: no line between them, but no common normal
      // either.
      if (a.isForward == b.isForward) return;
      corners.Join(CornerAt(a.triangle, a.low), CornerAt(b.triangle, b.low));
      corners.Join(CornerAt(a.triangle, a.high), CornerAt(b.triangle, b.high));
    } else {
      sharp_.emplace_back(sides[begin].low, sides[begin].high);
    }
  }

  [[nodiscard]] bool IsSmooth(const Side& a, const Side& b) const {
    const Vec3& first = normals_[a.triangle];
    const Vec3& second = normals_[b.triangle];
    // A sliver has no direction of its own and breaks no surface.
    if (Dot(first, first) == 0 || Dot(second, second) == 0) return true;
    const double cosine = Dot(first, second);
    return (a.isForward == b.isForward ? -cosine : cosine) >= kCreaseCosine;
  }

  [[nodiscard]] std::uint32_t CornerAt(std::uint32_t triangle, std::uint32_t vertex) const {
    const Triangle& t = triangles_[triangle];
    return 3 * triangle + (t[0] == vertex ? 0U : t[1] == vertex ? 1U : 2U);
  }

  [[nodiscard]] double AngleAt(std::uint32_t corner) const {
    const Triangle& t = triangles_[corner / 3];
    const Vec3& apex = Point(t[corner % 3]);
    const Vec3 a = Normalized(Point(t[(corner % 3 + 1) % 3]) - apex);
    const Vec3 b = Normalized(Point(t[(corner % 3 + 2) % 3]) - apex);
    return std::acos(std::clamp(Dot(a, b), -1.0, 1.0));
  }

  Mesh EmitTriangles(DisjointSets& corners) {
    Mesh mesh;
    constexpr std::uint32_t kNone = 0xFFFFFFFF;
    std::vector<std::uint32_t> positionOf(3 * triangles_.size(), kNone);
    std::vector<Vec3> sums;
    for (std::uint32_t corner = 0; corner < positionOf.size(); ++corner) {
      const std::uint32_t root = corners.Find(corner);
      if (positionOf[root] == kNone) {
        positionOf[root] = static_cast<std::uint32_t>(mesh.positions.size());
        mesh.positions.push_back(ToFloats(Point(triangles_[corner / 3][corner % 3])));
        sums.emplace_back();
      }
      positionOf[corner] = positionOf[root];
      Vec3& sum = sums[positionOf[corner]];
      sum = sum + normals_[corner / 3] * AngleAt(corner);
    }
    for (std::uint32_t t = 0; t < triangles_.size(); ++t) {
      mesh.triangles.push_back({positionOf[3 * t], positionOf[3 * t + 1], positionOf[3 * t + 2]});
    }
    for (const Vec3& sum : sums) mesh.normals.push_back(ToFloats(NormalizedOr(sum, {0, 0, 1})));
    return mesh;
  }

  /// Open chains first, from their ends; what is left are closed loops.
  std::vector<Polyline> ChainSegments() {
    std::vector<std::vector<std::size_t>> segmentsAt(welder_.Points().size());
    for (std::size_t i = 0; i < sharp_.size(); ++i) {
      segmentsAt[sharp_[i].first].push_back(i);
      segmentsAt[sharp_[i].second].push_back(i);
    }
    std::vector<bool> isUsed(sharp_.size(), false);
    std::vector<Polyline> chains;
    for (std::uint32_t v = 0; v < segmentsAt.size(); ++v) {
      if (segmentsAt[v].size() == 2) continue;
      for (const std::size_t segment : segmentsAt[v]) AppendChain(v, segment, segmentsAt, isUsed, chains);
    }
    for (std::size_t i = 0; i < sharp_.size(); ++i) AppendChain(sharp_[i].first, i, segmentsAt, isUsed, chains);
    return chains;
  }

  void AppendChain(std::uint32_t start, std::size_t segment, const std::vector<std::vector<std::size_t>>& segmentsAt,
                   std::vector<bool>& isUsed, std::vector<Polyline>& chains) const {
    if (isUsed[segment]) return;
    Polyline chain{ToFloats(Point(start))};
    for (std::uint32_t at = start;;) {
      isUsed[segment] = true;
      at = sharp_[segment].first == at ? sharp_[segment].second : sharp_[segment].first;
      chain.push_back(ToFloats(Point(at)));
      if (segmentsAt[at].size() != 2) break;
      segment = segmentsAt[at][0] == segment ? segmentsAt[at][1] : segmentsAt[at][0];
      if (isUsed[segment]) break;
    }
    chains.push_back(std::move(chain));
  }

  Welder welder_;
  std::vector<Triangle> triangles_;
  std::vector<Vec3> normals_;
  std::vector<std::pair<std::uint32_t, std::uint32_t>> sharp_;
};

}  // namespace

Mesh BuildCreasedMesh(const TriangleSoup& soup) {
  return CreaseBuilder(soup).Build();
}

DisjointSets::DisjointSets(std::size_t count) : parent_(count) {
  std::iota(parent_.begin(), parent_.end(), 0U);
}

std::uint32_t DisjointSets::Find(std::uint32_t item) {
  while (parent_[item] != item) {
    parent_[item] = parent_[parent_[item]];
    item = parent_[item];
  }
  return item;
}

void DisjointSets::Join(std::uint32_t a, std::uint32_t b) {
  a = Find(a);
  b = Find(b);
  parent_[std::max(a, b)] = std::min(a, b);
}

}  // namespace zrfigure
