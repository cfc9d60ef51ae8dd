#pragma once
// Watches one inset that callouts show.

#include <zrannotations/InsetObserver.h>

#include <atomic>

#include <du/SmartPtr.h>

namespace zrcallouts {

class EngineLink;

/// Owned by the engine and the inset. An inset that changes its bounds or is shown or hidden has its callouts evaluated
/// again; a new caption concerns nobody but the inset. [any-thread]
class InsetObserver final : public zrannotations::InsetObserver {
public:
  explicit InsetObserver(du::SmartPtr<EngineLink> link);
  ~InsetObserver() override;

  void OnInsetBoundsChanged(const du::SmartPtr<zrannotations::Inset>& inset) override;
  void OnInsetVisibilityChanged(const du::SmartPtr<zrannotations::Inset>& inset, bool visible) override;

  /// From now on nothing is passed on.
  void ClearEngine() { cleared_ = true; }

private:
  void PassOn(const du::SmartPtr<zrannotations::Inset>& inset);

  const du::SmartPtr<EngineLink> link_;
  std::atomic<bool> cleared_{false};
};

}  // namespace zrcallouts
