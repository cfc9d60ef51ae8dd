#pragma once
// Questions about a model's assembly tree that selection, numbering and reports ask.

#include <string>
#include <string_view>
#include <vector>

#include "Model.h"

namespace zrfigure {

/// An index over Model::occurrences. The model must outlive it. Immutable after construction.
class OccurrenceTree {
public:
  /// \param weldGlobs patterns of product or instance names that are weldments, besides the products whose property
  /// `weldment` says so.
  OccurrenceTree(const Model& model, const std::vector<std::string>& weldGlobs);

  [[nodiscard]] const Model& GetModel() const { return model_; }
  [[nodiscard]] unsigned Depth(int occurrence) const { return nodes_[occurrence].depth; }
  [[nodiscard]] const std::vector<int>& Children(int occurrence) const { return nodes_[occurrence].children; }
  [[nodiscard]] const Product& ProductOf(int occurrence) const;
  /// Names from the root on, joined by '/': of the instances, or of the products.
  [[nodiscard]] std::string InstancePath(int occurrence) const { return Path(occurrence, true); }
  [[nodiscard]] std::string ProductPath(int occurrence) const { return Path(occurrence, false); }
  [[nodiscard]] bool IsWeld(int occurrence) const { return nodes_[occurrence].weld; }
  /// The outermost weldment among the occurrence and its ancestors; the occurrence itself when there is none.
  [[nodiscard]] int CalloutTarget(int occurrence) const { return nodes_[occurrence].target; }
  /// Whether `occurrence` is `ancestor` or stands below it; false for -1.
  [[nodiscard]] bool IsWithin(int occurrence, int ancestor) const;
  /// Occurrences that carry a shape, depth first in file order.
  [[nodiscard]] const std::vector<int>& Leaves() const { return leaves_; }
  /// All occurrences, depth first in file order.
  [[nodiscard]] const std::vector<int>& DepthFirst() const { return depthFirst_; }

  /// Whether a glob matches: one with a '/' against the paths, with and without the root, any other against the names.
  [[nodiscard]] bool Matches(int occurrence, std::string_view glob) const;

private:
  struct Node {
    unsigned depth = 0;
    bool weld = false;
    int target = -1;
    std::vector<int> children;
  };

  [[nodiscard]] std::string Path(int occurrence, bool instanceNames) const;
  void WalkDepthFirst();
  void FindWelds(const std::vector<std::string>& weldGlobs);

  const Model& model_;
  std::vector<Node> nodes_;
  std::vector<int> leaves_;
  std::vector<int> depthFirst_;
};

}  // namespace zrfigure
