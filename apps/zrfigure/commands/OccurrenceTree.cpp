#include "commands/OccurrenceTree.h"

#include <algorithm>
#include <cctype>

#include "commands/Glob.h"

namespace zrfigure {
namespace {

bool SaysYes(std::string value) {
  std::transform(value.begin(), value.end(), value.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return !value.empty() && value != "0" && value != "no" && value != "false";
}

bool HasWeldProperty(const Product& product) {
  const auto found = product.properties.find("weldment");
  return found != product.properties.end() && SaysYes(found->second);
}

std::string_view WithoutRoot(std::string_view path) {
  const std::size_t slash = path.find('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

}  // namespace

OccurrenceTree::OccurrenceTree(const Model& model, const std::vector<std::string>& weldGlobs)
    : model_(model), nodes_(model.occurrences.size()) {
  for (std::size_t i = 0; i < nodes_.size(); ++i) {
    const int parent = model.occurrences[i].parent;
    if (parent < 0) continue;
    nodes_[i].depth = nodes_[parent].depth + 1;
    nodes_[parent].children.push_back(static_cast<int>(i));
  }
  WalkDepthFirst();
  FindWelds(weldGlobs);
}

const Product& OccurrenceTree::ProductOf(int occurrence) const {
  return model_.products[model_.occurrences[occurrence].product];
}

std::string OccurrenceTree::Path(int occurrence, bool instanceNames) const {
  std::string path;
  for (int at = occurrence; at >= 0; at = model_.occurrences[at].parent) {
    const std::string& name = instanceNames ? model_.occurrences[at].name : ProductOf(at).name;
    path = path.empty() ? name : name + "/" + path;
  }
  return path;
}

void OccurrenceTree::WalkDepthFirst() {
  std::vector<int> open;
  for (std::size_t i = nodes_.size(); i-- > 0;) {
    if (model_.occurrences[i].parent < 0) open.push_back(static_cast<int>(i));
  }
  while (!open.empty()) {
    const int occurrence = open.back();
    open.pop_back();
    depthFirst_.push_back(occurrence);
    if (!ProductOf(occurrence).mesh.triangles.empty()) leaves_.push_back(occurrence);
    const std::vector<int>& children = nodes_[occurrence].children;
    open.insert(open.end(), children.rbegin(), children.rend());
  }
}

void OccurrenceTree::FindWelds(const std::vector<std::string>& weldGlobs) {
  for (int occurrence : depthFirst_) {
    Node& node = nodes_[occurrence];
    node.weld = HasWeldProperty(ProductOf(occurrence)) ||
                std::any_of(weldGlobs.begin(), weldGlobs.end(),
                            [&](const std::string& glob) { return Matches(occurrence, glob); });
    node.target = occurrence;
    const int parent = model_.occurrences[occurrence].parent;
    if (parent < 0) continue;
    const Node& above = nodes_[parent];
    if (nodes_[above.target].weld) node.target = above.target;
  }
}

bool OccurrenceTree::IsWithin(int occurrence, int ancestor) const {
  while (occurrence >= 0 && occurrence != ancestor) occurrence = model_.occurrences[occurrence].parent;
  return occurrence >= 0;
}

bool OccurrenceTree::Matches(int occurrence, std::string_view glob) const {
  if (glob.find('/') == std::string_view::npos) {
    return MatchesGlob(glob, model_.occurrences[occurrence].name) || MatchesGlob(glob, ProductOf(occurrence).name);
  }
  for (const std::string& path : {InstancePath(occurrence), ProductPath(occurrence)}) {
    if (MatchesGlob(glob, path) || MatchesGlob(glob, WithoutRoot(path))) return true;
  }
  return false;
}

}  // namespace zrfigure
