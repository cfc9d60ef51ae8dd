#include "drawing/VisibleArea.h"

#include <tuple>

#include "drawing/LineSmoothing.h"

namespace zrfigure {
namespace {

// Crack following: every side of a pixel whose neighbour shows something else is a unit step with the pixel on its
// right; the steps of one id form closed rings. Where two pixels meet at a corner only, the ring turns right, so that
// it stays with its pixel. Cost: O(steps log steps) for the sort.
struct Step {
  std::int32_t id;
  int y, x;       // Where the step starts: pixel corners.
  int direction;  // 0 right, 1 down, 2 left, 3 up.
};

constexpr int kStepX[] = {1, 0, -1, 0};
constexpr int kStepY[] = {0, 1, 0, -1};
constexpr double kTolerance = 0.8;  // Pixels; takes the stairs out of the rings.

auto StartOf(const Step& step) {
  return std::tuple(step.id, step.y, step.x);
}

std::vector<Step> CollectSteps(const IdBuffer& buffer) {
  std::vector<Step> steps;
  for (int y = 0; y < buffer.height; ++y) {
    for (int x = 0; x < buffer.width; ++x) {
      const std::int32_t id = buffer.At(x, y);
      if (id == IdBuffer::kBackground) continue;
      if (buffer.At(x, y - 1) != id) steps.push_back({id, y, x, 0});
      if (buffer.At(x + 1, y) != id) steps.push_back({id, y, x + 1, 1});
      if (buffer.At(x, y + 1) != id) steps.push_back({id, y + 1, x + 1, 2});
      if (buffer.At(x - 1, y) != id) steps.push_back({id, y + 1, x, 3});
    }
  }
  std::ranges::sort(steps, {}, [](const Step& s) { return std::tuple(s.id, s.y, s.x, s.direction); });
  return steps;
}

class RingWalker {
public:
  explicit RingWalker(const std::vector<Step>& steps) : steps_(steps), used_(steps.size()) {}

  [[nodiscard]] bool Used(std::size_t step) const { return used_[step]; }

  std::vector<Point2> Walk(std::size_t first) {
    std::vector<Point2> ring;
    for (std::size_t at = first; !used_[at]; at = Next(steps_[at])) {
      const Step& step = steps_[at];
      used_[at] = true;
      ring.push_back({static_cast<double>(step.x), static_cast<double>(step.y)});
    }
    ring.push_back(ring.front());
    return ring;
  }

private:
  [[nodiscard]] std::size_t Next(const Step& step) const {
    const std::tuple end(step.id, step.y + kStepY[step.direction], step.x + kStepX[step.direction]);
    const auto first = std::ranges::lower_bound(steps_, end, {}, StartOf);
    const int right = (step.direction + 1) % 4;
    auto chosen = first;
    for (auto other = first; other != steps_.end() && StartOf(*other) == end; ++other) {
      if (other->direction == right) chosen = other;
    }
    return static_cast<std::size_t>(chosen - steps_.begin());
  }

  const std::vector<Step>& steps_;
  std::vector<bool> used_;
};

}  // namespace

std::map<int, std::vector<std::vector<Point2>>> TraceVisibleAreas(const IdBuffer& buffer) {
  const std::vector<Step> steps = CollectSteps(buffer);
  RingWalker walker(steps);
  std::map<int, std::vector<std::vector<Point2>>> areas;
  for (std::size_t i = 0; i < steps.size(); ++i) {
    if (!walker.Used(i)) areas[steps[i].id].push_back(Simplified(walker.Walk(i), kTolerance));
  }
  return areas;
}

}  // namespace zrfigure
