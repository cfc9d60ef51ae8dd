#pragma once
// Scope in which the leaders or members of a callout change: the registry must not keep what it filed for the old ones.

#include <new>

#include <dp/ReadWriteLock.h>
#include <zrannotations/Callout.h>

#include "engine/OnFailure.h"
#include "zrcallouts/Callouts.h"

namespace zrcallouts {

/// Takes the callout out of the registry until Finish files it again as it is then. A callout that is not registered at
/// that moment stays out. Of a combined callout's members it takes the combined one. Holds the write lock. A scope left
/// by an exception files it too, as far as there is memory for that.
class Callouts::Refiling final {
public:
  Refiling(Callouts& engine, const du::SmartPtr<zrannotations::Callout>& callout)
      : guard_(engine.GetReadWriteLock()), engine_(engine), callout_(callout) {
    engine_.RemoveFromMap(callout_);
  }
  ~Refiling() {
    if (finished_) return;
    try {
      Finish();
    } catch (const std::bad_alloc&) {  // the exception under way tells of it already
    }
  }
  Refiling(const Refiling&) = delete;
  Refiling& operator=(const Refiling&) = delete;

  void Finish() {
    const OnFailure unfile([this] { engine_.RemoveFromMap(callout_); });
    if (engine_.IsRegistered(callout_)) engine_.AddToMap(callout_);
    finished_ = true;
  }

private:
  const dp::ReadWriteLock::WriteGuard guard_;
  Callouts& engine_;
  const du::SmartPtr<zrannotations::Callout> callout_;
  bool finished_ = false;
};

}  // namespace zrcallouts
