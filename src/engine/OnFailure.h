#pragma once
// Takes back what a scope has begun when an exception ends it.

#include <exception>
#include <utility>

namespace zrcallouts {

/// Runs `act` when its scope is left by an exception that was thrown in it. What `act` fails to do stays undone.
template <class Act>
class OnFailure final {
public:
  explicit OnFailure(Act act) : act_(std::move(act)) {}
  ~OnFailure() {
    if (std::uncaught_exceptions() <= before_) return;
    try {
      act_();
    } catch (...) {  // the exception under way tells of the failure already
    }
  }
  OnFailure(const OnFailure&) = delete;
  OnFailure& operator=(const OnFailure&) = delete;

private:
  const Act act_;
  const int before_ = std::uncaught_exceptions();
};

}  // namespace zrcallouts
