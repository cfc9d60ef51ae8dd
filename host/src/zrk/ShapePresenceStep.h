#pragma once

#include <cstdint>
#include <vector>

#include <du/SmartPtr.h>
#include <zrk/OperationStep.h>
#include <zrk/ShapeInstance.h>
#include <zrk/ShapeScene.h>

namespace zrk {

class Operation;

/// Shape instances that entered a scene or left it together, with the places they have there.
class ShapePresenceStep final : public OperationStep {
public:
  using Shapes = std::vector<du::SmartPtr<ShapeInstance>>;

  /// Adds the shape instances to the scene, as a step of the operation unless that is null.
  static void Add(const du::SmartPtr<ShapeScene>& scene, const Shapes& shapes,
                  const du::SmartPtr<Operation>& operation);
  /// Removes them likewise, the last one first.
  static void Remove(const du::SmartPtr<ShapeScene>& scene, const Shapes& shapes,
                     const du::SmartPtr<Operation>& operation);

  /// The shape instances are in the scene; `added` says whether that is what the step did.
  ShapePresenceStep(const du::SmartPtr<ShapeScene>& scene, const Shapes& shapes, bool added);
  ~ShapePresenceStep() override;

  void Undo() override;
  void Redo() override;

private:
  struct Place {
    du::SmartPtr<ShapeInstance> shape;
    std::uint64_t position;
  };
  void Enter() const;
  void Leave() const;

  const du::SmartPtr<ShapeScene> scene_;
  std::vector<Place> places_;
  const bool added_;
};

}  // namespace zrk
