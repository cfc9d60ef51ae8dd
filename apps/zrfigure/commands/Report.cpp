#include "commands/Report.h"

#include <cmath>

#include <nlohmann/json.hpp>

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

std::string Count(int number, const std::string& noun) {
  return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
}

}  // namespace

std::string ReportToJson(const Report& report) {
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
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string ReportToText(const Report& report) {
  std::string text = report.model + ": " + Count(report.occurrences, "occurrence") + ", " +
                     Count(report.items, "item") + ", " + Count(report.callouts, "callout") + "\n";
  for (const Finding& finding : report.findings) text += finding.rule + ": " + finding.message + "\n";
  for (const std::string& output : report.outputs) text += "wrote " + output + "\n";
  return text;
}

}  // namespace zrfigure
