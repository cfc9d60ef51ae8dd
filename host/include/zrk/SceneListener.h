#pragma once

#include <dg/Camera3D.h>
#include <du/Export.h>
#include <du/RefCounted.h>
#include <du/SmartPtr.h>

namespace zrk {

class Annotation;
class Operation;
class ShapeInstance;
class ShapeView;
class View;

/// Hears what happens in a scene and its views: on the changing thread, after the change, with no host lock held. All
/// notifications do nothing here.
class ZR_HOST_API SceneListener : public virtual du::RefCounted {
public:
  ~SceneListener() override;

  /// The scene got its view 0.
  virtual void OnViewAttached(const du::SmartPtr<View>& view);
  /// The scene is torn down; it is still complete.
  virtual void OnSceneDestroy();
  virtual void OnShapeInstanceLocation(const du::SmartPtr<ShapeInstance>& shapeInstance);
  virtual void OnShapeInstanceVisibility(const du::SmartPtr<ShapeInstance>& shapeInstance, bool visible);
  virtual void OnShapeInstanceCreate(const du::SmartPtr<ShapeInstance>& shapeInstance);
  virtual void OnShapeInstanceRemove(const du::SmartPtr<ShapeInstance>& shapeInstance);
  virtual void OnAddAnnotation(const du::SmartPtr<Annotation>& annotation);
  virtual void OnRemoveAnnotation(const du::SmartPtr<Annotation>& annotation);
  /// `geometryOnly`: nothing but positions changed.
  virtual void OnAnnotationModified(const du::SmartPtr<Annotation>& annotation, bool geometryOnly);
  /// The annotation is about to be deleted within the operation and still in its set.
  virtual void OnAnnotationDeleted(const du::SmartPtr<Annotation>& annotation,
                                   const du::SmartPtr<Operation>& operation);
  /// `lastCamera` is the camera that the view kept from the previous time; what the listener leaves in it is kept next.
  virtual void OnHandleTimeoutEvent(const du::SmartPtr<ShapeView>& view, dg::Camera3D& lastCamera);
  virtual void OnBackgroundColor(const du::SmartPtr<ShapeView>& view);
  virtual void OnPaletteColorChanged();
  virtual void OnWindowSize();
};

}  // namespace zrk
