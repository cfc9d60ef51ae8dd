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

class EngineLockTest : public zrtest::SceneFixture {
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
  static void Move(const Part& part, double way) {
    part.shape->SetLocation(dg::Location(dg::FMat33::IDENTITY, dg::DPoint3D(way, 0, 0)));
  }
  void MoveBolt() { Move(bolt_, 1); }
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
  /// Writes every label anew and asks whatever can be asked.
  static void Rebuild(const EnginePtr& engine, const std::vector<Part>& parts) {
    engine->RegenerateCalloutLabels();
    engine->OnLanguageChanged();
    engine->OnPaletteColorChanged();
    engine->OnWindowSize();
    std::set<CalloutPtr> callouts;
    std::vector<CalloutPtr> carriers;
    engine->GetItemIdCallouts({1, 2, 3}, carriers);
    for (const Part& part : parts) {
      engine->GetCalloutSetForSbomInstance(part.sbom, callouts);
      EXPECT_FALSE(engine->Exists(part.Id(), "none"));
    }
    for (const auto& callout : callouts) static_cast<void>(engine->IsAllowed(callout));
    EXPECT_FALSE(engine->GetCalloutsAndInsetsFonts(true).count("none"));
  }
  void Rebuild() { Rebuild(engine_, {bolt_, nut_}); }
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
                                         LockCase{"MoveAndShapes", &T::MoveBolt, &T::ReplaceShape},
                                         LockCase{"InsetAndItsCallouts", &T::AddInset, &T::ChangeInset},
                                         LockCase{"RunAndRemoval", &T::Generate, &T::RemoveItem},
                                         LockCase{"RunAndClosing", &T::Generate, &T::Close}),
                         [](const auto& tested) { return std::string(tested.param.name); });

// Texts that change inside the walk are reported to the engine again: with a write lock there it would wait for the
// reader; and a reader that reads again must not wait for a writer that waits for it.
TEST_F(EngineLockTest, WalksThatWriteTextsEndWhileOthersReadAndWhileAWriterWaits) {
  std::atomic<bool> stored{false};
  RunWithoutDeadlock([&] {
    std::thread writer;
    {
      const dp::ReadWriteLock::ReadGuard guard(Lock());
      combined_->SetText("old", false);
      std::thread([this] { Rebuild(); }).join();
      EXPECT_EQ(TextOf(combined_), "2\n1");
      combined_->SetText("old", false);
      writer = std::thread([&] {
        engine_->SetDrawOneForSamePart(true);
        stored = true;
      });
      std::this_thread::sleep_for(kTimeToBlock);
      EXPECT_FALSE(stored);
      engine_->RegenerateCalloutLabels();
    }
    writer.join();
  });
  EXPECT_EQ(TextOf(combined_), "2\n1");
  EXPECT_TRUE(engine_->GetDrawOneForSamePart());
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
  RunTasks();
  world_->ChangeLanguage("en");  // the engine that is left still follows
  EXPECT_EQ(TextOf(callout_), "Note");
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

TEST_F(EngineLockTest, ArrivalsMovesItemChangesAndQueriesRunSideBySide) {
  const std::uint32_t washerItem = AddItem(washer_);
  RunWithoutDeadlock([&] {
    const Repeater comer([&] { Remove(AddCallout(number_, bolt_, boltItem_)); });
    const Repeater loser([&] {
      AddCallout(number_, washer_, washerItem);
      engine_->OnItemRemoved(washerItem, nullptr);
    });
    const Repeater mover([&, way = 0]() mutable {
      Move(bolt_, ++way);
      washer_.shape->SetVisible(way % 2 == 0);
    });
    const Repeater asker([&] { Rebuild(); });
    for (int round = 0; round < 3 * Rounds(); ++round) items_->SetItemLabel(boltItem_, std::to_string(round));
  });
  EXPECT_EQ(CalloutsOn(bolt_).count(callout_), 1u);
  EXPECT_TRUE(CalloutsOn(washer_).empty());
  EXPECT_EQ(TextOf(callout_), std::to_string(3 * Rounds() - 1));
  EXPECT_TRUE(items_->IsIndicated(boltItem_));
}

// Nobody may take a counted reference while the constructor runs: it would be the first one, and its end the object's.
TEST_F(EngineLockTest, AnEngineBoundByItsConstructorSurvivesTheLanguageChangesMeanwhile) {
  const Repeater translator([this] { world_->ChangeLanguage("en"); });
  const auto scene = AddScene(false);
  scene->SetSbomTree(tree_);
  for (int engines = 0; engines < 50000; ++engines) {  // it takes many to meet the moment
    const EnginePtr engine(new zrcallouts::Callouts(scene));
    EXPECT_EQ(engine->GetScene(), scene);
    engine->Destroy();
  }
}

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
      parts.push_back(structure.AddPart(structure.Root(), name));
      selection.push_back(zrk::MakeObject<SbomInstanceSelectionItem>(parts.back().sbom));
    }
    zrk::illustration::CalloutEngineMgr::Instance().CreateEngineForScene(scene);
    const auto engine = EngineOf(scene);
    const auto annoSet = scene->GetAnnoSet();
    const auto callout = MakeCallout(number_, parts.front());
    engine->SetTemplate(number_);
    const auto event = zrk::MakeObject<zrk::AsyncEvent>();
    RunWithoutDeadlock([&] {
      const Repeater reporter([&, way = 0]() mutable {
        ++way;
        for (const Part& part : parts) Move(part, way);
        for (const Part& part : parts) part.shape->SetVisible(way % 2 == 0);
        annoSet->AddAnnotationToSet(callout, nullptr);
        annoSet->RemoveAnnotationFromSet(callout, nullptr);
      });
      const Repeater asker([&] {
        Rebuild(engine, parts);
        engine->SetTemplate(engine->GetTemplate());
      });
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
