#include <zrk/World.h>

#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

#include <du/Localizer.h>
#include <du/Task.h>
#include <du/TaskPool.h>
#include <zrk/AnnoSetTable.h>
#include <zrk/AnnoSetTableObserver.h>
#include <zrk/Kernel.h>
#include <zrk/MakeObject.h>
#include <zrk/Observable.h>
#include <zrk/Operation.h>
#include <zrk/Scene.h>
#include <zrk/UndoHistory.h>
#include <zrk/WorldObserver.h>
#include <zrk/illustration/ComponentLoader.h>
#include <zrk/illustration/ItemsList.h>

namespace {

using du::SmartPtr;
using zrk::MakeObject;
using zrk::Observable;

/// Writes down what the world and its table say.
struct Recorder final : zrk::WorldObserver, zrk::AnnoSetTableObserver {
  void OnLanguageChanged() override {
    log += du::Localizer::GetCurrentLanguage() + ";";
    if (reaction) reaction();
  }
  void OnAnnoSetTableChanged() override { log += "world table;"; }
  void OnSceneAdded(const SmartPtr<zrk::Scene>&) override { log += "scene;"; }
  void OnWorldDestroy() override { log += "destroy;"; }
  void OnBeginChange() override { log += "begin;"; }
  void OnTableChanged() override { log += "table;"; }
  void OnEndChange() override { log += "end;"; }

  std::string log;
  std::function<void()> reaction;
};

class WorldTest : public testing::Test {
protected:
  WorldTest() { zrk::World::SetWorld(world_); }
  ~WorldTest() override {
    zrk::World::SetWorld(nullptr);
    du::Localizer::SetCurrentLanguage("en");
  }

  const SmartPtr<zrk::World> world_ = MakeObject<zrk::World>();
  const SmartPtr<Recorder> observer_ = MakeObject<Recorder>(), other_ = MakeObject<Recorder>();
  std::string& log_ = observer_->log;
};

TEST_F(WorldTest, TellsObserversOfTheLanguageUntilTheyLeave) {
  for (const auto& observer : {observer_, observer_, SmartPtr<Recorder>()}) world_->RegisterObserver(observer, true);
  EXPECT_EQ(world_->GetObserverCount(), 1U);
  world_->ChangeLanguage("fr");
  EXPECT_EQ(log_, "fr;");
  observer_->reaction = [&] {
    // From another thread, which hangs if deregistering waits for the notification under way.
    std::thread([&] { world_->DeregisterObserver(observer_); }).join();
  };
  world_->RegisterObserver(other_, true);
  world_->ChangeLanguage("ja");
  world_->ChangeLanguage("de");
  EXPECT_EQ(log_, "fr;ja;");
  EXPECT_EQ(other_->log, "ja;de;");
}

TEST_F(WorldTest, OtherThreadsReachOnlyObserversThatAskedForIt) {
  world_->RegisterObserver(observer_, false);
  world_->RegisterObserver(other_, true);
  std::thread([this] { world_->AnnounceScene(MakeObject<zrk::Scene>()); }).join();
  EXPECT_EQ(log_, "");
  EXPECT_EQ(other_->log, "scene;");
}

TEST_F(WorldTest, ShutdownGoesInOrderAndOnce) {
  struct LoggingTask final : du::Task {
    explicit LoggingTask(std::string& text) : log(text) {}
    void Run() override { log += "task;"; }
    std::string& log;
  };
  world_->RegisterObserver(observer_, true);
  const auto scene = MakeObject<zrk::Scene>();
  zrk::RecordOperation(MakeObject<zrk::Operation>("name", scene, true));
  world_->GetTaskPool()->SetManual(true);
  world_->GetTaskPool()->InsertTask(new LoggingTask(log_));
  world_->Shutdown();
  world_->Shutdown();
  EXPECT_EQ(log_, "destroy;task;");
  EXPECT_EQ(zrk::UndoHistory::GetCount(scene), 0U);
  EXPECT_FALSE(world_->GetTaskPool()->InsertTask(new LoggingTask(log_)));
}

TEST_F(WorldTest, TableChangesAreGroupedByUpdates) {
  const SmartPtr<zrk::AnnoSetTable> table = world_->GetAnnoSetTable();
  table->RegisterObserver(observer_);
  world_->RegisterObserver(observer_, true);
  table->ChangeTable();
  EXPECT_EQ(std::exchange(log_, {}), "begin;table;world table;end;");
  table->BeginUpdate();
  table->ChangeTable();
  table->ChangeTable();
  table->EndUpdate();
  EXPECT_EQ(log_, "begin;table;world table;table;world table;end;");
  table->EndUpdate();
  table->UnregisterObserver(observer_);
  EXPECT_EQ(table->GetObserverCount(), 0U);
}

struct CountingObservable final : Observable {
  int begun = 0, ended = 0;

  void OnUpdateBegun() override { ++begun; }
  void OnUpdateEnded() override {
    ++ended;
    throw std::bad_alloc();
  }
};

TEST(UpdateGroupTest, NestedGroupsCloseOnceWhicheverWayTheyAreLeftAndWhateverObserversThrow) {
  CountingObservable observed;
  try {
    const Observable::UpdateGroup outer(observed);
    { const Observable::UpdateGroup inner(observed); }
    EXPECT_TRUE(observed.IsUpdating());
    EXPECT_EQ(observed.ended, 0);
    throw std::runtime_error("left by an exception");
  } catch (const std::runtime_error&) {
  }
  EXPECT_FALSE(observed.IsUpdating());
  EXPECT_EQ(observed.begun, 1);
  EXPECT_EQ(observed.ended, 1);
  const Observable::UpdateGroup nothing{SmartPtr<zrk::illustration::ItemsList>()};
}

TEST(KernelTest, RecordsWithoutOwningAndForgetsTheDead) {
  const long before = du::RefCounted::GetLiveObjectCount();
  auto observer = MakeObject<zrk::WorldObserver>();
  observer->ManageObject(nullptr);
  {
    zrk::Kernel kernel;
    zrk::Kernel::SetKernel(&kernel);
    for (int i = 0; i < 2; ++i) observer->ManageObject(zrk::Kernel::GetKernel());
    EXPECT_TRUE(kernel.IsManaged(*observer));
    EXPECT_EQ(observer->GetReferenceCount(), 1U);
    MakeObject<zrk::WorldObserver>()->ManageObject(&kernel);
  }
  EXPECT_EQ(zrk::Kernel::GetKernel(), nullptr);
  EXPECT_FALSE(observer->IsManaged());
  observer.Reset();
  EXPECT_EQ(du::RefCounted::GetLiveObjectCount(), before);
}

TEST(ComponentLoaderTest, SaysWhatCannotBeLoadedAndWhy) {
  const std::pair<const char*, const char*> cases[] = {{"/no/such/library.so", "/no/such/library.so"},
                                                       {"libm.so.6", "ZRDllInit"}};
  for (const auto& [library, named] : cases) {
    std::string error;
    EXPECT_FALSE(zrk::illustration::ComponentLoader::Load(library, error));
    EXPECT_NE(error.find(named), std::string::npos) << error;
  }
  EXPECT_FALSE(zrk::illustration::ComponentLoader::IsLoaded());
}

}  // namespace
