#pragma once
// Counts the selected items that a run visits and reports every hundredth visit.

#include <cstddef>

#include <du/SmartPtr.h>
#include <zrk/AsyncEvent.h>

#include "zrcallouts/CalloutGenerator.h"

namespace zrcallouts {

/// Percentages rise over all passes of the run; an empty event makes it silent.
class CalloutGenerator::PassProgress final {
 public:
  explicit PassProgress(const du::SmartPtr<zrk::AsyncEvent>& event = {}, double total = 1)
      : event_(event), total_(total) {}

  void Visit() {
    if (event_ && visited_ % kInterval == 0) {
      event_->Progress(static_cast<unsigned char>(static_cast<double>(visited_ + 1) / total_ * 100));
    }
    ++visited_;
  }

 private:
  static constexpr std::size_t kInterval = 100;

  const du::SmartPtr<zrk::AsyncEvent> event_;
  const double total_;
  std::size_t visited_ = 0;
};

}  // namespace zrcallouts
