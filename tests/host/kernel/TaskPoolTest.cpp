#include <du/TaskPool.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <new>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <du/Task.h>

namespace {

using du::SmartPtr;
using du::TaskPool;

class FunctionTask final : public du::Task {
public:
  explicit FunctionTask(std::function<void()> function) : function_(std::move(function)) {}
  void Run() override { function_(); }

private:
  std::function<void()> function_;
};

SmartPtr<du::Task> MakeTask(std::function<void()> function) {
  return new FunctionTask(std::move(function));
}

TEST(TaskPoolTest, RunsOnTwoThreadsOfItsOwn) {
  const SmartPtr<TaskPool> pool(new TaskPool);
  std::promise<void> first, second;
  std::atomic<bool> inlineRun{false};
  const std::thread::id inserter = std::this_thread::get_id();
  // Each task waits for the other one: with a single thread they would never end.
  const auto meet = [&](std::promise<void>& mine, std::promise<void>& other) {
    inlineRun = inlineRun || std::this_thread::get_id() == inserter;
    mine.set_value();
    other.get_future().wait();
  };
  EXPECT_TRUE(pool->InsertTask(MakeTask([&] { meet(first, second); })));
  EXPECT_TRUE(pool->InsertTask(MakeTask([&] { meet(second, first); })));
  pool->WaitIdle();
  EXPECT_FALSE(inlineRun);
}

TEST(TaskPoolTest, ManualModeRunsWhatWaitsInOrderAndOnDemand) {
  const SmartPtr<TaskPool> pool(new TaskPool);
  pool->SetManual(true);
  std::vector<int> order;
  for (int i = 0; i < 5; ++i) {
    pool->InsertTask(MakeTask([&order, &pool, i] {
      order.push_back(i);
      if (i == 0) pool->InsertTask(MakeTask([&order] { order.push_back(99); }));
    }));
  }
  pool->WaitIdle();
  EXPECT_TRUE(order.empty());
  EXPECT_EQ(pool->RunPending(), 5U);
  EXPECT_EQ(order, (std::vector<int>{0, 1, 2, 3, 4}));
  EXPECT_EQ(pool->GetPendingCount(), 1U);
  pool->SetManual(false);
  pool->WaitIdle();
  EXPECT_EQ(order.back(), 99);
}

TEST(TaskPoolTest, SurvivesExceptions) {
  const SmartPtr<TaskPool> pool(new TaskPool);
  std::atomic<int> done{0};
  for (int i = 0; i < 4; ++i) {
    pool->InsertTask(MakeTask([] { throw std::bad_alloc(); }));
    pool->InsertTask(MakeTask([] { throw 1; }));
    pool->InsertTask(MakeTask([&done] { ++done; }));
  }
  pool->WaitIdle();
  EXPECT_EQ(done, 4);
  EXPECT_EQ(pool->GetFailedCount(), 8U);
}

TEST(TaskPoolTest, LetsGoOfATaskBeforeItCountsAsDone) {
  class SlowlyEndingTask final : public du::Task {
  public:
    ~SlowlyEndingTask() override { std::this_thread::sleep_for(std::chrono::milliseconds(30)); }
    void Run() override {}
  };
  const SmartPtr<TaskPool> pool(new TaskPool);
  const long before = du::RefCounted::GetLiveObjectCount();
  pool->InsertTask(new SlowlyEndingTask);
  pool->WaitIdle();
  EXPECT_EQ(du::RefCounted::GetLiveObjectCount(), before);
}

TEST(TaskPoolTest, ShutdownFinishesWhatWaitsAndRefusesTheRest) {
  for (const bool manual : {false, true}) {
    const SmartPtr<TaskPool> pool(new TaskPool);
    pool->SetManual(manual);
    std::atomic<int> done{0};
    for (int i = 0; i < 10; ++i) pool->InsertTask(MakeTask([&done] { ++done; }));
    pool->Shutdown();
    EXPECT_EQ(done, 10) << manual;
    const SmartPtr<du::Task> late = MakeTask([&done] { ++done; });
    EXPECT_FALSE(pool->InsertTask(late));
    EXPECT_EQ(late->GetReferenceCount(), 1U);
    EXPECT_FALSE(pool->InsertTask(nullptr));
    pool->Shutdown();
    EXPECT_EQ(pool->RunPending(), 0U);
  }
}

TEST(TaskPoolTest, MayEndOnItsOwnThread) {
  const long before = du::RefCounted::GetLiveObjectCount();
  SmartPtr<TaskPool> pool(new TaskPool);
  std::promise<void> dropped;
  pool->InsertTask(MakeTask([held = pool, &dropped]() mutable {
    dropped.get_future().wait();
    held.Reset();
  }));
  pool.Reset();
  dropped.set_value();
  while (du::RefCounted::GetLiveObjectCount() > before) std::this_thread::yield();
}

}  // namespace
