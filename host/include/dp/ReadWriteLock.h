#pragma once

#include <condition_variable>
#include <thread>
#include <vector>

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Export.h>

namespace dp {

/// Many readers or one writer, re-entrant in every combination. A thread that holds the lock in any mode is granted a
/// further read at once, even when another thread waits for writing; threads that hold nothing queue behind a waiting
/// writer. A reader may also become the writer: it waits until it is the only reader left. Two readers that both want
/// that can never be served; the second one ends the process with a message, as does unlocking what is not held.
class ZR_HOST_API ZR_CAPABILITY("read-write lock") ReadWriteLock {
public:
  ReadWriteLock();
  virtual ~ReadWriteLock();
  ReadWriteLock(const ReadWriteLock&) = delete;
  ReadWriteLock& operator=(const ReadWriteLock&) = delete;

  void ReadLock() ZR_ACQUIRE_SHARED();
  void ReadUnlock() ZR_RELEASE_SHARED();
  void WriteLock() ZR_ACQUIRE();
  void WriteUnlock() ZR_RELEASE();

  [[nodiscard]] bool IsHeldByThisThread() const;
  [[nodiscard]] bool IsWriteHeldByThisThread() const;

  /// Holds a lock for reading in its scope; a null lock means running unlocked.
  struct ZR_SCOPED_CAPABILITY ZR_HOST_API ReadGuard {
    explicit ReadGuard(ReadWriteLock* lock) ZR_ACQUIRE_SHARED(lock);
    ~ReadGuard() ZR_RELEASE_GENERIC();
    ReadGuard(const ReadGuard&) = delete;
    ReadGuard& operator=(const ReadGuard&) = delete;

  private:
    ReadWriteLock* const lock_;
  };

  /// Holds a lock for writing in its scope; a null lock means running unlocked.
  struct ZR_SCOPED_CAPABILITY ZR_HOST_API WriteGuard {
    explicit WriteGuard(ReadWriteLock* lock) ZR_ACQUIRE(lock);
    ~WriteGuard() ZR_RELEASE();
    WriteGuard(const WriteGuard&) = delete;
    WriteGuard& operator=(const WriteGuard&) = delete;

  private:
    ReadWriteLock* const lock_;
  };

private:
  struct Holder {
    std::thread::id thread;
    unsigned reads = 0;
    unsigned writes = 0;
  };

  [[nodiscard]] Holder* FindThisThread() const ZR_REQUIRES(mutex_);
  Holder& AddThisThread() ZR_REQUIRES(mutex_);
  [[nodiscard]] bool IsWriterActive() const ZR_REQUIRES(mutex_);
  void WaitForOthersToLeave() ZR_REQUIRES(mutex_);
  void RemoveIfIdle(Holder& holder) ZR_REQUIRES(mutex_);

  mutable Mutex mutex_;
  std::condition_variable_any changed_;
  mutable std::vector<Holder> holders_ ZR_GUARDED_BY(mutex_);
  unsigned waitingWriters_ ZR_GUARDED_BY(mutex_) = 0;
  bool upgradeWaits_ ZR_GUARDED_BY(mutex_) = false;
};

}  // namespace dp
