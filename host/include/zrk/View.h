#pragma once

#include <atomic>

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/BackLink.h>
#include <zrk/Object.h>

namespace zrk {

class PrintPreview;
class Scene;

/// A window on a scene. It does not keep the scene alive. [any-thread]
class ZR_HOST_API View : public Object {
public:
  View();
  ~View() override;
  View(const View&) = delete;
  View& operator=(const View&) = delete;

  /// True marks the view for redraw.
  void SetDirty(bool dirty);
  [[nodiscard]] bool IsDirty() const;
  /// How often the view was marked.
  [[nodiscard]] unsigned GetDirtyCount() const;
  /// Null while the view is in no scene, and once the scene is gone.
  [[nodiscard]] du::SmartPtr<Scene> GetScene() const;
  /// Null when there is none.
  [[nodiscard]] du::SmartPtr<PrintPreview> GetPrintPreview() const;
  void SetPrintPreview(const du::SmartPtr<PrintPreview>& preview);

private:
  friend class Scene;

  BackLink<Scene> scene_;
  std::atomic<bool> dirty_{false};
  std::atomic<unsigned> dirtyCount_{0};
  mutable dp::Mutex mutex_;
  du::SmartPtr<PrintPreview> printPreview_ ZR_GUARDED_BY(mutex_);
};

}  // namespace zrk
