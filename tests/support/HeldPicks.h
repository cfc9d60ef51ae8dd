#pragma once

#include <mutex>
#include <utility>
#include <vector>

#include <zrk/PickEvent.h>
#include <zrk/PickService.h>

namespace zrtest {

using PickPtr = du::SmartPtr<zrk::PickEvent>;

/// Takes every pick and answers none. [any-thread]
class HeldPicks final : public zrk::PickService {
public:
  void RequestPick(const PickPtr& event) override {
    const std::lock_guard<std::mutex> lock(mutex_);
    events_.push_back(event);
  }
  [[nodiscard]] std::vector<PickPtr> Take() {
    const std::lock_guard<std::mutex> lock(mutex_);
    return std::exchange(events_, {});
  }

private:
  std::mutex mutex_;
  std::vector<PickPtr> events_;
};

}  // namespace zrtest
