#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include <dg/Camera3D.h>
#include <dp/Mutex.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/ObjectWithRWLock.h>

namespace zrannotations {
class Callout;
}

namespace zrk {

class AnnoSet;
class Annotation;
class Operation;
class Scene;
class ShapeInstance;
class ShapeScene;
class ShapeView;

namespace illustration {

class EngineRelay;
class LabelContent;
class SbomInstance;

/// The engine that keeps the callouts of one scene, as the host sees it. A component implements it; the host calls its
/// operations, on the thread that makes the change and with no host lock held. The order of the virtual operations is
/// part of the interface.
class ZR_HOST_API Callouts : public ObjectWithRWLock {
public:
  Callouts();
  ~Callouts() override;

  /// Binds the engine to the scene and starts relaying the scene's events. Takes no reference to the engine, so it may
  /// run inside the engine's constructor. Null binds nothing.
  virtual void Initialize(const du::SmartPtr<ShapeScene>& scene);
  /// Called when the scene has its view 0. The events of the views arrive through the scene, so the base does nothing.
  virtual void InitializeShapeViewObserver();
  /// The scene is going: calls the virtual Destroy.
  virtual void OnSceneDestroy();
  virtual void OnShapeInstanceLocation(const du::SmartPtr<ShapeInstance>& shapeInstance) = 0;
  virtual void OnShapeInstanceVisibility(const du::SmartPtr<ShapeInstance>& shapeInstance, bool visible) = 0;
  virtual void OnShapeInstanceCreate(const du::SmartPtr<ShapeInstance>& shapeInstance) = 0;
  virtual void OnShapeInstanceRemove(const du::SmartPtr<ShapeInstance>& shapeInstance) = 0;
  virtual void OnAddAnnotation(const du::SmartPtr<Annotation>& annotation) = 0;
  virtual void OnRemoveAnnotation(const du::SmartPtr<Annotation>& annotation) = 0;
  /// `geometryOnly`: nothing but positions changed. May arrive while the engine's lock is held for reading.
  virtual void OnAnnotationModified(const du::SmartPtr<Annotation>& annotation, bool geometryOnly) = 0;
  /// The annotation is about to be deleted inside the operation and is still in its set.
  virtual void OnAnnotationDeleted(const du::SmartPtr<Annotation>& annotation,
                                   const du::SmartPtr<Operation>& operation) = 0;
  virtual void OnHandleTimeoutEvent(const du::SmartPtr<ShapeView>& view, dg::Camera3D& lastCamera) = 0;
  virtual void OnBackgroundColor(const du::SmartPtr<ShapeView>& view) = 0;
  virtual void OnPaletteColorChanged() = 0;
  virtual void OnWindowSize() = 0;
  /// Drops the scene and tells CalloutEngineMgr to drop the engine. Overriding engines call it last, with their own
  /// lock held for writing; the caller holds a reference to the engine.
  virtual void Destroy();
  virtual void GetCalloutSetForSbomInstance(const du::SmartPtr<SbomInstance>& instance,
                                            std::set<du::SmartPtr<zrannotations::Callout>>& callouts) = 0;
  virtual void GenerateLabelString(const du::SmartPtr<zrannotations::Callout>& callout,
                                   std::vector<du::SmartPtr<LabelContent>> contents, bool markdownContent,
                                   std::string& label) = 0;
  virtual void GenerateLabelStringFor2DCallout(const du::SmartPtr<Scene>& scene,
                                               std::vector<du::SmartPtr<LabelContent>> contents, bool markdownContent,
                                               std::string& label, bool hasItem, std::uint32_t itemId) = 0;

protected:
  /// Stops relaying. Never waits for an event under way; a later one is dropped.
  virtual void UnregisterObservers();

public:
  /// Null before Initialize and after Destroy.
  [[nodiscard]] du::SmartPtr<ShapeScene> GetScene() const;
  /// The annotation set of the scene; null without a scene and when the scene has none.
  [[nodiscard]] du::SmartPtr<AnnoSet> GetAnnoSet() const;

private:
  void DetachRelay();

  mutable dp::Mutex sceneMutex_;
  du::SmartPtr<ShapeScene> scene_ ZR_GUARDED_BY(sceneMutex_);
  du::SmartPtr<EngineRelay> relay_ ZR_GUARDED_BY(sceneMutex_);
};

}  // namespace illustration
}  // namespace zrk
