#include <zrk/MemoryPool.h>

#include <array>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <zrk/AddressArena.h>
#include <zrk/MakeObject.h>
#include <zrk/ObjectWithRWLock.h>

namespace {

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
    for (int i = 0; i < count; ++i) outcome += du::SmartPtr<zrk::Object>(new zrk::Object) ? '+' : '-';
    return outcome;
  }
  static std::string AllocateElsewhere(int count) {
    std::string outcome;
    std::thread([&] { outcome = Allocate(count); }).join();
    return outcome;
  }

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
  const std::size_t total = MemoryPool::GetTotalCount();
  MemoryPool::FailAfter(1, 1);
  const du::SmartPtr<zrk::Object> kept(new zrk::Object);
  EXPECT_EQ(Allocate(2), "-+");
  EXPECT_EQ(MemoryPool::GetLiveCount(), liveBefore_ + 1);
  EXPECT_EQ(MemoryPool::GetTotalCount(), total + 2);
}

TEST_F(MemoryPoolTest, HostObjectsAndTheirLocksNeitherFailNorUseUpTheInjection) {
  MemoryPool::FailAfter(1, 1);
  EXPECT_NE(zrk::MakeObject<zrk::ObjectWithRWLock>()->GetReadWriteLock(), nullptr);
  EXPECT_EQ(Allocate(3), "+-+");
  MemoryPool::FailAfter(1, 1);
  const du::SmartPtr<zrk::ObjectWithRWLock> ofTheComponent(new zrk::ObjectWithRWLock);
  ASSERT_TRUE(ofTheComponent);
  EXPECT_NE(ofTheComponent->GetReadWriteLock(), nullptr);
  EXPECT_EQ(MemoryPool::GetInjectedCount(), 0U);
}

TEST_F(MemoryPoolTest, LimitedInjectionSparesOtherThreads) {
  MemoryPool::LimitToThisThread(true);
  MemoryPool::FailAlways(true);
  EXPECT_EQ(AllocateElsewhere(3), "+++");
  EXPECT_EQ(Allocate(1), "-");
  MemoryPool::LimitToThisThread(false);
  EXPECT_EQ(AllocateElsewhere(3), "---");
}

class AddressArenaTest : public MemoryPoolTest {
protected:
  static constexpr std::size_t kSlots = 5000;

  std::vector<void*> AllocateMany(std::size_t count) {
    std::vector<void*> memory;
    for (std::size_t i = 0; i < count; ++i) memory.push_back(arena_.Allocate(100));
    return memory;
  }
  void FreeAll(const std::vector<void*>& memory) {
    for (void* slot : memory) arena_.Free(slot);
  }

  zrk::AddressArena arena_{100, kSlots};
};

TEST_F(AddressArenaTest, HandsOutAscendingWritableAddressesAndTheLowestFreeOneFirst) {
  std::vector<void*> memory = AllocateMany(4500);
  const char* end = nullptr;
  for (void* slot : memory) {
    ASSERT_GE(slot, end);
    static_cast<char*>(slot)[99] = 1;
    end = static_cast<char*>(slot) + 100;
  }
  for (const std::size_t index : {4400U, 70U, 4223U, 3U, 64U, 4096U}) arena_.Free(memory[index]);
  for (const std::size_t index : {3U, 64U, 70U, 4096U, 4223U, 4400U}) {
    EXPECT_EQ(arena_.Allocate(10), memory[index]) << index;
  }
  memory.push_back(arena_.Allocate(10));
  EXPECT_GE(memory.back(), end);
  FreeAll(memory);
}

TEST_F(AddressArenaTest, FallsBackToThePoolWhenItIsFullOrTheObjectTooLarge) {
  std::vector<void*> memory = AllocateMany(kSlots + 3);
  memory.push_back(arena_.Allocate(arena_.GetSlotSize() + 1));
  const std::set<void*> different(memory.begin(), memory.end());
  EXPECT_EQ(different.size(), memory.size());
  EXPECT_EQ(different.count(nullptr), 0U);
  FreeAll(memory);
  arena_.Free(nullptr);
}

TEST_F(AddressArenaTest, HonoursInjectedFaultsOnceAnAllocation) {
  MemoryPool::FailAfter(1, 2);
  std::vector<void*> memory = AllocateMany(4);
  EXPECT_NE(memory[0], nullptr);
  EXPECT_EQ(memory[1], nullptr);
  EXPECT_EQ(memory[2], nullptr);
  EXPECT_GT(memory[3], memory[0]);
  EXPECT_EQ(MemoryPool::GetInjectedCount(), 2U);
  MemoryPool::FailAfter(1, 1);
  memory.push_back(arena_.Allocate(arena_.GetSlotSize() + 1));
  EXPECT_NE(memory.back(), nullptr);
  EXPECT_EQ(arena_.Allocate(100), nullptr);
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
