#include "drawing/MeshLines.h"

#include <optional>
#include <set>
#include <tuple>

namespace zrfigure {
namespace {

// Below this n.v (0.06 degrees) a surface counts as seen edge-on: the noise of a flat face's normals must not become
// lines.
constexpr double kEdgeOn = 1e-3;
// Corner normals that differ by more than this across an edge are not the same smooth surface.
constexpr double kSplitNormals = 1e-4;

std::uint64_t EdgeKey(std::uint32_t a, std::uint32_t b) {
  return static_cast<std::uint64_t>(std::min(a, b)) << 32 | std::max(a, b);
}

constexpr std::uint64_t kNoEdge = ~std::uint64_t{0};

auto ToKey(Vec3 p) {
  return std::tuple(p.x, p.y, p.z);
}
Vec3 Interpolate(Vec3 a, Vec3 b, double t) {
  return a + (b - a) * t;
}

}  // namespace

MeshLines::MeshLines(const Mesh& mesh) : mesh_(&mesh) {
  Weld();
  CollectEdges();
  BuildSplitEdges(BuildSharpEdges());
}

// Positions stand several times in a mesh, once a surface; here equal ones become one place.
void MeshLines::Weld() {
  const auto& positions = mesh_->positions;
  std::vector<std::uint32_t> order(positions.size());
  for (std::uint32_t i = 0; i < order.size(); ++i) order[i] = i;
  std::ranges::sort(
      order, [&](std::uint32_t a, std::uint32_t b) { return std::tie(positions[a], a) < std::tie(positions[b], b); });
  weld_.resize(positions.size());
  for (const std::uint32_t position : order) {
    if (places_.empty() || positions[places_.back()] != positions[position]) places_.push_back(position);
    weld_[position] = static_cast<std::uint32_t>(places_.size() - 1);
  }
}

void MeshLines::CollectEdges() {
  for (std::uint32_t t = 0; t < mesh_->triangles.size(); ++t) {
    const auto& triangle = mesh_->triangles[t];
    for (std::uint32_t corner = 0; corner < 3; ++corner) {
      const std::uint32_t a = weld_[triangle[corner]], b = weld_[triangle[(corner + 1) % 3]];
      if (a != b) edges_.push_back({EdgeKey(a, b), {t, corner}});
    }
  }
  std::ranges::sort(edges_, {}, [](const MeshEdge& e) { return std::tuple(e.key, e.side.triangle, e.side.corner); });
  closed_ = !edges_.empty();
  for (std::size_t begin = 0, end = 0; begin < edges_.size(); begin = end) {
    while (end < edges_.size() && edges_[end].key == edges_[begin].key) ++end;
    if ((end - begin) % 2 != 0) closed_ = false;
  }
}

std::pair<std::size_t, std::size_t> MeshLines::FindEdge(std::uint64_t key) const {
  const auto first = std::ranges::lower_bound(edges_, key, {}, &MeshEdge::key);
  const auto last = std::ranges::upper_bound(edges_, key, {}, &MeshEdge::key);
  return {static_cast<std::size_t>(first - edges_.begin()), static_cast<std::size_t>(last - first)};
}

LineSegment MeshLines::SegmentOfEdge(std::size_t first, std::size_t count) const {
  const std::uint64_t key = edges_[first].key;
  const auto low = static_cast<std::uint32_t>(key >> 32), high = static_cast<std::uint32_t>(key);
  LineSegment segment;
  segment.ends = {ToVec3(mesh_->positions[places_[low]]), ToVec3(mesh_->positions[places_[high]])};
  segment.surfaces = static_cast<int>(std::min<std::size_t>(count, 2));
  for (int surface = 0; surface < segment.surfaces; ++surface) {
    const EdgeSide side = edges_[first + surface].side;
    const auto& triangle = mesh_->triangles[side.triangle];
    const std::uint32_t a = triangle[side.corner], b = triangle[(side.corner + 1) % 3];
    const bool forward = weld_[a] == low;
    segment.normals[surface] = {ToVec3(mesh_->normals[forward ? a : b]), ToVec3(mesh_->normals[forward ? b : a])};
  }
  return segment;
}

std::uint64_t MeshLines::KeyBetween(Vec3 from, Vec3 to) const {
  const auto placeOf = [&](Vec3 p) {
    const std::array<float, 3> wanted{static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z)};
    const auto found =
        std::ranges::lower_bound(places_, wanted, {}, [&](std::uint32_t i) { return mesh_->positions[i]; });
    const bool same = found != places_.end() && mesh_->positions[*found] == wanted;
    return same ? std::optional(static_cast<std::uint32_t>(found - places_.begin())) : std::nullopt;
  };
  const auto a = placeOf(from), b = placeOf(to);
  return a && b ? EdgeKey(*a, *b) : kNoEdge;
}

// An edge that is not in the mesh stands alone: it is drawn wherever nothing covers it.
LineSegment MeshLines::SharpSegment(Vec3 from, Vec3 to, std::uint64_t key) const {
  LineSegment segment;
  segment.ends = {from, to};
  const auto [first, count] = FindEdge(key);
  if (count == 0) return segment;
  segment = SegmentOfEdge(first, count);
  if (ToKey(segment.ends[0]) != ToKey(from)) segment.Reverse();
  return segment;
}

// An edge may be listed twice, once by each surface at it.
std::vector<std::uint64_t> MeshLines::BuildSharpEdges() {
  std::vector<LineSegment> segments;
  std::set<std::uint64_t> keys;
  for (const Polyline& line : mesh_->sharpEdges) {
    for (std::size_t i = 1; i < line.size(); ++i) {
      const Vec3 from = ToVec3(line[i - 1]), to = ToVec3(line[i]);
      const std::uint64_t key = KeyBetween(from, to);
      if (keys.insert(key).second || key == kNoEdge) segments.push_back(SharpSegment(from, to, key));
    }
  }
  sharpEdges_ = JoinSegments(std::move(segments), false);
  return {keys.begin(), keys.end()};
}

void MeshLines::BuildSplitEdges(const std::vector<std::uint64_t>& sharpKeys) {
  for (std::size_t begin = 0, end = 0; begin < edges_.size(); begin = end) {
    while (end < edges_.size() && edges_[end].key == edges_[begin].key) ++end;
    if (end - begin != 2 || std::ranges::binary_search(sharpKeys, edges_[begin].key)) continue;
    const LineSegment edge = SegmentOfEdge(begin, 2);
    const auto differs = [&](int at) { return Length(edge.normals[0][at] - edge.normals[1][at]) > kSplitNormals; };
    if (differs(0) || differs(1)) splitEdges_.push_back(edge);
  }
}

std::vector<LineChain> MeshLines::Contours(Vec3 toViewer) const {
  const Vec3 v = Normalized(toViewer);
  std::vector<double> facing(mesh_->positions.size());
  for (std::size_t i = 0; i < facing.size(); ++i) facing[i] = Dot(ToVec3(mesh_->normals[i]), v);
  std::vector<LineSegment> segments;
  for (std::size_t t = 0; t < mesh_->triangles.size(); ++t) AddTriangleContour(t, facing, v, segments);
  for (const LineSegment& edge : splitEdges_) AddSplitContour(edge, v, segments);
  return JoinSegments(std::move(segments), true);
}

// The zero set of the interpolated n.v in one triangle: a straight segment between two of its edges (A. Hertzmann,
// "Introduction to 3D Silhouette Detection and Non-Photorealistic Rendering", 1999). The crossing of an edge is
// computed from its lower place to its higher one, so that the two triangles at the edge get the same point, bit for
// bit.
void MeshLines::AddTriangleContour(std::size_t index, const std::vector<double>& facing, Vec3 toViewer,
                                   std::vector<LineSegment>& segments) const {
  const auto& triangle = mesh_->triangles[index];
  const std::array<double, 3> g{facing[triangle[0]], facing[triangle[1]], facing[triangle[2]]};
  const auto [least, most] = std::minmax({g[0], g[1], g[2]});
  if (least > 0 || most <= 0 || std::max(-least, most) < kEdgeOn) return;
  const std::array<Vec3, 3> p{ToVec3(mesh_->positions[triangle[0]]), ToVec3(mesh_->positions[triangle[1]]),
                              ToVec3(mesh_->positions[triangle[2]])};
  const Vec3 normal = Cross(p[1] - p[0], p[2] - p[0]);
  const double area = Dot(normal, normal);
  if (area == 0) return;
  const Vec3 gradient = Cross(normal, (p[2] - p[1]) * g[0] + (p[0] - p[2]) * g[1] + (p[1] - p[0]) * g[2]) * (1 / area);
  const bool bulging = Dot(gradient, toViewer) > 0;
  if (closed_ && !bulging) return;  // A hollow's silhouette always lies behind the part's own material.

  LineSegment segment;
  segment.surfaces = 1;
  const double steepness = Length(gradient);
  if (steepness > 0) segment.bulge = (most - least) * (most - least) / steepness / 2;
  int found = 0;
  for (int corner = 0; corner < 3; ++corner) {
    int a = corner, b = (corner + 1) % 3;
    if ((g[a] > 0) == (g[b] > 0)) continue;
    if (weld_[triangle[a]] > weld_[triangle[b]]) std::swap(a, b);
    const double t = g[a] / (g[a] - g[b]);
    const Vec3 outward =
        Normalized(Interpolate(ToVec3(mesh_->normals[triangle[a]]), ToVec3(mesh_->normals[triangle[b]]), t));
    segment.ends[found] = Interpolate(p[a], p[b], t);
    segment.normals[0][found] = bulging ? outward : outward * -1;
    ++found;
  }
  segments.push_back(segment);
}

// Where one side of a mesh edge faces the viewer and the other does not, the silhouette runs along the edge itself.
void MeshLines::AddSplitContour(const LineSegment& edge, Vec3 toViewer, std::vector<LineSegment>& segments) {
  std::array<std::array<double, 2>, 2> g{};
  std::vector<double> cuts{0, 1};
  for (int surface = 0; surface < 2; ++surface) {
    g[surface] = {Dot(edge.normals[surface][0], toViewer), Dot(edge.normals[surface][1], toViewer)};
    if ((g[surface][0] > 0) != (g[surface][1] > 0)) cuts.push_back(g[surface][0] / (g[surface][0] - g[surface][1]));
  }
  std::ranges::sort(cuts);
  const auto facing = [&](int surface, double t) { return g[surface][0] + (g[surface][1] - g[surface][0]) * t; };
  for (std::size_t i = 1; i < cuts.size(); ++i) {
    const double middle = (cuts[i - 1] + cuts[i]) / 2;
    const double first = facing(0, middle), second = facing(1, middle);
    if ((first > 0) == (second > 0) || std::max(std::abs(first), std::abs(second)) < kEdgeOn) continue;
    LineSegment piece;
    piece.surfaces = 1;
    for (int end = 0; end < 2; ++end) {
      const double t = cuts[i - 1 + end];
      const auto normalAt = [&](int s) { return Interpolate(edge.normals[s][0], edge.normals[s][1], t); };
      piece.ends[end] = t == 1 ? edge.ends[1] : Interpolate(edge.ends[0], edge.ends[1], t);
      piece.normals[0][end] = Normalized(normalAt(0) + normalAt(1));
    }
    segments.push_back(piece);
  }
}

}  // namespace zrfigure
