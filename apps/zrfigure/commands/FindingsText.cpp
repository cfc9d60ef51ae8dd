#include "commands/FindingsText.h"

#include <nlohmann/json.hpp>

#ifndef ZRFIGURE_VERSION
#define ZRFIGURE_VERSION "unknown"
#endif

namespace zrfigure {
namespace {

using Json = nlohmann::ordered_json;

std::string Dump(const Json& json) {
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string AsText(const std::string& file, const std::vector<FigureFinding>& findings) {
  std::string text;
  for (const FigureFinding& finding : findings) {
    text += file + ": " + finding.element + ": " + finding.message + " [" + finding.rule + "]\n";
  }
  const std::size_t count = findings.size();
  return text + file + ": " +
         (count == 0 ? "no findings" : std::to_string(count) + " finding" + (count == 1 ? "" : "s")) + "\n";
}

Json AsJson(const std::string& file, const std::vector<FigureFinding>& findings) {
  Json list = Json::array();
  for (const FigureFinding& finding : findings) {
    list.push_back({{"rule", finding.rule}, {"element", finding.element}, {"message", finding.message}});
  }
  return {{"file", file}, {"findings", list}};
}

Json SarifRules() {
  Json rules = Json::array();
  for (const FigureRule& rule : FigureRules()) {
    rules.push_back({{"id", rule.id}, {"shortDescription", {{"text", rule.text}}}});
  }
  return rules;
}

Json SarifResult(const std::string& file, const FigureFinding& finding) {
  Json location;
  location["physicalLocation"] = {{"artifactLocation", {{"uri", file}}}};
  location["logicalLocations"] = Json::array({{{"name", finding.element}, {"kind", "element"}}});
  Json result;
  result["ruleId"] = finding.rule;
  result["level"] = "error";
  result["message"] = {{"text", finding.message}};
  result["locations"] = Json::array({location});
  return result;
}

Json AsSarif(const std::string& file, const std::vector<FigureFinding>& findings) {
  Json run;
  run["tool"]["driver"] = {{"name", "zrfigure"}, {"version", ZRFIGURE_VERSION}, {"rules", SarifRules()}};
  run["results"] = Json::array();
  for (const FigureFinding& finding : findings) run["results"].push_back(SarifResult(file, finding));
  Json log;
  log["$schema"] = "https://json.schemastore.org/sarif-2.1.0.json";
  log["version"] = "2.1.0";
  log["runs"] = Json::array({run});
  return log;
}

}  // namespace

std::string FindingsText(const std::string& file, const std::vector<FigureFinding>& findings, FindingFormat format) {
  switch (format) {
    case FindingFormat::Text:
      break;
    case FindingFormat::Json:
      return Dump(AsJson(file, findings));
    case FindingFormat::Sarif:
      return Dump(AsSarif(file, findings));
  }
  return AsText(file, findings);
}

}  // namespace zrfigure
