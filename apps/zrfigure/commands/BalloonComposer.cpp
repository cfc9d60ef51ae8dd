#include "commands/BalloonComposer.h"

#include <cmath>
#include <map>
#include <utility>

#include "commands/LabelText.h"
#include "commands/LayoutCheck.h"
#include "drawing/BalloonSize.h"

namespace zrfigure {
namespace {

constexpr double kDotClearancePx = 6;  ///< Free area round the anchor that a dot needs.
constexpr double kRasterPerPx = 16;
constexpr double kStepPx = 0.25;
constexpr int kUntangleRounds = 4;
constexpr std::size_t kHopeless = 400;  ///< With more tangled balloons than that no leader's way makes a difference.

/// Rounded to 1/16 pixel, as labels are placed: anchors that nearly coincide would otherwise give leaders that cross by
/// less than anybody sees.
Point2 OnPage(const View& view, Vec3 world) {
  const Vec3 pixel = view.ToPixel(world);
  return {std::round(pixel.x * kRasterPerPx) / kRasterPerPx, std::round(pixel.y * kRasterPerPx) / kRasterPerPx};
}

/// Whether the pixels round a point show the occurrence: any of them, or all within the radius.
class Surroundings {
public:
  Surroundings(const FigureInput& input, Point2 at, int occurrence)
      : input_(input),
        x_(static_cast<int>(std::floor(at.x))),
        y_(static_cast<int>(std::floor(at.y))),
        occurrence_(occurrence) {}

  [[nodiscard]] bool ShowAny() const {
    for (int dy = -1; dy <= 1; ++dy) {
      for (int dx = -1; dx <= 1; ++dx) {
        if (Shows(dx, dy)) return true;
      }
    }
    return false;
  }

  [[nodiscard]] bool ShowNothingElse(double radius) const {
    const int reach = static_cast<int>(radius);
    for (int dy = -reach; dy <= reach; ++dy) {
      for (int dx = -reach; dx <= reach; ++dx) {
        if (std::hypot(dx, dy) <= radius && !Shows(dx, dy)) return false;
      }
    }
    return true;
  }

private:
  [[nodiscard]] bool Shows(int dx, int dy) const {
    return input_.tree.IsWithin(input_.ids.At(x_ + dx, y_ + dy), occurrence_);
  }

  const FigureInput& input_;
  int x_, y_;
  int occurrence_;
};

/// Appends the way from the place where the route meets the label's box to the balloon's border inside it, so that
/// nothing outside the box changes: straight on, or with a kink at that place where the straight line misses the
/// border.
void AppendEnd(const Balloon& balloon, Point2 port, std::vector<Point2>& points) {
  const Point2 from = points.back();
  const Point2 centre = balloon.box.Centre();
  const double length = Distance(from, port);
  const Point2 step = length > 0 ? (port - from) * (kStepPx / length) : Point2();
  const double reach = length > 0 ? balloon.box.Width() + balloon.box.Height() : 0;
  Point2 at = port;
  for (double gone = 0; gone < reach; gone += kStepPx, at = at + step) {
    const Point2 border = BorderPoint(balloon.shape, balloon.box, at);
    if (Distance(at, centre) > Distance(border, centre) + kStepPx) continue;
    points.push_back(border);
    return;
  }
  points.push_back(port);
  points.push_back(BorderPoint(balloon.shape, balloon.box, port));
}

/// Whether the route still ends at the label: a label that was moved since, or is seen from elsewhere, left it behind.
bool LeadsToLabel(const FigureInput& input, const Balloon& balloon, const LeaderState& leader) {
  constexpr double kReachPx = 2 * kPxPerMm;
  if (leader.bends.empty()) return false;
  const Point2 port = OnPage(input.view, leader.bends.back());
  const Box2& box = balloon.box;
  return port.x >= box.minX - kReachPx && port.x <= box.maxX + kReachPx && port.y >= box.minY - kReachPx &&
         port.y <= box.maxY + kReachPx;
}

/// A leader along its route, or straight where there is none to the label. The route's last point is where it meets the
/// label's box; aimed at the balloon's centre the leader leaves that point out.
std::vector<Point2> RouteLeader(const FigureInput& input, const Balloon& balloon, const LeaderState& leader,
                                bool aimAtCentre) {
  std::vector<Point2> points{OnPage(input.view, leader.anchor)};
  const bool routed = LeadsToLabel(input, balloon, leader);
  for (std::size_t i = 0; routed && i + 1 < leader.bends.size(); ++i) {
    points.push_back(OnPage(input.view, leader.bends[i]));
  }
  if (aimAtCentre || !routed) {
    points.push_back(BorderPoint(balloon.shape, balloon.box, points.back()));
    return points;
  }
  AppendEnd(balloon, OnPage(input.view, leader.bends.back()), points);
  return points;
}

Leader ComposeLeader(const FigureInput& input, const Balloon& balloon, const LeaderState& state) {
  Leader leader;
  leader.points = RouteLeader(input, balloon, state, true);
  const Surroundings around(input, leader.points.front(), state.occurrence);
  leader.hidden = state.occurrence < 0 || !around.ShowAny();
  leader.end = around.ShowNothingElse(kDotClearancePx) ? LeaderEnd::Dot : LeaderEnd::Arrow;
  if (leader.hidden) leader.end = LeaderEnd::None;
  return leader;
}

Balloon ComposeBalloon(const FigureInput& input, const CalloutState& callout, const std::vector<std::string>& partIds) {
  Balloon balloon;
  if (callout.item != 0) balloon.itemId = std::to_string(callout.item);
  balloon.lines = SplitLines(callout.text);
  const BalloonSize size = SizeBalloon(balloon.lines, input.text);
  balloon.shape = size.shape;
  const Point2 centre = OnPage(input.view, callout.label);
  balloon.box = {centre.x - size.width / 2, centre.y - size.height / 2, centre.x + size.width / 2,
                 centre.y + size.height / 2};
  for (const LeaderState& leader : callout.leaders) {
    if (leader.hidden) continue;
    balloon.leaders.push_back(ComposeLeader(input, balloon, leader));
    if (leader.occurrence >= 0) balloon.leaders.back().partId = partIds[leader.occurrence];
  }
  return balloon;
}

void UseRoute(const FigureInput& input, const CalloutState& callout, Balloon& balloon) {
  auto drawn = balloon.leaders.begin();
  for (const LeaderState& leader : callout.leaders) {
    if (!leader.hidden) (drawn++)->points = RouteLeader(input, balloon, leader, false);
  }
}

/// Leaders that point at the centre look best, but only the routes are known not to meet: balloons that get entangled
/// take theirs.
void Untangle(const FigureInput& input, std::vector<Balloon>& balloons) {
  for (int round = 0; round < kUntangleRounds; ++round) {
    const std::vector<std::size_t> tangled = FindTangledBalloons(balloons);
    if (tangled.empty() || tangled.size() > kHopeless) return;
    for (std::size_t i : tangled) UseRoute(input, input.callouts[i], balloons[i]);
  }
}

}  // namespace

std::vector<Balloon> ComposeBalloons(const FigureInput& input, const std::vector<std::string>& partIds) {
  std::vector<Balloon> balloons;
  for (const CalloutState& callout : input.callouts) balloons.push_back(ComposeBalloon(input, callout, partIds));
  Untangle(input, balloons);
  return balloons;
}

void NameBalloons(std::vector<Balloon>& balloons) {
  std::map<std::string, int> used;
  for (Balloon& balloon : balloons) {
    const std::string base = balloon.itemId.empty() ? "text" : balloon.itemId;
    const int number = ++used[base];
    balloon.id = number > 1 || balloon.itemId.empty() ? base + "-" + std::to_string(number) : base;
  }
}

}  // namespace zrfigure
