#include <du/TaskPool.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <latch>
#include <thread>

#include <gtest/gtest.h>

#include <du/Task.h>

namespace {

using du::SmartPtr;
using du::TaskPool;

SmartPtr<du::Task> MakeTask(std::function<void()> function) {
  struct FunctionTask final : du::Task {
    explicit FunctionTask(std::function<void()> body) : run(std::move(body)) {}
    void Run() override { run(); }
    const std::function<void()> run;
  };
  return new FunctionTask(std::move(function));
}

class TaskPoolTest : public testing::Test {
protected:
  const long liveBefore_ = du::RefCounted::GetLiveObjectCount();
  const SmartPtr<TaskPool> pool_{new TaskPool};
};

TEST_F(TaskPoolTest, RunsOnTwoThreadsOfItsOwn) {
  std::latch bothRun(2);  // with a single thread, or on this one, the tasks would never end
  for (int i = 0; i < 2; ++i) EXPECT_TRUE(pool_->InsertTask(MakeTask([&] { bothRun.arrive_and_wait(); })));
  pool_->WaitIdle();
  EXPECT_TRUE(bothRun.try_wait());
}

TEST_F(TaskPoolTest, SurvivesAndCountsExceptions) {
  std::atomic<int> done{0};
  for (int i = 0; i < 4; ++i) {
    pool_->InsertTask(MakeTask([] { throw 1; }));
    pool_->InsertTask(MakeTask([&done] { ++done; }));
  }
  pool_->WaitIdle();
  EXPECT_EQ(done, 4);
  EXPECT_EQ(pool_->GetFailedCount(), 4U);
}

TEST_F(TaskPoolTest, LetsGoOfATaskBeforeItCountsAsDone) {
  struct SlowlyEndingTask final : du::Task {
    ~SlowlyEndingTask() override { std::this_thread::sleep_for(std::chrono::milliseconds(30)); }
    void Run() override {}
  };
  pool_->InsertTask(new SlowlyEndingTask);
  pool_->WaitIdle();
  EXPECT_EQ(du::RefCounted::GetLiveObjectCount(), liveBefore_ + 1);
}

TEST_F(TaskPoolTest, ShutdownFinishesWhatWaitsAndRefusesTheRest) {
  for (const bool manual : {false, true}) {
    const SmartPtr<TaskPool> pool(new TaskPool);
    pool->SetManual(manual);
    std::atomic<int> done{0};
    for (int i = 0; i < 10; ++i) pool->InsertTask(MakeTask([&done] { ++done; }));
    pool->Shutdown();
    EXPECT_EQ(done, 10) << manual;
    const SmartPtr<du::Task> late = MakeTask([&done] { ++done; });
    EXPECT_FALSE(pool->InsertTask(late));
    EXPECT_FALSE(pool->InsertTask(nullptr));
    pool->Shutdown();
    EXPECT_EQ(pool->RunPending(), 0U);
  }
}

TEST_F(TaskPoolTest, MayEndOnItsOwnThread) {
  SmartPtr<TaskPool> pool(new TaskPool);
  std::promise<void> dropped;
  pool->InsertTask(MakeTask([held = pool, &dropped]() mutable {
    dropped.get_future().wait();
    held.Reset();
  }));
  pool.Reset();
  dropped.set_value();
  while (du::RefCounted::GetLiveObjectCount() > liveBefore_ + 1) std::this_thread::yield();
}

}  // namespace
