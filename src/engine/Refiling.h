#pragma once
// Scope in which the leaders or members of a callout change: the registry must not keep what it filed for the old ones.

#include <dp/ReadWriteLock.h>
#include <zrannotations/Callout.h>

#include "zrcallouts/Callouts.h"

namespace zrcallouts {

/// Takes the callout out of the registry and, when the scope ends, files it again as it is then. A callout that is not
/// registered at that moment stays out. Of a combined callout's members it takes the combined one. Holds the write
/// lock.
class Callouts::Refiling final {
public:
  Refiling(Callouts& engine, const du::SmartPtr<zrannotations::Callout>& callout)
      : guard_(engine.GetReadWriteLock()), engine_(engine), callout_(callout) {
    engine_.RemoveFromMap(callout_);
  }
  ~Refiling() {
    if (engine_.IsRegistered(callout_)) engine_.AddToMap(callout_);
  }
  Refiling(const Refiling&) = delete;
  Refiling& operator=(const Refiling&) = delete;

private:
  const dp::ReadWriteLock::WriteGuard guard_;
  Callouts& engine_;
  const du::SmartPtr<zrannotations::Callout> callout_;
};

}  // namespace zrcallouts
