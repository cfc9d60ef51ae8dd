#include <zrk/World.h>

#include <functional>
#include <new>
#include <string>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

#include <du/Localizer.h>
#include <du/Task.h>
#include <du/TaskPool.h>
#include <zrk/AnnoSetTable.h>
#include <zrk/MakeObject.h>
#include <zrk/Observable.h>
#include <zrk/Operation.h>
#include <zrk/Scene.h>
#include <zrk/UndoHistory.h>
#include <zrk/WorldObserver.h>
#include <zrk/illustration/ComponentLoader.h>

namespace {

using du::SmartPtr;
using zrk::MakeObject;
using zrk::Observable;

/// Writes down what the world says.
struct Recorder final : zrk::WorldObserver {
  void OnLanguageChanged() override {
    log += du::Localizer::GetCurrentLanguage() + ";";
    if (reaction) reaction();
  }
  void OnAnnoSetTableChanged() override { log += "table;"; }
  void OnSceneAdded(const SmartPtr<zrk::Scene>&) override { log += "scene;"; }
  void OnWorldDestroy() override { log += "destroy;"; }

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

TEST_F(WorldTest, TellsObserversUntilTheyLeaveAndFromOtherThreadsOnlyWhoAskedForIt) {
  for (const auto& observer : {observer_, observer_, SmartPtr<Recorder>()}) world_->RegisterObserver(observer, false);
  EXPECT_EQ(world_->GetObserverCount(), 1U);
  world_->RegisterObserver(other_, true);
  std::thread([this] { world_->AnnounceScene(MakeObject<zrk::Scene>()); }).join();
  world_->GetAnnoSetTable()->ChangeTable();
  observer_->reaction = [&] {
    // From another thread, which hangs if deregistering waits for the notification under way.
    std::thread([&] { world_->DeregisterObserver(observer_); }).join();
  };
  world_->ChangeLanguage("ja");
  world_->ChangeLanguage("de");
  EXPECT_EQ(log_, "table;ja;");
  EXPECT_EQ(other_->log, "scene;table;ja;de;");
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

struct ThrowingObservable final : Observable {
  std::string log;

  void OnUpdateBegun() override { log += "begun;"; }
  void OnUpdateEnded() override {
    log += "ended;";
    throw std::bad_alloc();
  }
};

TEST(UpdateGroupTest, NestedGroupsCloseOnceWhateverObserversThrow) {
  ThrowingObservable observed;
  {
    const Observable::UpdateGroup outer(observed);
    { const Observable::UpdateGroup inner(observed); }
    EXPECT_EQ(observed.log, "begun;");
  }
  EXPECT_EQ(observed.log, "begun;ended;");
  EXPECT_FALSE(observed.IsUpdating());
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
