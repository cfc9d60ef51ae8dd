#pragma once

#include <dg/Camera3D.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/BackLink.h>
#include <zrk/SceneListener.h>

namespace zrk::illustration {

class Callouts;

/// Hands the events of a scene to the engine bound to it. Holds the engine by a plain link and takes a reference for
/// the time of each call, so an event that meets an engine on its way out is dropped.
class ZR_HOST_API EngineRelay final : public SceneListener {
public:
  explicit EngineRelay(Callouts* engine);
  ~EngineRelay() override;

  /// From now on every event is dropped. Does not wait for a call under way.
  void Detach();

  void OnViewAttached(const du::SmartPtr<View>& view) override;
  void OnSceneDestroy() override;
  void OnShapeInstanceLocation(const du::SmartPtr<ShapeInstance>& shapeInstance) override;
  void OnShapeInstanceVisibility(const du::SmartPtr<ShapeInstance>& shapeInstance, bool visible) override;
  void OnShapeInstanceCreate(const du::SmartPtr<ShapeInstance>& shapeInstance) override;
  void OnShapeInstanceRemove(const du::SmartPtr<ShapeInstance>& shapeInstance) override;
  void OnAddAnnotation(const du::SmartPtr<Annotation>& annotation) override;
  void OnRemoveAnnotation(const du::SmartPtr<Annotation>& annotation) override;
  void OnAnnotationModified(const du::SmartPtr<Annotation>& annotation, bool geometryOnly) override;
  void OnAnnotationDeleted(const du::SmartPtr<Annotation>& annotation,
                           const du::SmartPtr<Operation>& operation) override;
  void OnHandleTimeoutEvent(const du::SmartPtr<ShapeView>& view, dg::Camera3D& lastCamera) override;
  void OnBackgroundColor(const du::SmartPtr<ShapeView>& view) override;
  void OnPaletteColorChanged() override;
  void OnWindowSize() override;

private:
  Callouts* const engine_;
  BackLink<Callouts> link_;
};

}  // namespace zrk::illustration
