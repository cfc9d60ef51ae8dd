#include "drawing/SvgWriter.h"

#include <pugixml.hpp>
#include <sstream>

#include "drawing/BalloonSize.h"
#include "drawing/SvgPath.h"
#include "drawing/TextMeasure.h"
#include "drawing/Utf8.h"

namespace zrfigure {
namespace {

constexpr double kDotRadius = 0.55 * kPxPerMm;
constexpr double kArrowLength = 2.5 * kPxPerMm;
constexpr double kArrowHalfWidth = 0.42 * kPxPerMm;
constexpr double kHaloMm = 0.9;               // Width of the white band under a leader.
constexpr double kHaloStop = 1.2 * kPxPerMm;  // How far from an arrow's tip it ends, to spare the outline there.
constexpr const char* kInk = "#000";
constexpr const char* kDimmed = "#808080";  // Callouts of which nothing can be seen.
constexpr double kTableRuleMm = 0.25, kTableBorderMm = 0.5, kBalloonMm = 0.35, kFrameMm = 0.7;

std::string Pixels(double millimetres) {
  return SvgNumber(millimetres * kPxPerMm);
}

void Set(pugi::xml_node node, const char* name, const std::string& value) {
  node.append_attribute(name) = XmlSafeText(value).c_str();
}

pugi::xml_node Group(pugi::xml_node parent, const std::string& id) {
  pugi::xml_node group = parent.append_child("g");
  Set(group, "id", id);
  return group;
}

pugi::xml_node ItemGroup(pugi::xml_node parent, const std::string& id, const char* kind, const std::string& itemId) {
  pugi::xml_node group = Group(parent, id);
  Set(group, "class", kind);
  Set(group, "data-item", itemId);
  return group;
}

void AddText(pugi::xml_node parent, const std::string& text, Point2 baseline, const char* anchor) {
  pugi::xml_node node = parent.append_child("text");
  Set(node, "x", SvgNumber(baseline.x));
  Set(node, "y", SvgNumber(baseline.y));
  Set(node, "text-anchor", anchor);
  node.text() = XmlSafeText(text).c_str();
}

/// Writes one figure; lives for one call.
class Writer {
public:
  explicit Writer(const Figure& figure) : figure_(figure), text_(kLetteringHeightMm * kPxPerMm) {}

  std::string Write() {
    AddRoot();
    AddParts();
    AddHalos();
    pugi::xml_node callouts = Group(svg_, "callouts");
    SetLettering(callouts, text_);
    for (const Balloon& balloon : figure_.balloons) AddBalloon(callouts, balloon);
    if (figure_.table) AddTable(*figure_.table);
    std::ostringstream out;
    document_.save(out, " ", pugi::format_indent | pugi::format_no_declaration, pugi::encoding_utf8);
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + out.str();
  }

private:
  void AddRoot() {
    const Page& page = figure_.page;
    svg_ = document_.append_child("svg");
    Set(svg_, "xmlns", "http://www.w3.org/2000/svg");
    Set(svg_, "width", SvgNumber(page.widthMm) + "mm");
    Set(svg_, "height", SvgNumber(page.heightMm) + "mm");
    Set(svg_, "viewBox", "0 0 " + Pixels(page.widthMm) + " " + Pixels(page.heightMm));
    svg_.append_child("title").text() = XmlSafeText(figure_.title).c_str();
    AddRectangle(svg_, {0, 0, page.widthMm * kPxPerMm, page.heightMm * kPxPerMm}, "#fff", 0);
    if (page.frame) AddRectangle(svg_, page.Inside(), "none", kFrameMm);
  }

  static pugi::xml_node AddRectangle(pugi::xml_node parent, const Box2& box, const char* fill, double strokeMm) {
    pugi::xml_node rect = parent.append_child("rect");
    Set(rect, "x", SvgNumber(box.minX));
    Set(rect, "y", SvgNumber(box.minY));
    Set(rect, "width", SvgNumber(box.Width()));
    Set(rect, "height", SvgNumber(box.Height()));
    Set(rect, "fill", fill);
    if (strokeMm > 0) {
      Set(rect, "stroke", "#000");
      Set(rect, "stroke-width", Pixels(strokeMm));
    }
    return rect;
  }

  static void SetLettering(pugi::xml_node node, const TextMeasure& text) {
    Set(node, "font-family", kFontFamily);
    Set(node, "font-size", SvgNumber(text.FontSize()));
  }

  void AddParts() {
    pugi::xml_node drawing = Group(svg_, "drawing");
    std::string boxes;
    for (const Box2& box : figure_.drawings) {
      for (double value : {box.minX, box.minY, box.maxX, box.maxY}) {
        boxes.append(boxes.empty() ? "" : " ").append(SvgNumber(value));
      }
    }
    if (!boxes.empty()) Set(drawing, "data-boxes", boxes);
    Set(drawing, "fill", "none");
    Set(drawing, "stroke", "#000");
    Set(drawing, "stroke-linecap", "round");
    Set(drawing, "stroke-linejoin", "round");
    for (const FigurePart& part : figure_.parts) {
      pugi::xml_node group = ItemGroup(drawing, "part-" + part.id, "part", part.itemId);
      if (!part.name.empty()) group.append_child("title").text() = XmlSafeText(part.name).c_str();
      AddArea(group, part);
      AddLines(group, part, LineClass::Edge, "edge", figure_.lineWidths.edge);
      AddLines(group, part, LineClass::Outline, "outline", figure_.lineWidths.outline);
    }
  }

  // Not painted: it is there to be pointed at, and for a viewer's style sheet to light up.
  static void AddArea(pugi::xml_node group, const FigurePart& part) {
    if (part.area.empty()) return;
    std::string d;
    for (const auto& ring : part.area) AppendPolyline(d, ring);
    pugi::xml_node path = group.append_child("path");
    Set(path, "class", "area");
    Set(path, "stroke", "none");
    Set(path, "fill-rule", "evenodd");
    Set(path, "pointer-events", "all");
    Set(path, "d", d);
  }

  static void AddLines(pugi::xml_node group, const FigurePart& part, LineClass wanted, const char* kind,
                       double widthMm) {
    std::string d;
    for (const ArtLine& line : part.lines) {
      if (line.lineClass == wanted) AppendCurve(d, line.points);
    }
    if (d.empty()) return;
    pugi::xml_node path = group.append_child("path");
    Set(path, "class", kind);
    Set(path, "stroke-width", Pixels(widthMm));
    Set(path, "d", d);
  }

  // All of them before the first leader, so that none cuts another callout's leader.
  void AddHalos() {
    pugi::xml_node halos = Group(svg_, "leader-halos");
    Set(halos, "fill", "none");
    Set(halos, "stroke", "#fff");
    Set(halos, "stroke-width", Pixels(kHaloMm));
    Set(halos, "stroke-linejoin", "round");
    for (const Balloon& balloon : figure_.balloons) {
      for (const Leader& leader : balloon.leaders) {
        const auto points = Shortened(leader.points, leader.end == LeaderEnd::Arrow ? kHaloStop : 0);
        if (points.size() < 2) continue;
        std::string d;
        AppendPolyline(d, points);
        Set(halos.append_child("path"), "d", d);
      }
    }
  }

  /// Without the first `length` pixels; empty when that is all.
  static std::vector<Point2> Shortened(std::vector<Point2> points, double length) {
    while (points.size() > 1) {
      const double first = Distance(points[0], points[1]);
      if (first > length) {
        points[0] = points[0] + (points[1] - points[0]) * (length / first);
        return points;
      }
      length -= first;
      points.erase(points.begin());
    }
    return {};
  }

  void AddBalloon(pugi::xml_node parent, const Balloon& balloon) const {
    pugi::xml_node group = ItemGroup(parent, "callout-" + balloon.id, "callout", balloon.itemId);
    const char* ink = balloon.IsDimmed() ? kDimmed : kInk;
    if (balloon.IsDimmed()) Set(group, "fill", ink);
    for (std::size_t i = 0; i < balloon.leaders.size(); ++i) {
      AddLeader(group, balloon, balloon.leaders[i], std::to_string(i + 1));
    }
    AddBorder(group, balloon, ink);
    const Point2 centre = balloon.box.Centre();
    const double first = centre.y - text_.LineHeight() * (static_cast<double>(balloon.lines.size()) - 1) / 2;
    for (std::size_t i = 0; i < balloon.lines.size(); ++i) {
      const double middle = first + text_.LineHeight() * static_cast<double>(i);
      AddText(group, balloon.lines[i], {centre.x, middle + text_.CapHeight() / 2}, "middle");
    }
  }

  // The outer edge of the stroke is the balloon's box.
  static void AddBorder(pugi::xml_node group, const Balloon& balloon, const char* ink) {
    if (balloon.shape == BalloonShape::Bare) return;
    const double inset = kBalloonMm * kPxPerMm / 2;
    const Box2& box = balloon.box;
    const Box2 line{box.minX + inset, box.minY + inset, box.maxX - inset, box.maxY - inset};
    pugi::xml_node rect = AddRectangle(group, line, "#fff", kBalloonMm);
    rect.attribute("stroke") = ink;
    Set(rect, "class", "balloon");
    Set(rect, "rx", SvgNumber(std::max(0.0, CornerRadius(box) - inset)));
  }

  void AddLeader(pugi::xml_node group, const Balloon& balloon, const Leader& leader, const std::string& number) const {
    if (leader.points.size() < 2) return;
    pugi::xml_node node = ItemGroup(group, "leader-" + balloon.id + "-" + number, "leader", balloon.itemId);
    Set(node, "data-part", leader.partId);
    Set(node, "stroke", balloon.IsDimmed() ? kDimmed : kInk);
    const bool arrow = leader.end == LeaderEnd::Arrow && !leader.hidden;
    std::string d;
    AppendPolyline(d, leader.points);
    pugi::xml_node path = node.append_child("path");
    Set(path, "fill", "none");
    Set(path, "stroke-width", Pixels(figure_.lineWidths.leader));
    if (leader.hidden) Set(path, "stroke-dasharray", Pixels(2) + " " + Pixels(1));
    Set(path, "d", d);
    if (arrow) AddArrow(node, leader.points[0], leader.points[1]);
    if (leader.end == LeaderEnd::Dot && !leader.hidden) AddDot(node, leader.points[0]);
  }

  static void AddDot(pugi::xml_node node, Point2 at) {
    pugi::xml_node dot = node.append_child("circle");
    Set(dot, "cx", SvgNumber(at.x));
    Set(dot, "cy", SvgNumber(at.y));
    Set(dot, "r", SvgNumber(kDotRadius));
    Set(dot, "stroke", "none");
  }

  static void AddArrow(pugi::xml_node node, Point2 tip, Point2 from) {
    const double length = Distance(tip, from);
    if (length == 0) return;
    const Point2 back = (from - tip) * (1 / length), side{-back.y, back.x};
    const Point2 base = tip + back * kArrowLength;
    std::string d;
    AppendPolyline(d, {tip, base + side * kArrowHalfWidth, base - side * kArrowHalfWidth, tip});
    pugi::xml_node arrow = node.append_child("path");
    Set(arrow, "stroke", "none");
    Set(arrow, "d", d);
  }

  void AddTable(const PartsTable& table) {
    pugi::xml_node group = Group(svg_, "parts-list");
    SetLettering(group, TextMeasure(table.letteringHeight));
    std::vector<std::string> titles;
    for (const TableColumn& column : table.columns) titles.push_back(column.title);
    pugi::xml_node header = group.append_child("g");
    Set(header, "class", "header");
    AddCells(header, table, titles, table.HeaderTop());
    for (std::size_t i = 0; i < table.rows.size(); ++i) {
      const TableRow& row = table.rows[i];
      const double y = table.RowTop(i);
      pugi::xml_node node = ItemGroup(group, "row-" + row.itemId, "row", row.itemId);
      if (!row.shown) {
        Set(node, "data-shown", "no");
        Set(node, "fill", kDimmed);
      }
      pugi::xml_node rect =
          AddRectangle(node, {table.origin.x, y, table.origin.x + table.Width(), y + table.rowHeight}, "none", 0);
      Set(rect, "pointer-events", "all");
      AddCells(node, table, row.cells, y);
    }
    AddRules(group, table);
  }

  static void AddCells(pugi::xml_node node, const PartsTable& table, const std::vector<std::string>& cells,
                       double top) {
    const double padding = table.letteringHeight * kCellPadding;
    const double baseline = top + (table.rowHeight + table.letteringHeight) / 2;
    double left = table.origin.x;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
      const TableColumn& column = table.columns[i];
      const double right = left + column.width;
      if (i < cells.size() && !cells[i].empty()) {
        switch (column.align) {
          case TextAlign::Left:
            AddText(node, cells[i], {left + padding, baseline}, "start");
            break;
          case TextAlign::Centre:
            AddText(node, cells[i], {(left + right) / 2, baseline}, "middle");
            break;
          case TextAlign::Right:
            AddText(node, cells[i], {right - padding, baseline}, "end");
            break;
        }
      }
      left = right;
    }
  }

  // Narrow rules between rows and columns; the border and the line under the header wide.
  static void AddRules(pugi::xml_node group, const PartsTable& table) {
    const double right = table.origin.x + table.Width(), bottom = table.origin.y + table.Height();
    std::string narrow, wide;
    for (std::size_t row = 1; row < table.rows.size(); ++row) {
      const double y = table.RowTop(table.rising ? row - 1 : row);
      AppendPolyline(narrow, {{table.origin.x, y}, {right, y}});
    }
    double x = table.origin.x;
    for (std::size_t i = 0; i + 1 < table.columns.size(); ++i) {
      x += table.columns[i].width;
      AppendPolyline(narrow, {{x, table.origin.y}, {x, bottom}});
    }
    const double atHeader = table.HeaderTop() + (table.rising ? 0 : table.rowHeight);
    AppendPolyline(wide, {{table.origin.x, atHeader}, {right, atHeader}});
    AppendPolyline(wide,
                   {table.origin, {right, table.origin.y}, {right, bottom}, {table.origin.x, bottom}, table.origin});
    AddRule(group, narrow, kTableRuleMm);
    AddRule(group, wide, kTableBorderMm);
  }

  static void AddRule(pugi::xml_node group, const std::string& d, double widthMm) {
    if (d.empty()) return;
    pugi::xml_node path = group.append_child("path");
    Set(path, "fill", "none");
    Set(path, "stroke", "#000");
    Set(path, "stroke-width", Pixels(widthMm));
    Set(path, "d", d);
  }

  const Figure& figure_;
  TextMeasure text_;
  pugi::xml_document document_;
  pugi::xml_node svg_;
};

}  // namespace

std::string WriteSvg(const Figure& figure) {
  return Writer(figure).Write();
}

}  // namespace zrfigure
