#pragma once

#include <optional>
#include <string>
#include <vector>

#include <dg/DVec3.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <du/Symbol.h>
#include <zrk/PropertyTable.h>

namespace zrk {

class Operation;
class ShapeInstance;

namespace illustration {

class Illustration3dScene;
class SbomInstance;

/// What a user does to the parts of a scene. Each edit notifies as the changes it consists of do, and is one or more
/// undoable steps of the operation, or final with a null operation; whoever made the operation records it. Steps
/// restore stored values, so undo and redo are exact; besides the parts that holds for the labels and leaders that
/// followed them. False, and nothing changed, when the instance is not in the scene's structure or the edit would
/// change nothing. Costs O(instances below + callouts). One thread at a time edits a scene.
class ZR_HOST_API SceneEdit {
public:
  /// Where a property value is kept; an empty group is the instance's default group.
  struct PropertyPlace {
    du::Symbol group;
    du::Symbol name;
    du::Symbol shapeSource;
  };

  SceneEdit() = delete;

  /// Moves every shape instance of the instance and below it, 3D symbols on them, and what insets show of them, by a
  /// displacement in model space.
  static bool MoveInstance(const du::SmartPtr<Illustration3dScene>& scene, const du::SmartPtr<SbomInstance>& instance,
                           const dg::DVec3& displacement, const du::SmartPtr<Operation>& operation);
  /// Shows or hides the same shape instances; those that are shown or hidden already stay unnotified.
  static bool SetInstanceVisible(const du::SmartPtr<Illustration3dScene>& scene,
                                 const du::SmartPtr<SbomInstance>& instance, bool visible,
                                 const du::SmartPtr<Operation>& operation);
  /// Removes the instance with everything below it: 3D symbols on it, memberships in items, callouts that point at
  /// nothing else (texts apart), shape instances, also those that insets show, then the entry in the structure. Undo
  /// brings the same objects back to the same places. The structure's root stays.
  static bool RemoveInstance(const du::SmartPtr<Illustration3dScene>& scene, const du::SmartPtr<SbomInstance>& instance,
                             const du::SmartPtr<Operation>& operation);
  /// Stores a property value, or takes it out when `value` is empty, as one update of the structure that announces a
  /// changed property.
  static bool SetInstanceProperty(const du::SmartPtr<Illustration3dScene>& scene,
                                  const du::SmartPtr<SbomInstance>& instance, const PropertyPlace& place,
                                  const std::optional<du::Symbol>& value, const du::SmartPtr<Operation>& operation);
  /// Gives the instance another display name: its property "name" of the default group. The id stays.
  static bool RenameInstance(const du::SmartPtr<Illustration3dScene>& scene, const du::SmartPtr<SbomInstance>& instance,
                             const std::string& name, const du::SmartPtr<Operation>& operation);

  /// The display name: the property "name", else the name in the structure; empty for a null instance.
  [[nodiscard]] static std::string GetDisplayName(const du::SmartPtr<SbomInstance>& instance);
  /// The shape instances of the instance and below it, in the order of the structure, then those of 3D symbols on them.
  [[nodiscard]] static std::vector<du::SmartPtr<ShapeInstance>> GetShapeInstances(
      const du::SmartPtr<Illustration3dScene>& scene, const du::SmartPtr<SbomInstance>& instance);
};

}  // namespace illustration
}  // namespace zrk
