// Every thread that holds the lock has an entry with its counts of reads and writes; there are never more entries than
// threads inside, so they are searched linearly. Rules, in the order in which they are applied to a request:
//   1. a thread with an entry may read, and a thread that writes may write: granted at once, a count goes up;
//   2. a new reader waits while another thread writes or wants to write, so that writers do not starve;
//   3. a writer waits until no other thread has an entry. If it reads already, its own entry stays: nobody can write in
//      between. Two such upgraders would each wait for the other's entry for ever, which is reported instead.

#include <dp/ReadWriteLock.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace dp {

namespace {

[[noreturn]] void Fail(const char* what) {
  std::fprintf(stderr, "dp::ReadWriteLock: %s\n", what);
  std::abort();
}

}  // namespace

// Taking the lock needs no memory then, up to a number of threads inside that no host reaches: destructors take it.
ReadWriteLock::ReadWriteLock() {
  constexpr std::size_t kThreads = 64;
  holders_.reserve(kThreads);
}

ReadWriteLock::~ReadWriteLock() = default;

ReadWriteLock::Holder* ReadWriteLock::FindThisThread() const {
  const std::thread::id self = std::this_thread::get_id();
  const auto found =
      std::find_if(holders_.begin(), holders_.end(), [self](const Holder& holder) { return holder.thread == self; });
  return found == holders_.end() ? nullptr : &*found;
}

ReadWriteLock::Holder& ReadWriteLock::AddThisThread() {
  holders_.push_back({std::this_thread::get_id()});
  return holders_.back();
}

bool ReadWriteLock::IsWriterActive() const {
  return std::any_of(holders_.begin(), holders_.end(), [](const Holder& holder) { return holder.writes > 0; });
}

void ReadWriteLock::WaitForOthersToLeave() {
  const bool isUpgrade = FindThisThread() != nullptr;
  if (isUpgrade && upgradeWaits_) Fail("two threads that read both wait to write");
  upgradeWaits_ = upgradeWaits_ || isUpgrade;
  ++waitingWriters_;
  while (holders_.size() > (isUpgrade ? 1U : 0U)) changed_.wait(mutex_);
  --waitingWriters_;
  if (isUpgrade) upgradeWaits_ = false;
}

void ReadWriteLock::RemoveIfIdle(Holder& holder) {
  if (holder.reads > 0 || holder.writes > 0) return;
  holder = holders_.back();
  holders_.pop_back();
}

void ReadWriteLock::ReadLock() {
  const MutexGuard guard(mutex_);
  if (Holder* holder = FindThisThread()) {
    ++holder->reads;
    return;
  }
  while (waitingWriters_ > 0 || IsWriterActive()) changed_.wait(mutex_);
  ++AddThisThread().reads;
}

void ReadWriteLock::ReadUnlock() {
  const MutexGuard guard(mutex_);
  Holder* holder = FindThisThread();
  if (!holder || holder->reads == 0) Fail("read-unlocked by a thread that does not read");
  --holder->reads;
  RemoveIfIdle(*holder);
  if (waitingWriters_ > 0) changed_.notify_all();  // a reader that leaves lets nobody else in
}

void ReadWriteLock::WriteLock() {
  const MutexGuard guard(mutex_);
  if (Holder* holder = FindThisThread(); holder && holder->writes > 0) {
    ++holder->writes;
    return;
  }
  WaitForOthersToLeave();
  Holder* holder = FindThisThread();
  ++(holder ? *holder : AddThisThread()).writes;
}

void ReadWriteLock::WriteUnlock() {
  const MutexGuard guard(mutex_);
  Holder* holder = FindThisThread();
  if (!holder || holder->writes == 0) Fail("write-unlocked by a thread that does not write");
  --holder->writes;
  RemoveIfIdle(*holder);
  changed_.notify_all();
}

bool ReadWriteLock::IsHeldByThisThread() const {
  const MutexGuard guard(mutex_);
  return FindThisThread() != nullptr;
}

bool ReadWriteLock::IsWriteHeldByThisThread() const {
  const MutexGuard guard(mutex_);
  const Holder* holder = FindThisThread();
  return holder && holder->writes > 0;
}

ReadWriteLock::ReadGuard::ReadGuard(ReadWriteLock* lock) : lock_(lock) {
  if (lock_) lock_->ReadLock();
}

ReadWriteLock::ReadGuard::~ReadGuard() {
  if (lock_) lock_->ReadUnlock();
}

ReadWriteLock::WriteGuard::WriteGuard(ReadWriteLock* lock) : lock_(lock) {
  if (lock_) lock_->WriteLock();
}

ReadWriteLock::WriteGuard::~WriteGuard() {
  if (lock_) lock_->WriteUnlock();
}

}  // namespace dp
