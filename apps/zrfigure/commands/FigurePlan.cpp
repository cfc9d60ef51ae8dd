#include "commands/FigurePlan.h"

#include <algorithm>

#include "commands/FigureComposer.h"
#include "commands/LabelText.h"
#include "drawing/BalloonSize.h"

namespace zrfigure {
namespace {

constexpr double kClearancePx = 24;  ///< Between the model and the first row of labels.
constexpr double kLabelGapPx = 12;
constexpr double kMostOfRoom = 1.0 / 3;  ///< What the band may take on one side.
constexpr int kMaxRings = 8;
constexpr double kFill = 0.7;  ///< Share of the perimeter that labels can really use.

std::string PropertyValue(const Model& model, const PlannedRow& row, const TemplateContent& content) {
  const Product& product = model.products[row.product];
  if (content.text == "System" && content.name == "zrITM") return JoinPath(row.path);
  if (content.text == "System" && content.name == "zrQTY") return std::to_string(row.occurrences.size());
  const auto found = product.properties.find(content.name == "zrTAG" ? "tag" : content.name);
  if (content.name == "name" || found == product.properties.end()) {
    return content.name == "name" ? product.name : std::string();
  }
  return found->second;
}

std::string LabelOf(const Model& model, const PlannedRow& row, const TemplateDefinition& definition) {
  std::string label;
  for (const TemplateContent& content : definition.contents) {
    label += content.isProperty ? PropertyValue(model, row, content) : content.text;
  }
  return label;
}

Box2 InnerBox(const Box2& room, const LabelStock& labels, int rings) {
  const double x = std::min(kClearancePx + rings * (labels.width + kLabelGapPx), room.Width() * kMostOfRoom);
  const double y = std::min(kClearancePx + rings * (labels.height + kLabelGapPx), room.Height() * kMostOfRoom);
  return {room.minX + x, room.minY + y, room.maxX - x, room.maxY - y};
}

double FitScale(const Box2& box, const Box2& target) {
  const double wide = box.Width() > 0 ? target.Width() / box.Width() : 0;
  const double high = box.Height() > 0 ? target.Height() / box.Height() : 0;
  return wide > 0 && high > 0 ? std::min(wide, high) : std::max(wide, high);
}

/// Labels that fit round a box in that many rings.
double Capacity(const Box2& box, double scale, const LabelStock& labels, int rings) {
  const double perRing = 2 * box.Width() * scale / (labels.width + kLabelGapPx) +
                         2 * box.Height() * scale / (labels.height + kLabelGapPx) + 4;
  return kFill * rings * perRing;
}

/// Equal cells, filled row by row.
std::vector<Box2> Cells(const Box2& room, std::size_t count, std::size_t columns) {
  const std::size_t rows = (count + columns - 1) / columns;
  const double width = room.Width() / static_cast<double>(columns);
  const double height = room.Height() / static_cast<double>(rows);
  std::vector<Box2> cells;
  for (std::size_t i = 0; i < count; ++i) {
    const double left = room.minX + width * static_cast<double>(i % columns);
    const double top = room.minY + height * static_cast<double>(i / columns);
    cells.push_back({left, top, left + width, top + height});
  }
  return cells;
}

/// Whether a cell of the placed rows, which are the first ones, lost some of its text.
bool IsShortened(const PartsTable& placed, const PartsTable& table) {
  for (std::size_t i = 0; i < placed.rows.size(); ++i) {
    if (placed.rows[i].cells != table.rows[i].cells) return true;
  }
  return false;
}

}  // namespace

LabelStock EstimateLabels(const Model& model, const std::vector<PlannedRow>& rows, const TemplateDefinition& definition,
                          CalloutMode mode, const TextMeasure& text) {
  LabelStock labels;
  for (const PlannedRow& row : rows) {
    const BalloonSize size = SizeBalloon(SplitLines(LabelOf(model, row, definition)), text);
    labels.count += mode == CalloutMode::PerInstance ? row.occurrences.size() : 1;
    labels.width = std::max(labels.width, size.width);
    labels.height = std::max(labels.height, size.height);
  }
  return labels;
}

View PlanView(const OccurrenceTree& tree, const ViewDirection& direction, const Page& page, const Box2& room,
              const LabelStock& labels) {
  View view = FitView(tree.GetModel(), tree.Leaves(), direction, room, {page.WidthPx(), page.HeightPx()});
  const Box2 extent = ProjectedBox(tree.GetModel(), tree.Leaves(), view);
  double scale = 0;
  for (int rings = 1; rings <= kMaxRings; ++rings) {
    scale = FitScale(extent, InnerBox(room, labels, rings));
    if (static_cast<double>(labels.count) <= Capacity(extent, scale, labels, rings)) break;
  }
  if (scale <= 0) return view;
  const Point2 off = extent.Centre() - view.centrePx;
  view.scale *= scale;
  view.centrePx = room.Centre() - off * scale;
  return view;
}

PlannedViews PlanViews(const OccurrenceTree& tree, const std::vector<ViewDirection>& directions, const Page& page,
                       const Box2& room, const LabelStock& labels) {
  const std::size_t count = directions.size();
  const LabelStock share{(labels.count + count - 1) / count, labels.width, labels.height};
  PlannedViews best;
  double bestScale = 0;
  for (std::size_t columns = 1; columns <= count; ++columns) {
    PlannedViews planned;
    planned.rooms = Cells(room, count, columns);
    double scale = 0;
    for (std::size_t i = 0; i < count; ++i) {
      planned.views.push_back(PlanView(tree, directions[i], page, planned.rooms[i], share));
      if (i == 0 || planned.views[i].scale < scale) scale = planned.views[i].scale;
    }
    // The plan has the model's middle in the middle of its cell, so another scale moves nothing.
    for (View& view : planned.views) view.scale = scale;
    if (columns == 1 || scale > bestScale) {
      bestScale = scale;
      best = std::move(planned);
    }
  }
  return best;
}

PagePlan PlanPageWithList(const Page& page, const PartsList& list, const std::string& language, const TextMeasure& text,
                          std::optional<TablePlace> wanted) {
  const TablePlace place = wanted.value_or(page.widthMm >= page.heightMm ? TablePlace::Beside : TablePlace::Under);
  const PartsTable table = ComposeTable(list, language, true);
  PagePlan plan = PlanPage(page, table, place, text);
  if (!plan.table || !IsShortened(*plan.table, table)) return plan;
  return PlanPage(page, ComposeTable(list, language, false), place, text);
}

}  // namespace zrfigure
