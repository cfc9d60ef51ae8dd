// Binding an engine to its scene and taking it off again.
#include <du/TaskPool.h>
#include <zrannotations/Inset.h>
#include <zrk/AnnoSetTable.h>
#include <zrk/MakeObject.h>
#include <zrk/illustration/Application.h>

#include "engine/EngineFixture.h"

namespace {

using zrcallouts::Callouts;
using zrkapp::illustration::OrreryApp;
using zrtest::EnginePtr;

/// How many observers there are at each place that an engine observes.
using Observers = std::vector<std::size_t>;

class EngineWiringTest : public zrtest::SceneFixture {
protected:
  EngineWiringTest() : SceneFixture({.withEngine = false}) {
    application_ = zrk::MakeObject<OrreryApp>();  // outside the authoring application it must not matter
    OrreryApp::SetOrreryApp(application_);
    application_->SetSbomTree(applicationTree_);
  }

  [[nodiscard]] Observers Count() const {
    return {world_->GetObserverCount(),           items_->GetObserverCount(),
            application_->GetObserverCount(),     tree_->GetObserverCount(),
            applicationTree_->GetObserverCount(), world_->GetAnnoSetTable()->GetObserverCount()};
  }

  const du::SmartPtr<zrk::illustration::SbomTree> applicationTree_ = zrk::MakeObject<zrk::illustration::SbomTree>();
};

TEST_F(EngineWiringTest, ObservesWhatThereIsAndLetsGoOfAllOfIt) {
  const struct {
    const char* name;
    bool authoring, illustrationScene, withTree, withItemList;
    Observers added;  // at world, items, application, tree of the scene, tree of the application, table of sets
  } cases[] = {
      {"viewer", false, true, true, true, {1, 1, 0, 1, 0, 0}},
      {"viewer without tree", false, true, false, true, {1, 1, 0, 0, 0, 0}},
      {"viewer without item list", false, true, true, false, {1, 0, 0, 1, 0, 0}},
      {"viewer with another scene", false, false, true, true, {1, 0, 0, 0, 0, 0}},
      {"authoring", true, true, true, true, {1, 1, 1, 1, 0, 1}},
      {"authoring without tree of the scene", true, true, false, true, {1, 1, 1, 0, 1, 1}},
      {"authoring with another scene", true, false, true, true, {1, 0, 1, 0, 1, 1}},
  };
  const Observers none(6, 0);
  for (const auto& tested : cases) {
    SCOPED_TRACE(tested.name);
    zrk::illustration::SetRunningFoliant(tested.authoring);
    const auto illustrationScene = AddScene(false);
    if (tested.withTree) illustrationScene->SetSbomTree(tree_);
    const du::SmartPtr<zrk::ShapeScene> scene = tested.illustrationScene
                                                    ? du::SmartPtr<zrk::ShapeScene>(illustrationScene)
                                                    : zrk::MakeObject<zrk::ShapeScene>();
    if (tested.withItemList) zritemlist::ItemList::ShareItemList(scene_, scene);
    {
      const EnginePtr engine(new Callouts);
      engine->Initialize(scene);
      EXPECT_EQ(Count(), tested.added);
      EXPECT_EQ(static_cast<bool>(engine->GetItemsList()), tested.added[1] == 1);
      engine->Destroy();
      EXPECT_EQ(Count(), none);
      EXPECT_FALSE(engine->GetItemsList());
      EXPECT_FALSE(engine->GetScene());
    }
    {
      const EnginePtr abandoned(new Callouts(scene));
      EXPECT_EQ(world_->GetObserverCount(), 1u);
    }
    EXPECT_EQ(Count(), none);  // also an engine that nobody destroyed leaves no observer behind
  }
}

using EngineLifetimeTest = zrtest::EngineFixture;

TEST_F(EngineLifetimeTest, WorksWithoutKernelWorldOrApplication) {
  const auto scene = AddScene(false);
  const std::size_t observersBefore = world_->GetObserverCount();
  zrk::Kernel::SetKernel(nullptr);
  zrk::World::SetWorld(nullptr);
  {
    const EnginePtr engine(new Callouts(scene));
    EXPECT_EQ(world_->GetObserverCount(), observersBefore);
    engine->OnLanguageChanged();
    engine->RegenerateCalloutLabels();
    engine->Destroy();
  }
  zrk::World::SetWorld(world_);
  zrk::Kernel::SetKernel(&kernel_);
}

TEST_F(EngineLifetimeTest, ClosingTheSceneReleasesTemplatesAndInsetsLaterOnThePool) {
  const auto number = zrtest::NumberTemplate();
  const auto callout = AddCallout(number, bolt_, AddItem(bolt_));
  const auto inset = zrk::MakeObject<zrannotations::Inset>();
  const auto shown = MakeCallout(number, bolt_);
  AddLeader(shown, bolt_);
  shown->SetInsetAtPos(inset, 0);
  shown->SetInsetAtPos(inset, 1);
  Add(shown);
  Add(inset);
  ASSERT_EQ(number->GetObserverCount(), 2u);
  ASSERT_EQ(inset->GetObserverCount(), 1u);
  ASSERT_TRUE(IsObserved(callout));

  scene_->Destroy();
  EXPECT_FALSE(EngineOf(scene_));
  EXPECT_FALSE(zritemlist::ItemList::GetItemListForScene(scene_));
  EXPECT_EQ(inset->GetObserverCount(), 0u);  // at once
  EXPECT_TRUE(callout->IsUsingTemplate());   // not yet
  EXPECT_FALSE(inset->IsReleased());
  EXPECT_EQ(world_->GetTaskPool()->GetPendingCount(), 1u);

  RunTasks();
  EXPECT_FALSE(callout->IsUsingTemplate());
  EXPECT_EQ(number->GetUserCount(), 0u);
  EXPECT_EQ(number->GetObserverCount(), 0u);
  EXPECT_TRUE(inset->IsReleased());
  EXPECT_FALSE(shown->GetInsetAtPos(0));
  EXPECT_EQ(shown->GetInsetAtPos(1), inset);  // detached at the first position only

  EXPECT_TRUE(CalloutsOn(bolt_).empty());
  engine_->AddToMap(callout);  // a destroyed engine takes in nothing
  engine_->AddToSet(callout);
  EXPECT_TRUE(CalloutsOn(bolt_).empty());
  EXPECT_FALSE(IsObserved(callout));
  EXPECT_FALSE(callout->HasTemplateObserver());
}

TEST_F(EngineLifetimeTest, ATemplateEditedBetweenTheEndAndTheReleaseIsHarmless) {
  const auto text = zrtest::TemplateBuilder().Literal("old").Property("Data", "Mass").Build();
  const auto callout = AddCallout(text, bolt_);
  const std::string before = TextOf(callout);
  scene_->Destroy();
  engine_.Reset();
  text->SetTextContent(zrtest::TemplateBuilder().Literal("new").Pieces(), true);
  text->ReplaceBy(*zrtest::TextTemplate("other"));
  EXPECT_EQ(TextOf(callout), before);
  RunTasks();
}

}  // namespace
