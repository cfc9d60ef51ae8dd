#include "commands/Report.h"

#include <cmath>

#include <nlohmann/json.hpp>

#include "commands/LabelText.h"

namespace zrfigure {
namespace {

using Json = nlohmann::ordered_json;

double Milliseconds(double seconds) {
  return std::round(seconds * 1000) / 1000;
}

Json ToJson(const Finding& finding) {
  Json json;
  json["rule"] = finding.rule;
  if (finding.item > 0) json["item"] = finding.item;
  json["message"] = finding.message;
  return json;
}

/// Page pixels in millimetres, to the micrometre.
double Mm(double pixels) {
  return std::round(pixels / kPxPerMm * 1000) / 1000;
}

Json ToJson(const Box2& box) {
  return {Mm(box.minX), Mm(box.minY), Mm(box.maxX), Mm(box.maxY)};
}

Json ToJson(const Leader& leader) {
  Json points = Json::array();
  for (const Point2& point : leader.points) points.push_back({Mm(point.x), Mm(point.y)});
  return {{"part", leader.partId}, {"hidden", leader.hidden}, {"points", points}};
}

Json ToJson(const Balloon& balloon) {
  std::string text;
  for (const std::string& line : balloon.lines) text += (text.empty() ? "" : "\n") + line;
  Json leaders = Json::array();
  for (const Leader& leader : balloon.leaders) leaders.push_back(ToJson(leader));
  return {
      {"id", balloon.id}, {"item", balloon.itemId}, {"text", text}, {"box", ToJson(balloon.box)}, {"leaders", leaders}};
}

void AddFigure(const std::vector<Figure>& pages, Json& json) {
  if (pages.empty()) return;
  const Figure& figure = pages.front();
  json["page"] = {{"width", figure.page.widthMm}, {"height", figure.page.heightMm}};
  json["drawings"] = Json::array();
  for (const Box2& box : figure.drawings) json["drawings"].push_back(ToJson(box));
  json["labels"] = Json::array();
  for (const Balloon& balloon : figure.balloons) json["labels"].push_back(ToJson(balloon));
  json["rows"] = Json::array();
  for (const Figure& page : pages) {
    if (!page.table) continue;
    for (const TableRow& row : page.table->rows) {
      json["rows"].push_back({{"item", row.itemId}, {"number", row.cells.front()}, {"shown", row.shown}});
    }
  }
}

Point2 PointFrom(const Json& json) {
  return Point2{json.at(0).get<double>(), json.at(1).get<double>()} * kPxPerMm;
}

Box2 BoxFrom(const Json& json) {
  const auto px = [&](std::size_t i) { return json.at(i).get<double>() * kPxPerMm; };
  return {px(0), px(1), px(2), px(3)};
}

Balloon BalloonFrom(const Json& json) {
  Balloon balloon;
  balloon.id = json.at("id");
  balloon.itemId = json.at("item");
  balloon.lines = SplitLines(json.at("text").get<std::string>());
  balloon.box = BoxFrom(json.at("box"));
  for (const Json& entry : json.at("leaders")) {
    Leader leader;
    leader.partId = entry.at("part");
    leader.hidden = entry.at("hidden");
    for (const Json& point : entry.at("points")) leader.points.push_back(PointFrom(point));
    balloon.leaders.push_back(std::move(leader));
  }
  return balloon;
}

Figure FigureFrom(const Json& json) {
  Figure figure;
  figure.page.widthMm = json.at("page").at("width");
  figure.page.heightMm = json.at("page").at("height");
  for (const Json& box : json.at("drawings")) figure.drawings.push_back(BoxFrom(box));
  for (const Json& label : json.at("labels")) figure.balloons.push_back(BalloonFrom(label));
  if (json.at("rows").empty()) return figure;
  figure.table.emplace();
  for (const Json& row : json.at("rows")) {
    figure.table->rows.push_back({row.at("item"), {row.at("number").get<std::string>()}, row.at("shown")});
  }
  return figure;
}

std::string Count(int number, const std::string& noun) {
  return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
}

}  // namespace

std::string ReportToJson(const Report& report, const std::vector<Figure>& pages) {
  Json json;
  json["model"] = report.model;
  json["occurrences"] = report.occurrences;
  json["parts"] = report.parts;
  json["items"] = report.items;
  json["callouts"] = report.callouts;
  json["leaders"] = report.leaders;
  json["visibleLeaders"] = report.visibleLeaders;
  json["layout"] = {{"leaderCrossings", report.layout.leaderCrossings},
                    {"labelOverlaps", report.layout.labelOverlaps},
                    {"labelsOverModel", report.layout.labelsOverModel}};
  json["findings"] = Json::array();
  for (const Finding& finding : report.findings) json["findings"].push_back(ToJson(finding));
  json["outputs"] = report.outputs;
  json["seconds"] = {{"import", Milliseconds(report.seconds.import)},
                     {"generate", Milliseconds(report.seconds.generate)},
                     {"layout", Milliseconds(report.seconds.layout)},
                     {"draw", Milliseconds(report.seconds.draw)}};
  AddFigure(pages, json);
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::optional<Figure> ReadReport(const std::string& json, std::string& error) {
  const Json parsed = Json::parse(json, nullptr, false);
  if (parsed.is_discarded()) {
    error = "is not JSON";
    return std::nullopt;
  }
  try {
    return FigureFrom(parsed);
  } catch (const Json::exception&) {
    error = "is no report of a figure: page, drawings, labels and rows are missing or of another form";
    return std::nullopt;
  }
}

std::string ReportToText(const Report& report) {
  std::string text = report.model + ": " + Count(report.occurrences, "occurrence") + ", " +
                     Count(report.items, "item") + ", " + Count(report.callouts, "callout") + "\n";
  for (const Finding& finding : report.findings) text += finding.rule + ": " + finding.message + "\n";
  for (const std::string& output : report.outputs) text += "wrote " + output + "\n";
  return text;
}

}  // namespace zrfigure
