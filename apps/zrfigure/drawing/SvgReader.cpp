#include "drawing/SvgReader.h"

#include <charconv>
#include <string_view>

#include <pugixml.hpp>

namespace zrfigure {
namespace {

/// All numbers in a text, whatever stands between them.
std::vector<double> NumbersIn(std::string_view text) {
  std::vector<double> numbers;
  const char* at = text.data();
  const char* const end = at + text.size();
  while (at != end) {
    double value = 0;
    const auto [stop, failure] = std::from_chars(at, end, value);
    if (failure == std::errc()) numbers.push_back(value);
    at = failure == std::errc() ? stop : at + 1;
  }
  return numbers;
}

/// Subpaths of straight pieces; a closed one gets its first point again at the end.
std::vector<std::vector<Point2>> PolylinesIn(std::string_view d) {
  std::vector<std::vector<Point2>> lines;
  for (std::size_t begin = d.find('M'); begin != std::string_view::npos;) {
    const std::size_t next = d.find('M', begin + 1);
    const std::string_view piece = d.substr(begin, next == std::string_view::npos ? next : next - begin);
    const std::vector<double> numbers = NumbersIn(piece);
    std::vector<Point2> line;
    for (std::size_t i = 0; i + 1 < numbers.size(); i += 2) line.push_back({numbers[i], numbers[i + 1]});
    if (piece.find('Z') != std::string_view::npos && !line.empty()) line.push_back(line.front());
    if (!line.empty()) lines.push_back(std::move(line));
    begin = next;
  }
  return lines;
}

bool HasClass(pugi::xml_node node, std::string_view wanted) {
  return wanted == node.attribute("class").value();
}

/// The node's id without the word it begins with.
std::string IdAfter(pugi::xml_node node, std::string_view prefix) {
  const std::string_view id = node.attribute("id").value();
  return std::string(id.substr(0, prefix.size()) == prefix ? id.substr(prefix.size()) : id);
}

Box2 BoxOf(pugi::xml_node rect) {
  const double x = rect.attribute("x").as_double(), y = rect.attribute("y").as_double();
  const double outside = rect.attribute("stroke-width").as_double() / 2;
  return {x - outside, y - outside, x + rect.attribute("width").as_double() + outside,
          y + rect.attribute("height").as_double() + outside};
}

std::vector<std::string> TextsOf(pugi::xml_node node) {
  std::vector<std::string> texts;
  for (pugi::xml_node text : node.children("text")) texts.emplace_back(text.text().get());
  return texts;
}

FigurePart ReadPart(pugi::xml_node node) {
  FigurePart part;
  part.id = IdAfter(node, "part-");
  part.itemId = node.attribute("data-item").value();
  part.name = node.child("title").text().get();
  for (pugi::xml_node path : node.children("path")) {
    if (HasClass(path, "area")) part.area = PolylinesIn(path.attribute("d").value());
  }
  return part;
}

Leader ReadLeader(pugi::xml_node node) {
  Leader leader;
  const pugi::xml_node line = node.child("path");
  auto lines = PolylinesIn(line.attribute("d").value());
  if (!lines.empty()) leader.points = std::move(lines.front());
  leader.partId = node.attribute("data-part").value();
  leader.hidden = !line.attribute("stroke-dasharray").empty();
  leader.end = LeaderEnd::None;
  if (node.child("circle")) leader.end = LeaderEnd::Dot;
  if (line.next_sibling("path")) leader.end = LeaderEnd::Arrow;
  return leader;
}

Balloon ReadBalloon(pugi::xml_node node) {
  Balloon balloon;
  balloon.id = IdAfter(node, "callout-");
  balloon.itemId = node.attribute("data-item").value();
  balloon.lines = TextsOf(node);
  balloon.shape = node.child("rect") ? BalloonShape::Stadium : BalloonShape::Bare;
  balloon.box = BoxOf(node.child("rect"));
  for (pugi::xml_node child : node.children("g")) {
    if (HasClass(child, "leader")) balloon.leaders.push_back(ReadLeader(child));
  }
  return balloon;
}

std::optional<PartsTable> ReadTable(pugi::xml_node group) {
  PartsTable table;
  Box2 box;
  for (pugi::xml_node node : group.children("g")) {
    if (!HasClass(node, "row")) continue;
    const std::string_view shown = node.attribute("data-shown").value();
    table.rows.push_back({node.attribute("data-item").value(), TextsOf(node), shown != "no"});
    const Box2 row = BoxOf(node.child("rect"));
    table.rising = table.rows.size() > 1 && row.minY < box.minY;
    table.rowHeight = row.Height();
    box.Add({row.minX, row.minY});
    box.Add({row.maxX, row.maxY});
  }
  if (table.rows.empty()) return std::nullopt;
  table.columns.push_back({"", TextAlign::Left, box.Width()});
  table.origin = {box.minX, table.rising ? box.minY : box.minY - table.rowHeight};
  return table;
}

std::vector<Box2> ReadBoxes(pugi::xml_node drawing) {
  std::vector<Box2> boxes;
  const std::vector<double> numbers = NumbersIn(drawing.attribute("data-boxes").value());
  for (std::size_t i = 0; i + 3 < numbers.size(); i += 4) {
    boxes.push_back({numbers[i], numbers[i + 1], numbers[i + 2], numbers[i + 3]});
  }
  return boxes;
}

}  // namespace

std::optional<Figure> ReadSvg(const std::string& svg, std::string& error) {
  pugi::xml_document document;
  const pugi::xml_parse_result parsed = document.load_string(svg.c_str());
  const pugi::xml_node root = document.child("svg");
  const pugi::xml_node drawing = root.find_child_by_attribute("g", "id", "drawing");
  const pugi::xml_node callouts = root.find_child_by_attribute("g", "id", "callouts");
  if (!parsed) {
    error = std::string("is not XML: ") + parsed.description() + " at byte " + std::to_string(parsed.offset);
  } else if (!root || !drawing || !callouts) {
    error = "is no figure of this program: it has no " + std::string(!root      ? "svg element"
                                                                     : !drawing ? "group 'drawing'"
                                                                                : "group 'callouts'");
  } else {
    Figure figure;
    figure.title = root.child("title").text().get();
    figure.page.widthMm = root.attribute("width").as_double();
    figure.page.heightMm = root.attribute("height").as_double();
    figure.drawings = ReadBoxes(drawing);
    for (pugi::xml_node node : drawing.children("g")) figure.parts.push_back(ReadPart(node));
    for (pugi::xml_node node : callouts.children("g")) figure.balloons.push_back(ReadBalloon(node));
    figure.table = ReadTable(root.find_child_by_attribute("g", "id", "parts-list"));
    return figure;
  }
  return std::nullopt;
}

}  // namespace zrfigure
