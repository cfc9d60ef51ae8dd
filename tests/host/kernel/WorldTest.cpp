#include <zrk/World.h>

#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include <du/Localizer.h>
#include <du/Task.h>
#include <du/TaskPool.h>
#include <zrk/AnnoSetTable.h>
#include <zrk/AnnoSetTableObserver.h>
#include <zrk/AsyncEvent.h>
#include <zrk/Kernel.h>
#include <zrk/MakeObject.h>
#include <zrk/Observable.h>
#include <zrk/Operation.h>
#include <zrk/Preferences.h>
#include <zrk/RecordOperation.h>
#include <zrk/Scene.h>
#include <zrk/UndoHistory.h>
#include <zrk/WorldObserver.h>
#include <zrk/illustration/ComponentLoader.h>
#include <zrk/illustration/ItemsList.h>

namespace {

using du::SmartPtr;
using zrk::Observable;
using zrk::World;

class RecordingWorldObserver final : public zrk::WorldObserver {
public:
  explicit RecordingWorldObserver(std::string& log) : log_(log) {}
  void OnLanguageChanged() override {
    log_ += "language " + du::Localizer::GetCurrentLanguage() + ";";
    if (reaction) reaction();
  }
  void OnAnnoSetTableChanged() override { log_ += "world table;"; }
  void OnSceneAdded(const SmartPtr<zrk::Scene>&) override { log_ += "scene;"; }
  void OnWorldDestroy() override { log_ += "destroy;"; }

  std::function<void()> reaction;

private:
  std::string& log_;
};

class RecordingTableObserver final : public zrk::AnnoSetTableObserver {
public:
  explicit RecordingTableObserver(std::string& log) : log_(log) {}
  void OnBeginChange() override { log_ += "begin;"; }
  void OnTableChanged() override { log_ += "table;"; }
  void OnEndChange() override { log_ += "end;"; }

private:
  std::string& log_;
};

class WorldTest : public testing::Test {
protected:
  WorldTest() { World::SetWorld(world_); }
  ~WorldTest() override {
    World::SetWorld(nullptr);
    du::Localizer::SetCurrentLanguage("en");
  }

  std::string log_, otherLog_;
  SmartPtr<World> world_ = zrk::MakeObject<World>();
};

TEST_F(WorldTest, TellsObserversOfTheLanguageAfterTheChange) {
  const SmartPtr<RecordingWorldObserver> observer(new RecordingWorldObserver(log_));
  world_->RegisterObserver(observer, true);
  world_->RegisterObserver(observer, true);
  world_->RegisterObserver(nullptr, true);
  EXPECT_EQ(world_->GetObserverCount(), 1U);
  world_->ChangeLanguage("fr");
  EXPECT_EQ(log_, "language fr;");
  world_->DeregisterObserver(observer);
  world_->DeregisterObserver(observer);
  world_->ChangeLanguage("de");
  EXPECT_EQ(log_, "language fr;");
}

TEST_F(WorldTest, ObserverMayLeaveInsideItsNotification) {
  const SmartPtr<RecordingWorldObserver> first(new RecordingWorldObserver(log_));
  const SmartPtr<RecordingWorldObserver> second(new RecordingWorldObserver(log_));
  first->reaction = [&] {
    // From another thread, which hangs if deregistering waits for the notification under way.
    std::thread([&] { world_->DeregisterObserver(first); }).join();
  };
  world_->RegisterObserver(first, true);
  world_->RegisterObserver(second, true);
  world_->ChangeLanguage("ja");
  EXPECT_EQ(log_, "language ja;language ja;");
  EXPECT_EQ(world_->GetObserverCount(), 1U);
}

TEST_F(WorldTest, OtherThreadsReachOnlyObserversThatAskedForIt) {
  const SmartPtr<RecordingWorldObserver> hostOnly(new RecordingWorldObserver(log_));
  const SmartPtr<RecordingWorldObserver> everywhere(new RecordingWorldObserver(otherLog_));
  world_->RegisterObserver(hostOnly, false);
  world_->RegisterObserver(everywhere, true);
  std::thread([this] { world_->AnnounceScene(zrk::MakeObject<zrk::Scene>()); }).join();
  EXPECT_EQ(log_, "");
  EXPECT_EQ(otherLog_, "scene;");
}

TEST_F(WorldTest, ShutdownGoesInOrderAndOnce) {
  class LoggingTask final : public du::Task {
  public:
    explicit LoggingTask(std::string& log) : log_(log) {}
    void Run() override { log_ += "task;"; }

  private:
    std::string& log_;
  };
  const SmartPtr<RecordingWorldObserver> observer(new RecordingWorldObserver(log_));
  world_->RegisterObserver(observer, true);
  const auto scene = zrk::MakeObject<zrk::Scene>();
  zrk::RecordOperation(zrk::MakeObject<zrk::Operation>("name", scene, true));
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
  const SmartPtr<RecordingTableObserver> observer(new RecordingTableObserver(log_));
  const SmartPtr<RecordingWorldObserver> worldObserver(new RecordingWorldObserver(log_));
  table->RegisterObserver(observer);
  world_->RegisterObserver(worldObserver, true);
  table->ChangeTable();
  EXPECT_EQ(log_, "begin;table;world table;end;");
  log_.clear();
  table->BeginUpdate();
  table->ChangeTable();
  table->ChangeTable();
  table->EndUpdate();
  EXPECT_EQ(log_, "begin;table;world table;table;world table;end;");
  table->EndUpdate();
  table->UnregisterObserver(observer);
  EXPECT_EQ(table->GetObserverCount(), 0U);
}

class CountingObservable final : public Observable {
public:
  int begun = 0;
  int ended = 0;
  bool fails = false;

private:
  void OnUpdateBegun() override { ++begun; }
  void OnUpdateEnded() override {
    ++ended;
    if (fails) throw std::bad_alloc();
  }
};

TEST(UpdateGroupTest, NestedGroupsCloseOnceWhicheverWayTheyAreLeft) {
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
}

TEST(UpdateGroupTest, SurvivesAnObserverThatThrowsAndAMissingList) {
  CountingObservable observed;
  observed.fails = true;
  { const Observable::UpdateGroup group(observed); }
  EXPECT_EQ(observed.ended, 1);
  EXPECT_FALSE(observed.IsUpdating());
  const Observable::UpdateGroup nothing{SmartPtr<zrk::illustration::ItemsList>()};
}

TEST(KernelTest, RecordsWithoutOwningAndForgetsTheDead) {
  std::string log;
  const long before = du::RefCounted::GetLiveObjectCount();
  SmartPtr<RecordingWorldObserver> observer(new RecordingWorldObserver(log));
  observer->ManageObject(nullptr);
  EXPECT_FALSE(observer->IsManaged());
  {
    zrk::Kernel kernel;
    zrk::Kernel::SetKernel(&kernel);
    observer->ManageObject(zrk::Kernel::GetKernel());
    observer->ManageObject(zrk::Kernel::GetKernel());
    EXPECT_TRUE(kernel.IsManaged(*observer));
    EXPECT_EQ(observer->GetReferenceCount(), 1U);
    const SmartPtr<RecordingWorldObserver> shortLived(new RecordingWorldObserver(log));
    shortLived->ManageObject(&kernel);
  }
  EXPECT_EQ(zrk::Kernel::GetKernel(), nullptr);
  EXPECT_FALSE(observer->IsManaged());
  observer.Reset();
  EXPECT_EQ(du::RefCounted::GetLiveObjectCount(), before);
}

TEST(PreferencesTest, UnknownNamesAreFalseAndEmpty) {
  const SmartPtr<zrk::Preferences> preferences(new zrk::Preferences);
  EXPECT_FALSE(preferences->GetBool("Annotations/Any"));
  EXPECT_EQ(preferences->GetString("Annotations/Any"), "");
  preferences->SetBool("Annotations/Any", true);
  preferences->SetString("Annotations/Any", "text");
  EXPECT_TRUE(preferences->GetBool("Annotations/Any"));
  EXPECT_EQ(preferences->GetString("Annotations/Any"), "text");
}

TEST(AsyncEventTest, CallerWaitsForCompletionOnAnotherThread) {
  const auto event = zrk::MakeObject<zrk::AsyncEvent>();
  EXPECT_FALSE(event->WaitComplete(1));
  std::thread runner([&event] {
    event->Progress(10);
    event->Progress(255);
    event->Complete();
  });
  EXPECT_TRUE(event->WaitComplete(20000));
  EXPECT_EQ(event->GetProgress(), (std::vector<unsigned char>{10, 255}));
  EXPECT_EQ(event->GetCompleteCount(), 1U);
  runner.join();
}

TEST(ComponentLoaderTest, SaysWhatCannotBeLoadedAndWhy) {
  std::string error;
  EXPECT_FALSE(zrk::illustration::ComponentLoader::Load("/no/such/library.so", error));
  EXPECT_NE(error.find("/no/such/library.so"), std::string::npos);
  EXPECT_FALSE(zrk::illustration::ComponentLoader::Load("libm.so.6", error));
  EXPECT_NE(error.find("ZRDllInit"), std::string::npos);
  EXPECT_FALSE(zrk::illustration::ComponentLoader::IsLoaded());
}

}  // namespace
