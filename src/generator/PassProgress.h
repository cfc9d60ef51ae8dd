#pragma once
// The passes of a run, one a category; they count the selected items they visit and report every hundredth visit.

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

  // As if the items were visited one by one.
  void Visit(std::size_t count) {
    const std::size_t end = visited_ + count;
    std::size_t report = (visited_ + kInterval - 1) / kInterval * kInterval;
    for (; event_ && report < end; report += kInterval) {
      event_->Progress(static_cast<unsigned char>(static_cast<double>(report + 1) / total_ * 100));
    }
    visited_ = end;
  }

private:
  static constexpr std::size_t kInterval = 100;

  const du::SmartPtr<zrk::AsyncEvent> event_;
  const double total_;
  std::size_t visited_ = 0;
};

/// Calls `body` with the run set of each category; false as soon as `body` returns false.
template <class Body>
bool CalloutGenerator::ForEachPass(const Selection& selection, PassProgress progress, const Body& body) {
  const RunSets runSets = RunSetsOf(selection);
  for (std::uint32_t pass = 0; pass < variantsCount_; ++pass) {
    progress.Visit(selection.size());
    if (!body(CurrentRunSet(runSets))) return false;
    NextCategory();
  }
  return true;
}

}  // namespace zrcallouts
