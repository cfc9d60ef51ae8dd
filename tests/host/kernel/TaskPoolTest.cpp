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
  std::promise<void> first, second;
  std::atomic<bool> inlineRun{false};
  const std::thread::id inserter = std::this_thread::get_id();
  // Each task waits for the other one: with a single thread they would never end.
  const auto meet = [&](std::promise<void>& mine, std::promise<void>& other) {
    inlineRun = inlineRun || std::this_thread::get_id() == inserter;
    mine.set_value();
    other.get_future().wait();
  };
  EXPECT_TRUE(pool_->InsertTask(MakeTask([&] { meet(first, second); })));
  EXPECT_TRUE(pool_->InsertTask(MakeTask([&] { meet(second, first); })));
  pool_->WaitIdle();
  EXPECT_FALSE(inlineRun);
}

TEST_F(TaskPoolTest, ManualModeRunsWhatWaitsInOrderAndOnDemand) {
  pool_->SetManual(true);
  std::vector<int> order;
  for (int i = 0; i < 5; ++i) {
    pool_->InsertTask(MakeTask([&order, this, i] {
      order.push_back(i);
      if (i == 0) pool_->InsertTask(MakeTask([&order] { order.push_back(99); }));
    }));
  }
  pool_->WaitIdle();
  EXPECT_TRUE(order.empty());
  EXPECT_EQ(pool_->RunPending(), 5U);
  EXPECT_EQ(order, (std::vector<int>{0, 1, 2, 3, 4}));
  EXPECT_EQ(pool_->GetPendingCount(), 1U);
  pool_->SetManual(false);
  pool_->WaitIdle();
  EXPECT_EQ(order.back(), 99);
}

TEST_F(TaskPoolTest, SurvivesExceptions) {
  std::atomic<int> done{0};
  for (int i = 0; i < 4; ++i) {
    pool_->InsertTask(MakeTask([] { throw std::bad_alloc(); }));
    pool_->InsertTask(MakeTask([] { throw 1; }));
    pool_->InsertTask(MakeTask([&done] { ++done; }));
  }
  pool_->WaitIdle();
  EXPECT_EQ(done, 4);
  EXPECT_EQ(pool_->GetFailedCount(), 8U);
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
    EXPECT_EQ(late->GetReferenceCount(), 1U);
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
