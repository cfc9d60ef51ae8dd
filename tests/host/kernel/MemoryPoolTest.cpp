#include <zrk/MemoryPool.h>

#include <array>
#include <set>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <zrk/AddressArena.h>
#include <zrk/MakeObject.h>
#include <zrk/Object.h>
#include <zrk/ObjectWithRWLock.h>

namespace {

using zrk::AddressArena;
using zrk::MemoryPool;

class MemoryPoolTest : public testing::Test {
protected:
  ~MemoryPoolTest() override {
    MemoryPool::FailNext(0);
    MemoryPool::LimitToThisThread(false);
    EXPECT_EQ(MemoryPool::GetLiveCount(), liveBefore_);
  }

  /// Which of the next allocations succeed: '+' or '-'.
  static std::string Allocate(int count) {
    std::string outcome;
    for (int i = 0; i < count; ++i) {
      const du::SmartPtr<zrk::Object> object(new zrk::Object);
      outcome += object ? '+' : '-';
    }
    return outcome;
  }

private:
  const std::size_t liveBefore_ = MemoryPool::GetLiveCount();
};

TEST_F(MemoryPoolTest, FailsExactlyTheArmedAllocations) {
  MemoryPool::FailNext(2);
  EXPECT_EQ(Allocate(4), "--++");
  EXPECT_EQ(MemoryPool::GetInjectedCount(), 2U);
  MemoryPool::FailAfter(2, 1);
  EXPECT_EQ(Allocate(5), "++-++");
  EXPECT_EQ(MemoryPool::GetInjectedCount(), 1U);
  MemoryPool::FailAlways(true);
  EXPECT_EQ(Allocate(3), "---");
  MemoryPool::FailAlways(false);
  EXPECT_EQ(Allocate(1), "+");
  EXPECT_EQ(MemoryPool::GetInjectedCount(), 3U);
}

TEST_F(MemoryPoolTest, CountsAllocationsAndNotFaults) {
  const std::size_t live = MemoryPool::GetLiveCount();
  const std::size_t total = MemoryPool::GetTotalCount();
  MemoryPool::FailAfter(1, 1);
  const du::SmartPtr<zrk::Object> kept(new zrk::Object);
  EXPECT_EQ(Allocate(2), "-+");
  EXPECT_EQ(MemoryPool::GetLiveCount(), live + 1);
  EXPECT_EQ(MemoryPool::GetTotalCount(), total + 2);
}

TEST_F(MemoryPoolTest, HostObjectsNeitherFailNorUseUpTheInjection) {
  MemoryPool::FailAfter(1, 1);
  EXPECT_TRUE(zrk::MakeObject<zrk::Object>());
  const auto locked = zrk::MakeObject<zrk::ObjectWithRWLock>();
  EXPECT_NE(locked->GetReadWriteLock(), nullptr);
  EXPECT_EQ(Allocate(3), "+-+");
}

TEST_F(MemoryPoolTest, ObjectOfTheComponentStillGetsItsLockFromTheHost) {
  MemoryPool::FailAfter(1, 1);
  const du::SmartPtr<zrk::ObjectWithRWLock> object(new zrk::ObjectWithRWLock);
  ASSERT_TRUE(object);
  EXPECT_NE(object->GetReadWriteLock(), nullptr);
  EXPECT_EQ(MemoryPool::GetInjectedCount(), 0U);
}

TEST_F(MemoryPoolTest, LimitedInjectionSparesOtherThreads) {
  MemoryPool::LimitToThisThread(true);
  MemoryPool::FailAlways(true);
  std::string elsewhere;
  std::thread([&elsewhere] { elsewhere = Allocate(3); }).join();
  EXPECT_EQ(elsewhere, "+++");
  EXPECT_EQ(Allocate(1), "-");
  MemoryPool::LimitToThisThread(false);
  std::thread([&elsewhere] { elsewhere = Allocate(3); }).join();
  EXPECT_EQ(elsewhere, "---");
}

class AddressArenaTest : public MemoryPoolTest {
protected:
  static constexpr std::size_t kSlots = 5000;

  AddressArena arena_{100, kSlots};

  std::vector<void*> AllocateMany(std::size_t count) {
    std::vector<void*> memory;
    for (std::size_t i = 0; i < count; ++i) memory.push_back(arena_.Allocate(100));
    return memory;
  }
  void FreeAll(const std::vector<void*>& memory) {
    for (void* slot : memory) arena_.Free(slot);
  }
};

TEST_F(AddressArenaTest, HandsOutAscendingWritableAddresses) {
  const std::vector<void*> memory = AllocateMany(kSlots);
  for (std::size_t i = 0; i < memory.size(); ++i) {
    ASSERT_NE(memory[i], nullptr);
    static_cast<char*>(memory[i])[99] = 1;
    if (i > 0) {
      ASSERT_GE(static_cast<char*>(memory[i]) - static_cast<char*>(memory[i - 1]), 100);
    }
  }
  FreeAll(memory);
}

TEST_F(AddressArenaTest, ReusesTheLowestFreeSlotFirst) {
  std::vector<void*> memory = AllocateMany(4500);
  const std::array<std::size_t, 6> freed = {4400, 70, 4223, 3, 64, 4096};
  for (const std::size_t index : freed) arena_.Free(memory[index]);
  for (const std::size_t index : {3U, 64U, 70U, 4096U, 4223U, 4400U}) {
    EXPECT_EQ(arena_.Allocate(10), memory[index]) << index;
  }
  void* next = arena_.Allocate(10);
  EXPECT_GT(next, memory.back());
  memory.push_back(next);
  FreeAll(memory);
}

TEST_F(AddressArenaTest, FallsBackToThePoolWhenItIsFullOrTheObjectTooLarge) {
  std::vector<void*> memory = AllocateMany(kSlots + 3);
  memory.push_back(arena_.Allocate(arena_.GetSlotSize() + 1));
  EXPECT_EQ(std::set<void*>(memory.begin(), memory.end()).size(), memory.size());
  EXPECT_EQ(std::set<void*>(memory.begin(), memory.end()).count(nullptr), 0U);
  FreeAll(memory);
  arena_.Free(nullptr);
}

TEST_F(AddressArenaTest, HonoursInjectedFaultsOnceAnAllocation) {
  MemoryPool::FailAfter(1, 2);
  const std::vector<void*> memory = AllocateMany(4);
  EXPECT_NE(memory[0], nullptr);
  EXPECT_EQ(memory[1], nullptr);
  EXPECT_EQ(memory[2], nullptr);
  EXPECT_GT(memory[3], memory[0]);
  EXPECT_EQ(MemoryPool::GetInjectedCount(), 2U);
  MemoryPool::FailAfter(1, 1);
  void* large = arena_.Allocate(arena_.GetSlotSize() + 1);
  EXPECT_NE(large, nullptr);
  EXPECT_EQ(arena_.Allocate(100), nullptr);
  arena_.Free(large);
  FreeAll(memory);
}

TEST_F(AddressArenaTest, GivesEachThreadItsOwnSlots) {
  std::array<std::vector<void*>, 4> memory;
  std::vector<std::thread> threads;
  for (auto& own : memory) {
    threads.emplace_back([this, &own] {
      for (int round = 0; round < 20; ++round) {
        FreeAll(own);
        own = AllocateMany(50);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  std::set<void*> all;
  for (const auto& own : memory) all.insert(own.begin(), own.end());
  EXPECT_EQ(all.size(), 200U);
  for (const auto& own : memory) FreeAll(own);
}

}  // namespace
