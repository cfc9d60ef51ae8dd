#pragma once
// An imported model as the host's structure and shapes.

#include <map>
#include <string>
#include <vector>

#include <du/SmartPtr.h>

#include "commands/OccurrenceTree.h"
#include "visibility/View.h"

namespace zrk {
class ComponentNode;
class Instance;
class Shape;
class ShapeInstance;
namespace illustration {
class Illustration3dScene;
class SbomInstance;
class SbomTree;
}  // namespace illustration
}  // namespace zrk

namespace zrfigure {

/// Both sides of the structure and the way back to the model's occurrences. Made in one go, in the model's order, so
/// that addresses of instances ascend with occurrences. Properties of a part: those of its product in the default
/// group, and its `name`.
class HostStructure {
public:
  HostStructure(const OccurrenceTree& occurrences, const ViewDirection& direction,
                const du::SmartPtr<zrk::illustration::Illustration3dScene>& scene);
  ~HostStructure();
  HostStructure(const HostStructure&) = delete;
  HostStructure& operator=(const HostStructure&) = delete;

  [[nodiscard]] const du::SmartPtr<zrk::illustration::SbomTree>& GetTree() const { return tree_; }
  [[nodiscard]] const du::SmartPtr<zrk::illustration::SbomInstance>& GetSbomInstance(int occurrence) const {
    return sbomInstances_[occurrence];
  }
  /// -1 for an instance of another structure and for null.
  [[nodiscard]] int FindOccurrence(const du::SmartPtr<zrk::illustration::SbomInstance>& instance) const;
  [[nodiscard]] int FindOccurrence(const du::SmartPtr<zrk::ShapeInstance>& shape) const;

private:
  void AddOccurrence(int occurrence);
  void AddShape(int occurrence, const ViewDirection& direction,
                const du::SmartPtr<zrk::illustration::Illustration3dScene>& scene);
  void SetProperties(int occurrence);

  const OccurrenceTree& occurrences_;
  du::SmartPtr<zrk::illustration::SbomTree> tree_;
  std::vector<du::SmartPtr<zrk::ComponentNode>> nodes_;                       ///< By product.
  std::vector<du::SmartPtr<zrk::Shape>> shapes_;                              ///< By product.
  std::vector<du::SmartPtr<zrk::Instance>> instances_;                        ///< By occurrence.
  std::vector<du::SmartPtr<zrk::illustration::SbomInstance>> sbomInstances_;  ///< By occurrence.
  std::map<const void*, int> occurrenceOfSbomInstance_;
  std::map<const void*, int> occurrenceOfShape_;
};

}  // namespace zrfigure
