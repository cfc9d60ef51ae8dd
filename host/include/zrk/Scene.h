#pragma once

#include <vector>

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/Object.h>
#include <zrk/ObserverList.h>
#include <zrk/SceneListener.h>

namespace zrk {

class AnnoSet;
class View;

/// What is shown: holds its views and its annotation set. A program ends it with Destroy. [any-thread]
class ZR_HOST_API Scene : public Object {
public:
  Scene();
  ~Scene() override;
  Scene(const Scene&) = delete;
  Scene& operator=(const Scene&) = delete;

  /// Null when the scene has no such view.
  [[nodiscard]] du::SmartPtr<View> GetView(unsigned index) const;
  /// Null when the scene has none.
  [[nodiscard]] virtual du::SmartPtr<AnnoSet> GetAnnoSet() const;
  /// Adds the view, which may be in no other scene, and returns its index. The first one is announced to the listeners.
  unsigned AddView(const du::SmartPtr<View>& view);
  /// The set belongs to this scene from now on; the previous one leaves it.
  void SetAnnoSet(const du::SmartPtr<AnnoSet>& set);

  /// Null and a listener that is already there change nothing.
  void AddListener(const du::SmartPtr<SceneListener>& listener);
  /// Never waits for a notification under way.
  void RemoveListener(const du::SmartPtr<SceneListener>& listener);
  /// A copy, in the order of addition.
  [[nodiscard]] std::vector<du::SmartPtr<SceneListener>> GetListeners() const;

  /// Tears the scene down: announces it, then lets go of listeners, undo history, annotation set and views, without
  /// further notifications. Calling it again does nothing. Work that goes on elsewhere changes and records nothing
  /// more.
  void Destroy();
  /// True as soon as Destroy was called.
  [[nodiscard]] bool IsDestroyed() const;

private:
  void DetachViews();

  ObserverList<SceneListener> listeners_;
  mutable dp::Mutex mutex_;
  std::vector<du::SmartPtr<View>> views_ ZR_GUARDED_BY(mutex_);
  du::SmartPtr<AnnoSet> annoSet_ ZR_GUARDED_BY(mutex_);
  bool isDestroyed_ ZR_GUARDED_BY(mutex_) = false;
};

}  // namespace zrk
