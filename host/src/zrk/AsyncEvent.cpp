#include <zrk/AsyncEvent.h>

#include <chrono>

namespace zrk {

AsyncEvent::AsyncEvent() = default;

AsyncEvent::~AsyncEvent() = default;

void AsyncEvent::Progress(unsigned char percent) {
  const dp::MutexGuard guard(mutex_);
  progress_.push_back(percent);
}

void AsyncEvent::Complete() {
  const dp::MutexGuard guard(mutex_);
  ++completeCount_;
  completed_.notify_all();
}

std::vector<unsigned char> AsyncEvent::GetProgress() const {
  const dp::MutexGuard guard(mutex_);
  return progress_;
}

bool AsyncEvent::WaitComplete(int milliseconds) const {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
  const dp::MutexGuard guard(mutex_);
  while (completeCount_ == 0) {
    if (completed_.wait_until(mutex_, end) == std::cv_status::timeout) break;
  }
  return completeCount_ > 0;
}

unsigned AsyncEvent::GetCompleteCount() const {
  const dp::MutexGuard guard(mutex_);
  return completeCount_;
}

}  // namespace zrk
