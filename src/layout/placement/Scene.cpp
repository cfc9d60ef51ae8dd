#include "layout/placement/Scene.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <tuple>

namespace zrcallouts::placement {

namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

/// End of the run of digits that starts at `begin`, and in `first` its first digit that counts.
std::size_t DigitRun(const std::string& text, std::size_t begin, std::size_t& first) {
  std::size_t end = begin;
  while (end < text.size() && IsDigit(text[end])) ++end;
  first = begin;
  while (first + 1 < end && text[first] == '0') ++first;
  return end;
}

/// Orders ids as people do: runs of digits by value, all else by character; equal values by the plain text.
bool NaturalLess(const std::string& a, const std::string& b) {
  std::size_t i = 0, j = 0;
  while (i < a.size() && j < b.size()) {
    if (IsDigit(a[i]) && IsDigit(b[j])) {
      std::size_t firstA = 0, firstB = 0;
      const std::size_t endA = DigitRun(a, i, firstA), endB = DigitRun(b, j, firstB);
      if (endA - firstA != endB - firstB) return endA - firstA < endB - firstB;
      const int order = a.compare(firstA, endA - firstA, b, firstB, endB - firstB);
      if (order != 0) return order < 0;
      i = endA;
      j = endB;
    } else {
      if (a[i] != b[j]) return static_cast<unsigned char>(a[i]) < static_cast<unsigned char>(b[j]);
      ++i;
      ++j;
    }
  }
  if (a.size() - i != b.size() - j) return a.size() - i < b.size() - j;
  return a < b;
}

Coord ToFixedSize(double pixels) {
  if (!std::isfinite(pixels) || pixels <= 0) return 0;
  return static_cast<Coord>(std::ceil(std::min(pixels * kUnitsPerPixel, static_cast<double>(kLimit))));
}

FixedBox ToFixedBox(const Box& box) {
  const auto [left, right] = std::minmax({ToFixed(box.left), ToFixed(box.right)});
  const auto [top, bottom] = std::minmax({ToFixed(box.top), ToFixed(box.bottom)});
  return {left, top, right, bottom};
}

Item MakeItem(const LabelRequest& label, std::size_t input, FixedPoint fallbackFocus) {
  Item item{ToFixedSize(label.width), ToFixedSize(label.height), {}, fallbackFocus, input};
  for (const Point& anchor : label.anchors)
    if (std::isfinite(anchor.x) && std::isfinite(anchor.y))
      item.anchors.push_back({ToFixed(anchor.x), ToFixed(anchor.y)});
  if (item.anchors.empty()) return item;
  FixedPoint sum;
  for (const FixedPoint anchor : item.anchors) sum = {sum.x + anchor.x, sum.y + anchor.y};
  const Coord count = static_cast<Coord>(item.anchors.size());
  item.focus = {sum.x / count, sum.y / count};
  return item;
}

}  // namespace

Scene MakeScene(const PlacementRequest& request) {
  Scene scene;
  scene.page = ToFixedBox(request.page);
  scene.model = ToFixedBox(request.model);
  for (const Box& obstacle : request.obstacles) scene.obstacles.push_back(ToFixedBox(obstacle));
  std::sort(scene.obstacles.begin(), scene.obstacles.end());
  scene.clearance = ToFixedSize(request.options.clearance);
  scene.gap = ToFixedSize(request.options.labelGap);
  scene.maxRings = std::max(1, request.options.maxRings);

  const FixedPoint center{(scene.model.left + scene.model.right) / 2, (scene.model.top + scene.model.bottom) / 2};
  for (std::size_t i = 0; i < request.labels.size(); ++i) scene.items.push_back(MakeItem(request.labels[i], i, center));
  const auto key = [](const Item& item) { return std::tie(item.focus.y, item.focus.x); };
  const auto rest = [](const Item& item) { return std::tie(item.width, item.height, item.anchors, item.input); };
  std::sort(scene.items.begin(), scene.items.end(), [&](const Item& a, const Item& b) {
    if (key(a) != key(b)) return key(a) < key(b);
    const std::string &idA = request.labels[a.input].id, &idB = request.labels[b.input].id;
    return idA == idB ? rest(a) < rest(b) : NaturalLess(idA, idB);
  });
  return scene;
}

double LeaderLength(const Item& item, const LabelSpot& spot) {
  double length = 0;
  for (const FixedPoint anchor : item.anchors) length += Distance(anchor, spot.port) + Distance(spot.port, spot.attach);
  return length;
}

}  // namespace zrcallouts::placement
