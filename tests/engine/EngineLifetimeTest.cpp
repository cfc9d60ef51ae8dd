// Binding an engine to its scene and taking it off again; settings; the shape of the object that the host relies on.
#include <dlfcn.h>
#include <link.h>

#include <cstring>
#include <functional>

#include <du/LocalizableString.h>
#include <du/TaskPool.h>
#include <zrannotations/Inset.h>
#include <zrk/AnnoSetTable.h>
#include <zrk/MakeObject.h>

#include "support/SceneFixture.h"

namespace {

using zrcallouts::Callouts;
using zrtest::AuthoringFixture;
using zrtest::CalloutPtr;
using zrtest::EnginePtr;
using zrtest::Part;
using zrtest::SceneFixture;
using zrtest::SceneOptions;

struct WiringCase {
  const char* name;
  bool authoring;
  bool illustrationScene;
  bool withTree;
  bool withItemList;
  // How many observers the engine adds.
  std::size_t atItems, atApplication, atSceneTree, atApplicationTree, atTable;
};

class EngineWiringTest : public SceneFixture, public ::testing::WithParamInterface<WiringCase> {
protected:
  EngineWiringTest()
      : SceneFixture({.authoring = GetParam().authoring,
                      .withItemList = GetParam().withItemList,
                      .withTree = GetParam().withTree,
                      .withEngine = false}),
        applicationTree_(zrk::MakeObject<zrk::illustration::SbomTree>()) {
    // There outside the authoring application too, where it must not matter.
    if (!application_) application_ = zrk::MakeObject<zrkapp::illustration::OrreryApp>();
    zrkapp::illustration::OrreryApp::SetOrreryApp(application_);
    application_->SetSbomTree(applicationTree_);
  }

  void ExpectObservers(const WiringCase& expected, std::size_t atWorld) const {
    EXPECT_EQ(items_ ? items_->GetObserverCount() : 0, expected.atItems);
    EXPECT_EQ(world_->GetObserverCount(), atWorld);
    EXPECT_EQ(application_->GetObserverCount(), expected.atApplication);
    EXPECT_EQ(tree_->GetObserverCount(), expected.atSceneTree);
    EXPECT_EQ(applicationTree_->GetObserverCount(), expected.atApplicationTree);
    EXPECT_EQ(world_->GetAnnoSetTable()->GetObserverCount(), expected.atTable);
  }

  du::SmartPtr<zrk::illustration::SbomTree> applicationTree_;
};

TEST_P(EngineWiringTest, ObservesWhatThereIsAndLetsGoOfAllOfIt) {
  const du::SmartPtr<zrk::ShapeScene> scene =
      GetParam().illustrationScene ? du::SmartPtr<zrk::ShapeScene>(scene_) : zrk::MakeObject<zrk::ShapeScene>();
  if (!GetParam().illustrationScene) zritemlist::ItemList::ShareItemList(scene_, scene);
  const WiringCase none{};
  {
    const EnginePtr engine(new Callouts);
    engine->Initialize(scene);
    ExpectObservers(GetParam(), 1);
    EXPECT_EQ(static_cast<bool>(engine->GetItemsList()), GetParam().atItems == 1);
    engine->Destroy();
    ExpectObservers(none, 0);
    EXPECT_FALSE(engine->GetItemsList());
    EXPECT_FALSE(engine->GetScene());
  }
  {
    const EnginePtr abandoned(new Callouts(scene));
    EXPECT_EQ(world_->GetObserverCount(), 1u);
  }
  ExpectObservers(none, 0);  // also an engine that nobody destroyed leaves no observer behind
  RunTasks();
}

INSTANTIATE_TEST_SUITE_P(
    Scenes, EngineWiringTest,
    ::testing::Values(WiringCase{"Viewer", false, true, true, true, 1, 0, 1, 0, 0},
                      WiringCase{"ViewerWithoutTree", false, true, false, true, 1, 0, 0, 0, 0},
                      WiringCase{"ViewerWithoutItemList", false, true, true, false, 0, 0, 1, 0, 0},
                      WiringCase{"ViewerWithOtherScene", false, false, true, true, 0, 0, 0, 0, 0},
                      WiringCase{"Authoring", true, true, true, true, 1, 1, 1, 0, 1},
                      WiringCase{"AuthoringWithoutSceneTree", true, true, false, true, 1, 1, 0, 1, 1},
                      WiringCase{"AuthoringWithOtherScene", true, false, true, true, 0, 1, 0, 1, 1}),
    [](const auto& tested) { return std::string(tested.param.name); });

class EngineLifetimeTest : public SceneFixture {
protected:
  Part bolt_ = structure_->AddPart(structure_->Root(), "bolt");
};

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

  scene_->Destroy();
  EXPECT_FALSE(EngineOf(scene_));
  EXPECT_FALSE(zritemlist::ItemList::GetItemListForScene(scene_));
  EXPECT_EQ(inset->GetObserverCount(), 0u);  // at once
  EXPECT_TRUE(callout->IsUsingTemplate());   // not yet
  EXPECT_FALSE(inset->IsReleased());
  EXPECT_EQ(world_->GetTaskPool()->GetPendingCount(), 1u);

  RunTasks();
  EXPECT_FALSE(callout->IsUsingTemplate());
  EXPECT_FALSE(callout->HasTemplateObserver());
  EXPECT_EQ(number->GetUserCount(), 0u);
  EXPECT_EQ(number->GetObserverCount(), 0u);
  EXPECT_TRUE(inset->IsReleased());
  EXPECT_FALSE(shown->GetInsetAtPos(0));
  EXPECT_EQ(shown->GetInsetAtPos(1), inset);  // detached at the first position only
}

TEST_F(EngineLifetimeTest, ADestroyedEngineTakesInNothing) {
  const auto callout = AddCallout(zrtest::NumberTemplate(), bolt_, AddItem(bolt_));
  ASSERT_TRUE(IsObserved(callout));
  CloseScene();
  EXPECT_TRUE(CalloutsOn(bolt_).empty());
  engine_->AddToMap(callout);
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

TEST_F(EngineLifetimeTest, DestroyingOneEngineLeavesTheOthersObserversAlone) {
  const auto other = AddScene(true);
  const auto callout = AddCallout(zrtest::TextTemplate("Note"), bolt_);
  callout->SetText("Note", false);
  callout->SetupLocalizationIfNecessary(false);
  callout->GetLocalizableString().SetLocaleText("de", "Hinweis");
  ASSERT_EQ(world_->GetObserverCount(), 2u);
  other->Destroy();
  RunTasks();
  EXPECT_EQ(world_->GetObserverCount(), 1u);
  world_->ChangeLanguage("de");
  EXPECT_EQ(TextOf(callout), "Hinweis");
}

struct Setting {
  bool (Callouts::*get)() const;
  void (Callouts::*set)(bool);
};

TEST_F(EngineLifetimeTest, SettingsStartOffAreIndependentAndOnlyStored) {
  const Setting settings[] = {{&Callouts::GetCombineForSamePart, &Callouts::SetCombineForSamePart},
                              {&Callouts::GetDrawOneForSamePart, &Callouts::SetDrawOneForSamePart},
                              {&Callouts::GetForce2DArrowheads, &Callouts::SetForce2DArrowheads}};
  const auto callout = AddCallout(zrtest::NumberTemplate(), bolt_, AddItem(bolt_));
  const unsigned textsBefore = callout->GetSetTextCount();
  const unsigned dirtyBefore = view_->GetDirtyCount();
  for (const auto& changed : settings) {
    ((*engine_).*changed.set)(true);
    for (const auto& asked : settings) EXPECT_EQ(((*engine_).*asked.get)(), asked.get == changed.get);
    ((*engine_).*changed.set)(false);
    EXPECT_FALSE(((*engine_).*changed.get)());
  }
  EXPECT_EQ(callout->GetSetTextCount(), textsBefore);
  EXPECT_EQ(view_->GetDirtyCount(), dirtyBefore);
  EXPECT_EQ(engine_->GetPickRequestCount(), 0u);
}

// Opens the protected operation of the interface, to ask for its place.
struct Interface : zrk::illustration::Callouts {
  static constexpr auto kUnregisterObservers = &Interface::UnregisterObservers;
};

/// Index of a virtual operation in its class's table: a pointer to a virtual member holds 1 + the entry's byte offset.
template <class Operation>
std::size_t TableIndex(Operation operation) {
  std::ptrdiff_t words[2] = {};
  static_assert(sizeof operation == sizeof words);
  std::memcpy(words, &operation, sizeof words);
  return static_cast<std::size_t>(words[0] - 1) / sizeof(void*);
}

std::size_t SizeOfObject(const char* mangledName) {
  void* const address = dlsym(RTLD_DEFAULT, mangledName);
  Dl_info info{};
  void* entry = nullptr;
  if (!address || !dladdr1(address, &info, &entry, RTLD_DL_SYMENT) || !entry) return 0;
  return static_cast<const ElfW(Sym)*>(entry)->st_size;
}

TEST(EngineInterfaceTest, VirtualOperationsKeepTheirPlaces) {
  using Base = zrk::illustration::Callouts;
  const std::size_t places[] = {TableIndex(&Base::GetDebugClassName),
                                TableIndex(&Base::GetClassType),
                                TableIndex(&Base::IsATypeOfId),
                                TableIndex(&Base::GetClassTypes),
                                TableIndex(&Base::AddUserData),
                                TableIndex(&Base::GetUserData),
                                TableIndex(&Base::RemoveUserData),
                                TableIndex(&Base::GetObjectDescription),
                                TableIndex(&Base::GetObjectName),
                                TableIndex(&Base::AddRefCountedUserData),
                                TableIndex(&Base::GetRefCountedUserData),
                                TableIndex(&Base::Initialize),
                                TableIndex(&Base::InitializeShapeViewObserver),
                                TableIndex(&Base::OnSceneDestroy),
                                TableIndex(&Base::OnShapeInstanceLocation),
                                TableIndex(&Base::OnShapeInstanceVisibility),
                                TableIndex(&Base::OnShapeInstanceCreate),
                                TableIndex(&Base::OnShapeInstanceRemove),
                                TableIndex(&Base::OnAddAnnotation),
                                TableIndex(&Base::OnRemoveAnnotation),
                                TableIndex(&Base::OnAnnotationModified),
                                TableIndex(&Base::OnAnnotationDeleted),
                                TableIndex(&Base::OnHandleTimeoutEvent),
                                TableIndex(&Base::OnBackgroundColor),
                                TableIndex(&Base::OnPaletteColorChanged),
                                TableIndex(&Base::OnWindowSize),
                                TableIndex(&Base::Destroy),
                                TableIndex(&Base::GetCalloutSetForSbomInstance),
                                TableIndex(&Base::GenerateLabelString),
                                TableIndex(&Base::GenerateLabelStringFor2DCallout),
                                TableIndex(Interface::kUnregisterObservers)};
  std::size_t expected = 2;  // behind the two entries of the destructor
  for (const std::size_t place : places) EXPECT_EQ(place, expected++);
  // The component's class overrides and adds nothing.
  EXPECT_GT(SizeOfObject("_ZTVN10zrcallouts8CalloutsE"), expected * sizeof(void*));
  EXPECT_EQ(SizeOfObject("_ZTVN10zrcallouts8CalloutsE"), SizeOfObject("_ZTVN3zrk12illustration8CalloutsE"));
}

/// Offset of the first byte of the engine that an action changes; its size when none does.
std::size_t FirstChange(const EnginePtr& engine, const std::function<void()>& action) {
  const auto* const bytes = reinterpret_cast<const unsigned char*>(engine.Get());
  const std::vector<unsigned char> before(bytes, bytes + sizeof(Callouts));
  action();
  std::size_t offset = 0;
  while (offset < before.size() && before[offset] == bytes[offset]) ++offset;
  return offset;
}

TEST_F(EngineLifetimeTest, FieldsFollowEachOtherInTheirOrder) {
  const EnginePtr engine(new Callouts);
  const auto callout = MakeCallout(zrtest::NumberTemplate(), bolt_);
  const auto inset = zrk::MakeObject<zrannotations::Inset>();
  const Part symbol = structure_->AddSymbol("S");
  view_->SetBackgroundColors({1, 0, 0, 1}, {0, 1, 0, 1}, {0, 0, 1, 1});
  const std::function<void()> actions[] = {[&] { engine->SetCombineForSamePart(true); },
                                           [&] { engine->SetDrawOneForSamePart(true); },
                                           [&] { engine->SetForce2DArrowheads(true); },
                                           [&] { engine->SetBackgroundColor(view_); },
                                           [&] { engine->SetTemplate(callout->GetDefinition()); },
                                           [&] { engine->AddToSet(callout); },
                                           [&] { engine->AddToMap(callout); },
                                           [&] { engine->OnAddAnnotation(symbol.symbol); },
                                           [&] { engine->OnAddAnnotation(inset); }};
  std::size_t last = sizeof(zrk::illustration::Callouts) - sizeof(du::RefCounted);
  for (const auto& action : actions) {
    const std::size_t offset = FirstChange(engine, action);
    EXPECT_GT(offset, last);
    last = offset;
  }
  EXPECT_LT(last, sizeof(Callouts));
  callout->UnregisterTemplateObserver();
}

TEST_F(EngineLifetimeTest, BackgroundColoursComeFromViewsOfIllustrationScenes) {
  const auto unchanged = sizeof(Callouts);
  const auto stranger = zrk::MakeObject<zrk::ShapeView>();
  stranger->SetBackgroundColors({1, 0, 0, 1}, {0, 1, 0, 1}, {0, 0, 1, 1});
  EXPECT_EQ(FirstChange(engine_, [&] { engine_->OnBackgroundColor(nullptr); }), unchanged);
  EXPECT_EQ(FirstChange(engine_, [&] { engine_->OnBackgroundColor(stranger); }), unchanged);
  EXPECT_NE(FirstChange(engine_, [&] { engine_->SetBackgroundColor(stranger); }), unchanged);
  EXPECT_NE(FirstChange(engine_, [&] { engine_->InitializeShapeViewObserver(); }), unchanged);  // those of view 0 again
  EXPECT_NE(FirstChange(engine_,
                        [&] {
                          view_->SetBackgroundColors({1, 0, 0, 1}, {0, 1, 0, 1}, {0, 0, 1, 1});
                        }),
            unchanged);
  EXPECT_EQ(FirstChange(engine_, [&] { engine_->SetBackgroundColor(stranger); }), unchanged);  // the same colours
}

}  // namespace
