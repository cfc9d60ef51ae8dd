#include <zrk/MemoryPool.h>

#include <functional>
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

TEST_F(MemoryPoolTest, FailsExactlyTheArmedAllocationsAndCountsThemAside) {
  const std::size_t total = MemoryPool::GetTotalCount();
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
  EXPECT_EQ(MemoryPool::GetTotalCount(), total + 7);
}

TEST_F(MemoryPoolTest, HostObjectsAndTheirLocksNeitherFailNorUseUpTheInjection) {
  MemoryPool::FailAfter(1, 1);
  EXPECT_NE(zrk::MakeObject<zrk::ObjectWithRWLock>()->GetReadWriteLock(), nullptr);
  const du::SmartPtr<zrk::ObjectWithRWLock> ofTheComponent(new zrk::ObjectWithRWLock);
  ASSERT_TRUE(ofTheComponent);
  EXPECT_NE(ofTheComponent->GetReadWriteLock(), nullptr);
  EXPECT_EQ(Allocate(2), "-+");
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

TEST_F(AddressArenaTest, FallsBackToThePoolAndHonoursInjectedFaultsOnceAnAllocation) {
  MemoryPool::FailAfter(2, 2);
  std::vector<void*> memory{arena_.Allocate(arena_.GetSlotSize() + 1), arena_.Allocate(100)};
  for (int i = 0; i < 2; ++i) EXPECT_EQ(arena_.Allocate(100), nullptr);
  EXPECT_EQ(MemoryPool::GetInjectedCount(), 2U);
  const std::vector<void*> rest = AllocateMany(kSlots + 3);
  memory.insert(memory.end(), rest.begin(), rest.end());
  const std::set<void*> different(memory.begin(), memory.end());
  EXPECT_EQ(different.size(), memory.size());
  EXPECT_EQ(different.count(nullptr), 0U);
  FreeAll(memory);
}

TEST_F(AddressArenaTest, GivesEachThreadItsOwnSlots) {
  std::vector<void*> mine, theirs;
  const auto work = [this](std::vector<void*>& own) {
    for (int round = 0; round < 40; ++round) {
      FreeAll(own);
      own = AllocateMany(50);
    }
  };
  std::thread other(work, std::ref(theirs));
  work(mine);
  other.join();
  mine.insert(mine.end(), theirs.begin(), theirs.end());
  EXPECT_EQ(std::set<void*>(mine.begin(), mine.end()).size(), 100U);
  FreeAll(mine);
}

}  // namespace
