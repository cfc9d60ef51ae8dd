// zrlayout INSTANCE.json RESULT.json: places the labels of a layout instance and writes boxes, leaders, time and
// status. The time is the best of several runs, so that scores do not depend on what else the machine does.

#include <algorithm>
#include <ctime>
#include <fstream>
#include <iostream>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>

#include "layout/placement/Placement.h"

namespace {

using nlohmann::json;
using namespace zrcallouts::placement;

Box ReadBox(const json& value) {
  return {value.at(0), value.at(1), value.at(2), value.at(3)};
}

PlacementRequest ReadInstance(const json& instance) {
  PlacementRequest request;
  request.page = ReadBox(instance.at("page"));
  request.model = ReadBox(instance.at("model"));
  for (const json& obstacle : instance.value("obstacles", json::array()))
    request.obstacles.push_back(ReadBox(obstacle));
  for (const json& callout : instance.at("callouts")) {
    LabelRequest label{callout.at("id"), callout.at("w"), callout.at("h"), {}};
    for (const json& anchor : callout.at("anchors")) label.anchors.push_back({anchor.at(0), anchor.at(1)});
    request.labels.push_back(std::move(label));
  }
  return request;
}

std::string StatusNote(const PlacementResult& result) {
  const char* const name = result.status == PlacementStatus::Complete   ? "complete"
                           : result.status == PlacementStatus::Degraded ? "degraded"
                                                                        : "incomplete";
  return std::string(name) + ": crossings " + std::to_string(result.leaderCrossings) + ", label overlaps " +
         std::to_string(result.labelOverlaps) + ", over model " + std::to_string(result.labelsOverModel) +
         ", unplaced " + std::to_string(result.unplaced);
}

json WriteLabels(const PlacementRequest& request, const PlacementResult& result) {
  json labels = json::array();
  for (std::size_t i = 0; i < result.labels.size(); ++i) {
    const PlacedLabel& label = result.labels[i];
    if (!label.placed) continue;
    json leaders = json::array();
    for (const auto& leader : label.leaders) {
      json& points = leaders.emplace_back(json::array());
      for (const Point& point : leader) points.push_back({point.x, point.y});
    }
    labels.push_back({{"id", request.labels[i].id},
                      {"x", label.box.left},
                      {"y", label.box.top},
                      {"w", label.box.right - label.box.left},
                      {"h", label.box.bottom - label.box.top},
                      {"leaders", leaders}});
  }
  return labels;
}

json Run(const json& instance) {
  constexpr int kRuns = 5;
  const PlacementRequest request = ReadInstance(instance);
  PlacementResult result;
  double best = std::numeric_limits<double>::max();
  for (int run = 0; run < kRuns; ++run) {
    const std::clock_t start = std::clock();
    result = PlaceLabels(request);
    best = std::min(best, 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
  }
  return {
      {"tool", "zrlayout"}, {"time_ms", best}, {"note", StatusNote(result)}, {"labels", WriteLabels(request, result)}};
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: zrlayout INSTANCE.json RESULT.json\n";
    return 2;
  }
  try {
    std::ifstream input(argv[1]);
    if (!input) throw std::runtime_error("cannot be opened");
    const std::string result = Run(json::parse(input)).dump();
    std::ofstream output(argv[2]);
    if (!(output << result << '\n')) throw std::runtime_error(std::string("cannot write ") + argv[2]);
  } catch (const std::exception& error) {
    std::cerr << "zrlayout: " << argv[1] << ": " << error.what() << '\n';
    return 1;
  }
  return 0;
}
