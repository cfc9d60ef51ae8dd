#pragma once

#include <map>
#include <string>
#include <vector>

#include <dg/DBox.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrannotations/Callout.h>
#include <zrk/ComponentNode.h>
#include <zrk/Instance.h>
#include <zrk/Operation.h>
#include <zrk/Shape.h>
#include <zrk/illustration/Callouts.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/SbomInstanceSelectionItem.h>

namespace zrk::illustration {

/// A world with one assembly in it, for first steps: structure, view and item list are there, parts are added in a line
/// each. Takes the world's place when it begins and ends it with itself. Lengths are millimetres. [host-thread]
class ZR_HOST_API StarterScene {
public:
  explicit StarterScene(const std::string& assembly);
  /// Closes the scene and shuts the world down.
  ~StarterScene();
  StarterScene(const StarterScene&) = delete;
  StarterScene& operator=(const StarterScene&) = delete;

  /// Adds a part of a box's size, its origin at `at`. Parts of one name are one component and get one item; the box of
  /// the first counts.
  du::SmartPtr<SbomInstance> AddPart(const std::string& name, const dg::DBox& box, const dg::DPoint3D& at);

  /// Loads the component's library and makes the scene's engine; null when it cannot be loaded, with the reason on
  /// standard error.
  [[nodiscard]] du::SmartPtr<Callouts> LoadCallouts(const std::string& library = "libzrcallouts.so.0");

  [[nodiscard]] const du::SmartPtr<Illustration3dScene>& GetScene() const { return scene_; }
  /// All parts, in the order they were added.
  [[nodiscard]] std::vector<du::SmartPtr<SbomInstanceSelectionItem>> SelectAll() const;
  /// The callouts that stand in the scene, in the order they came.
  [[nodiscard]] std::vector<du::SmartPtr<zrannotations::Callout>> GetCallouts() const;

private:
  struct Kind {
    du::SmartPtr<ComponentNode> component;
    du::SmartPtr<Shape> shape;
    dg::DBox box;
  };

  du::SmartPtr<Illustration3dScene> scene_;
  du::SmartPtr<Instance> assembly_;
  du::SmartPtr<SbomInstance> root_;
  std::vector<du::SmartPtr<SbomInstance>> parts_;
  std::map<std::string, Kind> kinds_;
};

}  // namespace zrk::illustration
