#pragma once

#include <memory>

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <du/Symbol.h>
#include <zrk/BackLink.h>
#include <zrk/Object.h>

namespace zrk {

class AnnoSet;
class Scene;

/// Something drawn over a scene: a callout, an inset, a 3D symbol. Belongs to at most one annotation set at a time.
class ZR_HOST_API Annotation : public Object {
public:
  /// Kinds returned by GetAnnotationType().
  enum Kind : unsigned { OtherKind = 0, SymbolKind = 1, CalloutKind = 2, InsetKind = 3 };

  explicit Annotation(const du::Symbol& annotationClass = du::Symbol());
  ~Annotation() override;

  /// Class name, for example ConstStrings::zrCalloutLabel; empty for an annotation of no known class.
  [[nodiscard]] du::Symbol GetClass() const;
  void SetClass(const du::Symbol& annotationClass);
  /// Unique in the process, never 0 and never used twice.
  [[nodiscard]] unsigned Id() const;
  /// Scene of the set that the annotation is a member of; null while it is in no set or the set has lost its scene.
  [[nodiscard]] du::SmartPtr<Scene> GetScene() const;
  /// One of Kind.
  [[nodiscard]] virtual unsigned GetAnnotationType() const;

  /// Tells the listeners of the annotation's scene that it changed; nothing while it is in no scene.
  /// `geometryOnly`: only positions changed. No host lock is held during the calls. [any-thread]
  void NotifyModified(bool geometryOnly);

protected:
  friend class AnnoSet;
  using SceneLink = std::shared_ptr<BackLink<Scene>>;

  /// The set gives its link on entry and an empty one on removal.
  void SetSceneLink(const SceneLink& link);
  [[nodiscard]] virtual SceneLink GetSceneLink() const;
  /// Called by the set after the annotation became a member, before anybody is notified. No lock held.
  virtual void OnEnteredSet();

private:
  mutable dp::Mutex annotationMutex_;
  du::Symbol class_ ZR_GUARDED_BY(annotationMutex_);
  const unsigned id_;
  SceneLink sceneLink_ ZR_GUARDED_BY(annotationMutex_);
};

}  // namespace zrk
