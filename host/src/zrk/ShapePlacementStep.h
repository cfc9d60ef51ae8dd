#pragma once

#include <vector>

#include <dg/Location.h>
#include <du/SmartPtr.h>
#include <zrk/OperationStep.h>
#include <zrk/Scene.h>
#include <zrk/ShapeInstance.h>

#include "CalloutFollowing.h"

namespace zrk {

/// Shape instances that were moved, shown or hidden together, with their state before and after.
class ShapePlacementStep final : public OperationStep {
public:
  struct State {
    dg::Location location;
    bool visible = true;
  };
  struct Change {
    du::SmartPtr<ShapeInstance> shape;
    State before;
    State after;
  };

  /// The change is made later, by Apply; callouts of the scene are watched meanwhile.
  ShapePlacementStep(const du::SmartPtr<Scene>& scene, std::vector<Change> changes);
  ~ShapePlacementStep() override;

  void Apply();
  void Undo() override;
  void Redo() override;

private:
  const std::vector<Change> changes_;
  CalloutFollowing following_;
};

}  // namespace zrk
