// Several threads in one host: who waits for the engine's lock keeps nothing locked that its holder needs, and scenes
// may close at any moment. A deadlock ends the program with a message, since nothing else could end it.
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <future>
#include <iostream>
#include <thread>

#include <dg/FMat33.h>
#include <dg/Location.h>
#include <dp/ReadWriteLock.h>
#include <du/LocalizableString.h>
#include <zrannotations/Inset.h>
#include <zrcallouts/CalloutGenerator.h>
#include <zrk/AsyncEvent.h>
#include <zrk/MakeObject.h>
#include <zrk/SceneListener.h>
#include <zrk/UndoHistory.h>
#include <zrk/illustration/CalloutEngineMgr.h>
#include <zrk/illustration/SbomInstanceSelectionItem.h>

#include "support/SceneFixture.h"

namespace {

using zrk::illustration::SbomInstanceSelectionItem;
using zrtest::CalloutPtr;
using zrtest::EnginePtr;
using zrtest::Part;
using zrtest::SceneFixture;
using zrtest::TemplateBuilder;

constexpr std::chrono::seconds kDeadline{20};
constexpr std::chrono::milliseconds kTimeToBlock{30};

int Rounds() {
  const char* const given = std::getenv("ZR_TEST_ROUNDS");
  return given ? std::atoi(given) : 50;
}

/// Runs the function to its end, or ends the program.
template <class Function>
void RunWithoutDeadlock(const Function& function) {
  std::packaged_task<void()> task(function);
  const auto done = task.get_future();
  std::thread thread(std::move(task));
  if (done.wait_for(kDeadline) != std::future_status::ready) {
    std::cerr << "deadlock in " << testing::UnitTest::GetInstance()->current_test_info()->name() << std::endl;
    std::_Exit(1);
  }
  thread.join();
}

class EngineLockTest : public SceneFixture {
protected:
  EngineLockTest() : SceneFixture({.manualTasks = false}) { Add(combined_); }
  void TearDown() override { RunTasks(); }

public:
  void ChangeLanguage() { world_->ChangeLanguage("de"); }
  void EditTemplate() { number_->SetTextContent(TemplateBuilder().Token("zrQTY").Pieces(), true); }
  void ChangeItem() { items_->SetItemLabel(nutItem_, "9"); }
  void ChangeProperty() { tree_->SetDefaultPropertyGroup(bolt_.sbom, "Data"); }
  void Arrive() { AddCallout(number_, nut_, nutItem_); }
  void RewriteCombined() { engine_->SetCalloutText(combined_); }
  void AddInset() { Add(inset_); }
  void ChangeInset() {
    inset_->SetBounds(dg::DBox());
    inset_->SetCaptionText("Detail", false, false);
    callout_->SetInsetAtPos(inset_, 0);
    engine_->AddToMap(callout_);
  }
  void Generate() {
    const auto event = zrk::MakeObject<zrk::AsyncEvent>();
    zrcallouts::CalloutGenerator::CreateCallouts(engine_, {zrk::MakeObject<SbomInstanceSelectionItem>(washer_.sbom)},
                                                 event);
    while (!event->WaitComplete(1000)) {
    }
  }
  void Move() { bolt_.shape->SetLocation(dg::Location(dg::FMat33::IDENTITY, dg::DPoint3D(1, 0, 0))); }
  void ReplaceShape() {
    scene_->RemoveShapeInstance(nut_.shape);
    scene_->AddShapeInstance(nut_.shape);
  }
  void RemoveItem() {
    scene_->GetAnnoSet()->AddReferencedAnnotation(MakeCallout(number_, bolt_, boltItem_));
    engine_->OnItemRemoved(boltItem_, nullptr);
    itemList_->DeleteItem(boltItem_, nullptr);
  }
  void Close() {
    EXPECT_TRUE(tree_->FindInstance(bolt_.Id()));
    scene_->Destroy();
  }
  void Rebuild() {
    engine_->RegenerateCalloutLabels();
    engine_->OnLanguageChanged();
    engine_->OnPaletteColorChanged();
    engine_->OnWindowSize();
    EXPECT_TRUE(engine_->Exists(bolt_.Id(), "1"));
    EXPECT_TRUE(engine_->IsAllowed(combined_));
    EXPECT_FALSE(engine_->GetCalloutsAndInsetsFonts(true).count("none"));
  }
  [[nodiscard]] dp::ReadWriteLock* Lock() const { return engine_->GetReadWriteLock(); }

protected:
  const Part bolt_ = structure_->AddPart(structure_->Root(), "bolt");
  const Part nut_ = structure_->AddPart(structure_->Root(), "nut");
  const Part washer_ = structure_->AddPart(structure_->Root(), "washer");
  const std::uint32_t boltItem_ = AddItem(bolt_);
  const std::uint32_t nutItem_ = AddItem(nut_);
  const zrtest::TemplatePtr number_ = TemplateBuilder().Token("zrITM").Property("Data", "Mass").Build();
  const CalloutPtr callout_ = AddCallout(number_, bolt_, boltItem_);
  const zrtest::CombinedPtr combined_ =
      MakeCombined({MakeCallout(number_, nut_, nutItem_), MakeCallout(number_, bolt_, boltItem_)});
  const du::SmartPtr<zrannotations::Inset> inset_ = zrk::MakeObject<zrannotations::Inset>();
};

struct LockCase {
  const char* name;
  void (EngineLockTest::*waits)();      ///< Wants the engine's lock, on a thread of its own.
  void (EngineLockTest::*meanwhile)();  ///< What the holder of the lock does before it lets go.
};

class LockOrderTest : public EngineLockTest, public testing::WithParamInterface<LockCase> {};

TEST_P(LockOrderTest, WhoWaitsForTheEngineKeepsNothingLockedThatItsHolderNeeds) {
  RunWithoutDeadlock([this] {
    std::thread waiting;
    {
      const dp::ReadWriteLock::WriteGuard guard(Lock());
      waiting = std::thread([this] { (this->*GetParam().waits)(); });
      std::this_thread::sleep_for(kTimeToBlock);
      (this->*GetParam().meanwhile)();
    }
    waiting.join();
  });
  EXPECT_FALSE(Lock() && Lock()->IsHeldByThisThread());
}

using T = EngineLockTest;

INSTANTIATE_TEST_SUITE_P(Cases, LockOrderTest,
                         testing::Values(LockCase{"LanguageAndClosing", &T::ChangeLanguage, &T::Close},
                                         LockCase{"TemplateAndRemoval", &T::EditTemplate, &T::RemoveItem},
                                         LockCase{"TemplateAndArrival", &T::EditTemplate, &T::Arrive},
                                         LockCase{"ItemAndRemoval", &T::ChangeItem, &T::RemoveItem},
                                         LockCase{"ItemAndClosing", &T::ChangeItem, &T::Close},
                                         LockCase{"ArrivalAndRemoval", &T::Arrive, &T::RemoveItem},
                                         LockCase{"ArrivalAndClosing", &T::Arrive, &T::Close},
                                         LockCase{"CombinedLabelAndRemoval", &T::RewriteCombined, &T::RemoveItem},
                                         LockCase{"PropertyAndClosing", &T::ChangeProperty, &T::Close},
                                         LockCase{"MoveAndShapes", &T::Move, &T::ReplaceShape},
                                         LockCase{"InsetAndItsCallouts", &T::AddInset, &T::ChangeInset},
                                         LockCase{"RunAndRemoval", &T::Generate, &T::RemoveItem},
                                         LockCase{"RunAndClosing", &T::Generate, &T::Close}),
                         [](const auto& tested) { return std::string(tested.param.name); });

// Texts that change inside the walk are reported to the engine again: with a write lock there it would wait for the
// reader.
TEST_F(EngineLockTest, WalksThatWriteTextsEndWhileOthersRead) {
  RunWithoutDeadlock([this] {
    callout_->SetText("1", false);
    combined_->SetText("old", false);
    const dp::ReadWriteLock::ReadGuard guard(Lock());
    std::thread([this] { Rebuild(); }).join();
  });
  EXPECT_EQ(TextOf(combined_), "2\n1");
}

/// Closes a scene as soon as an annotation of another one is modified.
struct CloserOnChange : zrk::SceneListener {
  void OnAnnotationModified(const du::SmartPtr<zrk::Annotation>&, bool) override { other->Destroy(); }
  du::SmartPtr<zrk::Scene> other;
};

TEST_F(EngineLockTest, AReactionToTheLanguageMayCloseAnotherScene) {
  const auto closer = zrk::MakeObject<CloserOnChange>();
  closer->other = AddScene(true);
  callout_->SetText("Note", false);
  callout_->SetupLocalizationIfNecessary(false);
  callout_->GetLocalizableString().SetLocaleText("de", "Hinweis");
  scene_->AddListener(closer);
  RunWithoutDeadlock([this] { ChangeLanguage(); });
  EXPECT_FALSE(EngineOf(du::DynamicCast<zrk::ShapeScene>(closer->other)));
  EXPECT_EQ(TextOf(callout_), "Hinweis");
  scene_->RemoveListener(closer);
}

/// Repeats a body on a thread of its own until it is stopped.
class Repeater {
public:
  explicit Repeater(std::function<void()> body)
      : thread_([this, body = std::move(body)] {
          while (!stopped_) body();
        }) {}
  ~Repeater() {
    stopped_ = true;
    thread_.join();
  }
  Repeater(const Repeater&) = delete;
  Repeater& operator=(const Repeater&) = delete;

private:
  std::atomic<bool> stopped_{false};
  std::thread thread_;
};

// Nobody may take a counted reference while the constructor runs: it would be the first one, and its end the object's.
TEST_F(EngineLockTest, AnEngineBoundByItsConstructorSurvivesTheLanguageChangesMeanwhile) {
  const Repeater translator([this] { world_->ChangeLanguage("en"); });
  for (int round = 0; round < Rounds(); ++round) {
    const auto scene = AddScene(false);
    scene->SetSbomTree(tree_);
    const EnginePtr engine(new zrcallouts::Callouts(scene));
    EXPECT_EQ(engine->GetScene(), scene);
    engine->Destroy();
  }
}

/// What the host reports and asks while a run makes callouts and while the scene closes.
class Traffic {
public:
  Traffic(const EnginePtr& engine, const CalloutPtr& callout, const std::vector<Part>& parts)
      : engine_(engine), annoSet_(engine->GetAnnoSet()), callout_(callout), parts_(parts) {}

private:
  void Report() {
    const double way = ++round_;
    for (const Part& part : parts_) {
      part.shape->SetLocation(dg::Location(dg::FMat33::IDENTITY, dg::DPoint3D(way, 0, 0)));
      part.shape->SetVisible(round_ % 2 == 0);
    }
    annoSet_->AddAnnotationToSet(callout_, nullptr);
    annoSet_->RemoveAnnotationFromSet(callout_, nullptr);
  }
  void Ask() const {
    std::set<CalloutPtr> callouts;
    std::vector<CalloutPtr> carriers;
    for (const Part& part : parts_) engine_->GetCalloutSetForSbomInstance(part.sbom, callouts);
    engine_->GetItemIdCallouts({1, 2, 3}, carriers);
    engine_->RegenerateCalloutLabels();
    engine_->SetTemplate(engine_->GetTemplate());
    EXPECT_FALSE(engine_->GetCalloutsAndInsetsFonts(true).count("none"));
  }

  const EnginePtr engine_;
  const du::SmartPtr<zrk::AnnoSet> annoSet_;
  const CalloutPtr callout_;
  const std::vector<Part> parts_;
  int round_ = 0;
  const Repeater reporter_{[this] { Report(); }};
  const Repeater asker_{[this] { Ask(); }};
};

TEST_F(EngineLockTest, ScenesCloseDuringRunsAndAllThatIsReportedAndAskedMeanwhile) {
  const Repeater translator([this] { world_->ChangeLanguage("de"), world_->ChangeLanguage("en"); });
  const Repeater editor([this] {
    number_->SetTextContent(TemplateBuilder().Token("zrQTY").Pieces(), true);
    number_->SetTextContent(TemplateBuilder().Token("zrITM").Pieces(), true);
  });
  for (int round = 0; round < Rounds(); ++round) {
    const auto scene = AddScene(false);
    const auto tree = zrk::MakeObject<zrk::illustration::SbomTree>();
    scene->SetSbomTree(tree);
    static_cast<void>(zritemlist::ItemList::CreateItemListForScene(scene));
    zrtest::StructureBuilder structure(scene, tree);
    zrcallouts::CalloutGenerator::Selection selection;
    std::vector<Part> parts;
    for (const char* name : {"plate", "rib", "cover", "rib"}) {
      const Part part = structure.AddPart(structure.Root(), name);
      selection.push_back(zrk::MakeObject<SbomInstanceSelectionItem>(part.sbom));
      parts.push_back(part);
    }
    zrk::illustration::CalloutEngineMgr::Instance().CreateEngineForScene(scene);
    const auto engine = EngineOf(scene);
    const auto annoSet = scene->GetAnnoSet();
    engine->SetTemplate(number_);
    const auto event = zrk::MakeObject<zrk::AsyncEvent>();
    RunWithoutDeadlock([&] {
      const Traffic traffic(engine, MakeCallout(number_, parts.front()), parts);
      zrcallouts::CalloutGenerator::CreateCallouts(engine, std::move(selection), event);
      std::this_thread::sleep_for(std::chrono::microseconds(round % 8 * 100));
      scene->Destroy();
      RunTasks();
    });
    EXPECT_EQ(event->GetCompleteCount(), 1u);
    EXPECT_EQ(annoSet->GetCount(), 0u);
    EXPECT_EQ(zrk::UndoHistory::GetCount(scene), 0u);
    std::set<std::uint32_t> items;
    engine->GetItemdIds(items);
    EXPECT_TRUE(items.empty());
  }
}

}  // namespace
