#pragma once
// A host with one scene and its callouts engine, for tests of the component.

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <du/SmartPtr.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CombinedCallout.h>
#include <zrcallouts/Callouts.h>
#include <zrcallouts/Functions.h>
#include <zritemlist/ItemList.h>
#include <zrk/AnnoSet.h>
#include <zrk/Kernel.h>
#include <zrk/Operation.h>
#include <zrk/ShapeView.h>
#include <zrk/World.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/ItemsList.h>
#include <zrk/illustration/SbomTree.h>
#include <zrkapp/illustration/OrreryApp.h>

#include "support/StructureBuilder.h"
#include "support/TemplateBuilder.h"
#include "support/WatchedScene.h"

namespace zrtest {

using CombinedPtr = du::SmartPtr<zrannotations::CombinedCallout>;

struct SceneOptions {
  bool authoring = false;   ///< the authoring application, with an application object
  bool manualTasks = true;  ///< tasks run when RunTasks is called
  bool withItemList = true;
  bool withTree = true;
  bool withEngine = true;
};

/// Kernel, world, scene with a view, tree and item list, and the engine that the loaded component made for it.
/// Everything ends in order with the fixture, which then checks that no counted object of the test is left.
class SceneFixture : public ::testing::Test {
protected:
  explicit SceneFixture(const SceneOptions& options = {});
  ~SceneFixture() override;

  /// A further scene with a view; it gets an engine when `withEngine`.
  [[nodiscard]] du::SmartPtr<zrk::illustration::Illustration3dScene> AddScene(bool withEngine);
  [[nodiscard]] static EnginePtr EngineOf(const du::SmartPtr<zrk::ShapeScene>& scene) {
    return zrcallouts::GetCalloutsEngineForScene(scene);
  }
  /// Runs what waits in a manual pool, or waits for a pool with threads.
  void RunTasks();
  /// Closes the scene as a user does, and lets its tasks run.
  void CloseScene();

  /// An item of its own for the part; labels count up from "1".
  std::uint32_t AddItem(const Part& part) { return itemList_->AddInstance(part.sbom, nullptr, false, {}); }
  /// A callout on the part that is in no set yet; with an item when `itemId` is not 0.
  [[nodiscard]] CalloutPtr MakeCallout(const TemplatePtr& callouttemplate, const Part& part,
                                       std::uint32_t itemId = 0) const;
  /// The same, added to the scene.
  CalloutPtr AddCallout(const TemplatePtr& callouttemplate, const Part& part, std::uint32_t itemId = 0);
  /// One more leader on a part or symbol, or on an assembly and its shapes.
  void AddLeader(const CalloutPtr& callout, const Part& part) const;
  void AddAssemblyLeader(const CalloutPtr& callout, const Part& assembly) const;
  /// A combined callout on the first member's part, in no set yet.
  [[nodiscard]] CombinedPtr MakeCombined(const std::vector<CalloutPtr>& members) const;
  void Add(const du::SmartPtr<zrk::Annotation>& annotation) {
    scene_->GetAnnoSet()->AddAnnotationToSet(annotation, nullptr);
  }
  void Remove(const du::SmartPtr<zrk::Annotation>& annotation) {
    scene_->GetAnnoSet()->RemoveAnnotationFromSet(annotation, nullptr);
  }

  [[nodiscard]] std::string TextOf(const CalloutPtr& callout) const { return callout->GetText(false).GetString(); }
  [[nodiscard]] std::set<CalloutPtr> CalloutsOn(const Part& part) const;
  /// Whether the engine has the callout among those it observes.
  [[nodiscard]] bool IsObserved(const CalloutPtr& callout) const;

  const long liveBefore_;
  zrk::Kernel kernel_;
  du::SmartPtr<zrk::World> world_;
  du::SmartPtr<zrkapp::illustration::OrreryApp> application_;
  du::SmartPtr<zrk::illustration::Illustration3dScene> scene_;
  du::SmartPtr<zrk::illustration::SbomTree> tree_;
  du::SmartPtr<zrk::ShapeView> view_;
  du::SmartPtr<zritemlist::ItemList> itemList_;
  du::SmartPtr<zrk::illustration::ItemsList> items_;
  std::unique_ptr<StructureBuilder> structure_;
  EnginePtr engine_;

private:
  const bool manualTasks_;
  std::vector<du::SmartPtr<zrk::illustration::Illustration3dScene>> furtherScenes_;
};

/// The same host as the authoring application.
class AuthoringFixture : public SceneFixture {
protected:
  AuthoringFixture() : SceneFixture(SceneOptions{.authoring = true}) {}
};

}  // namespace zrtest
