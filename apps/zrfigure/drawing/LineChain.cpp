#include "drawing/LineChain.h"

#include <tuple>
#include <utility>

namespace zrfigure {
namespace {

auto Key(Vec3 p) {
  return std::tuple(p.x, p.y, p.z);
}

/// Which segment ends lie on the same point. End 2 * i + e is end e of segment i.
class EndIndex {
public:
  explicit EndIndex(const std::vector<LineSegment>& segments) : partner_(segments.size() * 2, kNone) {
    const auto pointOf = [&](std::size_t end) { return Key(segments[end / 2].ends[end % 2]); };
    std::vector<std::size_t> order(partner_.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    std::ranges::sort(
        order, [&](std::size_t a, std::size_t b) { return std::tuple(pointOf(a), a) < std::tuple(pointOf(b), b); });
    for (std::size_t begin = 0, end = 0; begin < order.size(); begin = end) {
      while (end < order.size() && pointOf(order[end]) == pointOf(order[begin])) ++end;
      if (end - begin == 2) Link(order[begin], order[begin + 1]);
    }
  }

  static constexpr std::size_t kNone = ~std::size_t{0};
  /// The only other end at the same point, kNone when there is none or several.
  [[nodiscard]] std::size_t Partner(std::size_t end) const { return partner_[end]; }

private:
  void Link(std::size_t a, std::size_t b) {
    partner_[a] = b;
    partner_[b] = a;
  }
  std::vector<std::size_t> partner_;
};

}  // namespace

void LineSegment::Reverse() {
  std::swap(ends[0], ends[1]);
  for (auto& normal : normals) std::swap(normal[0], normal[1]);
}

std::vector<LineChain> JoinSegments(std::vector<LineSegment> segments, bool contour) {
  std::erase_if(segments, [](const LineSegment& s) { return Key(s.ends[0]) == Key(s.ends[1]); });
  const EndIndex index(segments);
  std::vector<bool> used(segments.size());
  std::vector<LineChain> chains;
  const auto walk = [&](std::size_t end) {
    LineChain chain;
    chain.contour = contour;
    while (end != EndIndex::kNone && !used[end / 2]) {
      used[end / 2] = true;
      LineSegment segment = segments[end / 2];
      if (end % 2 == 1) segment.Reverse();
      chain.segments.push_back(segment);
      end = index.Partner(end ^ 1);
    }
    if (!chain.segments.empty()) chains.push_back(std::move(chain));
  };
  // Open chains from their free ends first; what remains is closed.
  for (std::size_t end = 0; end < 2 * segments.size(); ++end) {
    if (index.Partner(end) == EndIndex::kNone) walk(end);
  }
  for (std::size_t end = 0; end < 2 * segments.size(); end += 2) walk(end);
  return chains;
}

}  // namespace zrfigure
