#include "commands/PinnedLabels.h"

#include <fstream>
#include <iterator>
#include <map>
#include <set>

#include "commands/CommandFailure.h"
#include "commands/FigureComposer.h"
#include "commands/OutputFiles.h"
#include "commands/Report.h"
#include "drawing/SvgReader.h"

namespace zrfigure {

Figure ReadEarlierFigure(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
  if (!stream || bytes.empty()) throw CommandFailure{path + ": cannot be read"};
  std::string error;
  auto figure = LowerExtension(path) == ".json" ? ReadReport(bytes, error) : ReadSvg(bytes, error);
  if (!figure) throw CommandFailure{path + ": " + error};
  return std::move(*figure);
}

namespace {

/// The id without the number of a picture that it may begin with.
std::string WithoutPicture(const std::string& id) {
  const std::size_t digits = id.find_first_not_of("0123456789");
  return digits != std::string::npos && digits > 0 && id[digits] == '/' ? id.substr(digits + 1) : id;
}

}  // namespace

std::vector<PinnedLabel> FindPinnedLabels(const Figure& figure, const OccurrenceTree& tree) {
  std::map<std::string, int> occurrenceOf;
  const std::vector<std::string> ids = MakePartIds(tree);
  for (std::size_t i = 0; i < ids.size(); ++i) occurrenceOf.emplace(ids[i], static_cast<int>(i));
  std::vector<PinnedLabel> labels;
  std::set<int> used;
  for (const Balloon& balloon : figure.balloons) {
    for (const Leader& leader : balloon.leaders) {
      auto found = occurrenceOf.find(leader.partId);
      if (found == occurrenceOf.end()) found = occurrenceOf.find(WithoutPicture(leader.partId));
      if (leader.hidden || found == occurrenceOf.end() || !used.insert(found->second).second) continue;
      labels.push_back({found->second, balloon.box.Centre()});
      break;
    }
  }
  return labels;
}

}  // namespace zrfigure
