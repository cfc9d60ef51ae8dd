#include <dp/ReadWriteLock.h>

#include <chrono>
#include <future>
#include <latch>
#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#if defined(__clang__)  // The analysis knows no re-entrant locks; nesting them is what is tested here.
#pragma clang diagnostic ignored "-Wthread-safety-analysis"
#endif

namespace {

using dp::ReadWriteLock;
using namespace std::chrono_literals;

constexpr auto kLong = 20s;    // more than any passing case needs
constexpr auto kShort = 50ms;  // enough for a wrongly granted request to come through

enum Mode { kRead, kWrite };

void Lock(ReadWriteLock& lock, Mode mode) ZR_NO_THREAD_SAFETY_ANALYSIS {
  mode == kRead ? lock.ReadLock() : lock.WriteLock();
}

void Unlock(ReadWriteLock& lock, Mode mode) ZR_NO_THREAD_SAFETY_ANALYSIS {
  mode == kRead ? lock.ReadUnlock() : lock.WriteUnlock();
}

/// Takes and gives back the lock on another thread.
std::future<void> Request(ReadWriteLock& lock, Mode mode) {
  return std::async(std::launch::async, [&lock, mode] {
    Lock(lock, mode);
    Unlock(lock, mode);
  });
}

bool IsGranted(const std::future<void>& request, std::chrono::milliseconds time) {
  return request.wait_for(time) == std::future_status::ready;
}

struct Nesting {
  const char* name;
  std::vector<Mode> taken, released;
};

TEST(ReadWriteLockTest, KeepsOthersOutUntilTheLastUnlock) {
  for (const Nesting& nesting : {Nesting{"read in read", {kRead, kRead, kRead}, {kRead, kRead, kRead}},
                                 Nesting{"write in write", {kWrite, kWrite}, {kWrite, kWrite}},
                                 Nesting{"read in write", {kWrite, kRead}, {kRead, kWrite}},
                                 Nesting{"write released before read", {kWrite, kRead}, {kWrite, kRead}},
                                 Nesting{"upgrade of the only reader", {kRead, kWrite}, {kWrite, kRead}}}) {
    SCOPED_TRACE(nesting.name);
    ReadWriteLock lock;
    for (const Mode mode : nesting.taken) Lock(lock, mode);
    const std::future<void> writer = Request(lock, kWrite);
    for (const Mode mode : nesting.released) {
      EXPECT_TRUE(lock.IsHeldByThisThread());
      EXPECT_FALSE(IsGranted(writer, kShort));
      Unlock(lock, mode);
    }
    EXPECT_FALSE(lock.IsHeldByThisThread());
    EXPECT_TRUE(IsGranted(writer, kLong));
  }
}

TEST(ReadWriteLockTest, NestedReadIsGrantedAndNewReaderQueuesWhenWriterWaits) {
  ReadWriteLock lock;
  std::future<void> writer, reader;
  {
    const ReadWriteLock::ReadGuard outer(&lock);
    EXPECT_TRUE(IsGranted(Request(lock, kRead), kLong)) << "readers share";
    EXPECT_FALSE(lock.IsWriteHeldByThisThread());
    writer = Request(lock, kWrite);
    ASSERT_FALSE(IsGranted(writer, kShort));
    const ReadWriteLock::ReadGuard inner(&lock);  // hangs here when nested readers queue
    reader = Request(lock, kRead);
    EXPECT_FALSE(IsGranted(reader, kShort));
  }
  EXPECT_TRUE(IsGranted(writer, kLong));
  EXPECT_TRUE(IsGranted(reader, kLong));
}

TEST(ReadWriteLockTest, OthersMayReadOnceTheWriteIsReleasedInsideARead) {
  ReadWriteLock lock;
  const ReadWriteLock::ReadGuard reading(&lock);
  {
    const ReadWriteLock::WriteGuard writing(&lock);
    EXPECT_TRUE(lock.IsWriteHeldByThisThread());
    std::future<void> reader = Request(lock, kRead);
    EXPECT_FALSE(IsGranted(reader, kShort));
    lock.WriteUnlock();
    EXPECT_TRUE(IsGranted(reader, kLong));
    lock.WriteLock();
  }
  const ReadWriteLock::ReadGuard unlockedReading(nullptr);
  const ReadWriteLock::WriteGuard unlockedWriting(nullptr);
}

TEST(ReadWriteLockTest, UpgradeWaitsForTheOtherReaders) {
  ReadWriteLock lock;
  std::future<void> upgrade;
  {
    const ReadWriteLock::ReadGuard other(&lock);
    upgrade = std::async(std::launch::async, [&lock] {
      const ReadWriteLock::ReadGuard reading(&lock);
      const ReadWriteLock::WriteGuard writing(&lock);
    });
    EXPECT_FALSE(IsGranted(upgrade, kShort));
  }
  EXPECT_TRUE(IsGranted(upgrade, kLong));
}

void UpgradeTwice() {
  ReadWriteLock lock;
  std::latch bothRead(2);
  const auto upgrade = [&] {
    lock.ReadLock();
    bothRead.arrive_and_wait();
    lock.WriteLock();
  };
  std::thread first(upgrade), second(upgrade);
  first.join();
  second.join();
}

TEST(ReadWriteLockDeathTest, EndsWithAMessageWhenItCouldOnlyHang) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(UpgradeTwice(), "two threads that read both wait to write");
  EXPECT_DEATH(Unlock(*std::make_unique<ReadWriteLock>(), kRead), "does not read");
  EXPECT_DEATH(Unlock(*std::make_unique<ReadWriteLock>(), kWrite), "does not write");
}

}  // namespace
