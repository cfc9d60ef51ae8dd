#pragma once

#include <condition_variable>
#include <vector>

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Export.h>
#include <zrk/Object.h>

namespace zrk {

/// Progress and completion of a background run, for the caller that started it. [any-thread]
class ZR_HOST_API AsyncEvent : public Object {
public:
  AsyncEvent();
  ~AsyncEvent() override;

  virtual void Progress(unsigned char percent);
  virtual void Complete();

  /// Every progress reported so far, in order.
  [[nodiscard]] std::vector<unsigned char> GetProgress() const;
  /// Waits for Complete; false when it did not come within that time.
  [[nodiscard]] bool WaitComplete(int milliseconds) const;
  [[nodiscard]] unsigned GetCompleteCount() const;

private:
  mutable dp::Mutex mutex_;
  mutable std::condition_variable_any completed_;
  std::vector<unsigned char> progress_ ZR_GUARDED_BY(mutex_);
  unsigned completeCount_ ZR_GUARDED_BY(mutex_) = 0;
};

}  // namespace zrk
