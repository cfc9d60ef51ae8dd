#include "commands/FigureCheck.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "commands/LayoutCheck.h"

namespace zrfigure {
namespace {

constexpr const char* kNotShown = "item-not-shown";
constexpr const char* kUnlisted = "callout-not-listed";
constexpr const char* kNumber = "number-differs";
constexpr const char* kCrossing = "leaders-cross";
constexpr const char* kOverlap = "labels-overlap";
constexpr const char* kThrough = "leader-through-label";
constexpr const char* kEnd = "leader-off-part";
constexpr const char* kOverDrawing = "label-over-drawing";
constexpr const char* kOffPage = "label-off-page";

/// How far from its part a leader may end: it ends on a pixel, and areas follow the pixels' borders.
constexpr double kEndTolerancePx = 1.5;

std::string Name(const Balloon& balloon) {
  std::string text;
  for (const std::string& line : balloon.lines) text += (text.empty() ? "" : " ") + line;
  return "callout '" + text + "'";
}

bool IsNumber(const std::string& text) {
  return !text.empty() && text.find_first_not_of("0123456789.") == std::string::npos;
}

double DistanceToSegment(Point2 p, Point2 a, Point2 b) {
  const Point2 d = b - a;
  const double squared = d.x * d.x + d.y * d.y;
  const double t = squared > 0 ? std::clamp(((p.x - a.x) * d.x + (p.y - a.y) * d.y) / squared, 0.0, 1.0) : 0;
  return Distance(p, a + d * t);
}

/// Whether a point lies in the even-odd area of the rings, or nearly so.
bool LiesIn(const std::vector<std::vector<Point2>>& rings, Point2 p) {
  bool inside = false;
  for (const auto& ring : rings) {
    for (std::size_t i = 0; i + 1 < ring.size(); ++i) {
      const Point2 a = ring[i], b = ring[i + 1];
      if (DistanceToSegment(p, a, b) <= kEndTolerancePx) return true;
      if ((a.y > p.y) != (b.y > p.y) && p.x < a.x + (p.y - a.y) * (b.x - a.x) / (b.y - a.y)) inside = !inside;
    }
  }
  return inside;
}

bool IsWithin(const std::string& id, const std::string& ancestor) {
  return id.size() >= ancestor.size() && id.compare(0, ancestor.size(), ancestor) == 0 &&
         (id.size() == ancestor.size() || id[ancestor.size()] == '/');
}

class Checker {
public:
  explicit Checker(const std::vector<Figure>& pages) : figure_(pages.front()) {
    for (const Figure& page : pages) {
      if (!page.table) continue;
      for (const TableRow& row : page.table->rows) rows_.push_back(&row);
    }
  }

  std::vector<FigureFinding> Run() {
    if (!rows_.empty()) CheckList();
    CheckPairs();
    CheckEnds();
    CheckPlaces();
    std::vector<FigureFinding> sorted;
    for (const FigureRule& rule : FigureRules()) {
      std::ranges::copy_if(findings_, std::back_inserter(sorted),
                           [&](const FigureFinding& finding) { return finding.rule == rule.id; });
    }
    return sorted;
  }

private:
  void Report(const char* rule, const Balloon& balloon, const std::string& what) {
    findings_.push_back({rule, "callout-" + balloon.id, Name(balloon) + what});
  }

  void CheckList() {
    std::map<std::string, const TableRow*> rowOf;
    for (const TableRow* row : rows_) rowOf[row->itemId] = row;
    std::map<std::string, bool> shown;
    for (const Balloon& balloon : figure_.balloons) {
      if (balloon.itemId.empty()) continue;
      const auto row = rowOf.find(balloon.itemId);
      if (row == rowOf.end()) {
        Report(kUnlisted, balloon, " stands for no row of the parts list");
        continue;
      }
      const std::string number = NumberOf(*row->second);
      if (balloon.lines.size() == 1 && IsNumber(balloon.lines[0]) && balloon.lines[0] != number) {
        Report(kNumber, balloon, " stands for row '" + number + "' of the parts list");
      }
      shown[number] = shown[number] || !balloon.IsDimmed();
    }
    for (const TableRow* row : rows_) CheckRow(*row, shown);
  }

  static std::string NumberOf(const TableRow& row) { return row.cells.empty() ? std::string() : row.cells.front(); }

  // An assembly is shown when something below its number is.
  void CheckRow(const TableRow& row, const std::map<std::string, bool>& shown) {
    const std::string number = NumberOf(row);
    const bool found = std::ranges::any_of(shown, [&](const auto& entry) {
      return entry.second && (entry.first == number || entry.first.rfind(number + ".", 0) == 0);
    });
    const bool listedBelow = std::ranges::any_of(
        rows_, [&](const TableRow* other) { return !other->shown && NumberOf(*other).rfind(number + ".", 0) == 0; });
    if (found || !row.shown || listedBelow) return;
    findings_.push_back({kNotShown, "row-" + row.itemId,
                         "item '" + number + "' is neither called out where it can be seen nor listed as not visible"});
  }

  void CheckPairs() {
    for (const BalloonConflict& conflict : FindConflicts(figure_.balloons)) {
      const Balloon& first = figure_.balloons[conflict.first];
      const std::string second = Name(figure_.balloons[conflict.second]);
      switch (conflict.kind) {
        case BalloonConflict::Kind::LeadersMeet:
          Report(kCrossing, first, ": a leader crosses or touches one of " + second);
          break;
        case BalloonConflict::Kind::LabelsOverlap:
          Report(kOverlap, first, " overlaps " + second);
          break;
        case BalloonConflict::Kind::LeaderThrough:
          Report(kThrough, first, ": a leader runs through " + second);
          break;
      }
    }
  }

  void CheckEnds() {
    for (const Balloon& balloon : figure_.balloons) {
      for (const Leader& leader : balloon.leaders) {
        if (leader.hidden || leader.points.empty() || EndsOnPart(leader)) continue;
        Report(kEnd, balloon, ": a leader ends off the visible area of '" + leader.partId + "'");
      }
    }
  }

  [[nodiscard]] bool EndsOnPart(const Leader& leader) const {
    bool anyArea = figure_.parts.empty();
    for (const FigurePart& part : figure_.parts) {
      if (!part.area.empty()) anyArea = false;
      if (!part.area.empty() && IsWithin(part.id, leader.partId) && LiesIn(part.area, leader.points.front()))
        return true;
    }
    return anyArea;
  }

  void CheckPlaces() {
    const Box2 page{0, 0, figure_.page.widthMm * kPxPerMm, figure_.page.heightMm * kPxPerMm};
    for (const Balloon& balloon : figure_.balloons) {
      if (Leaves(balloon.box, page)) Report(kOffPage, balloon, " leaves the page");
      const bool covers =
          std::ranges::any_of(figure_.drawings, [&](const Box2& drawing) { return Overlap(balloon.box, drawing); });
      if (covers) Report(kOverDrawing, balloon, " stands over the drawing");
    }
  }

  const Figure& figure_;
  std::vector<const TableRow*> rows_;
  std::vector<FigureFinding> findings_;
};

}  // namespace

const std::vector<FigureRule>& FigureRules() {
  static const std::vector<FigureRule> rules{
      {kNotShown, "Every row of the parts list is called out where it can be seen, or listed as not visible."},
      {kUnlisted, "Every callout of an item stands for a row of the parts list."},
      {kNumber, "A callout shows the number of its row."},
      {kCrossing, "Leaders of different callouts neither cross nor touch."},
      {kOverlap, "Labels do not overlap."},
      {kThrough, "No leader runs through another callout's label."},
      {kEnd, "A leader ends on the visible area of its part."},
      {kOverDrawing, "Labels stand outside the drawing."},
      {kOffPage, "Labels stand on the page."}};
  return rules;
}

std::vector<FigureFinding> CheckFigure(const std::vector<Figure>& pages) {
  if (pages.empty()) return {};
  return Checker(pages).Run();
}

}  // namespace zrfigure
