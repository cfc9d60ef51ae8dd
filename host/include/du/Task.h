#pragma once

#include <du/Export.h>
#include <du/RefCounted.h>

namespace du {

/// A job for a TaskPool, which holds it counted until Run has returned.
class ZR_HOST_API Task : public virtual RefCounted {
public:
  explicit Task(unsigned priority = 0);
  ~Task() override;

  /// Called once. An exception that leaves it is caught and counted by the pool. [pool-thread]
  virtual void Run() = 0;
  /// Recorded only: the pool works in the order of insertion.
  [[nodiscard]] unsigned GetPriority() const { return priority_; }

private:
  const unsigned priority_;
};

}  // namespace du
