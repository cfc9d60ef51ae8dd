#include <zrk/SceneListener.h>

namespace zrk {

SceneListener::~SceneListener() = default;

void SceneListener::OnViewAttached(const du::SmartPtr<View>&) {}

void SceneListener::OnSceneDestroy() {}

void SceneListener::OnShapeInstanceLocation(const du::SmartPtr<ShapeInstance>&) {}

void SceneListener::OnShapeInstanceVisibility(const du::SmartPtr<ShapeInstance>&, bool) {}

void SceneListener::OnShapeInstanceCreate(const du::SmartPtr<ShapeInstance>&) {}

void SceneListener::OnShapeInstanceRemove(const du::SmartPtr<ShapeInstance>&) {}

void SceneListener::OnAddAnnotation(const du::SmartPtr<Annotation>&) {}

void SceneListener::OnRemoveAnnotation(const du::SmartPtr<Annotation>&) {}

void SceneListener::OnAnnotationModified(const du::SmartPtr<Annotation>&, bool) {}

void SceneListener::OnAnnotationDeleted(const du::SmartPtr<Annotation>&, const du::SmartPtr<Operation>&) {}

void SceneListener::OnHandleTimeoutEvent(const du::SmartPtr<ShapeView>&, dg::Camera3D&) {}

void SceneListener::OnBackgroundColor(const du::SmartPtr<ShapeView>&) {}

void SceneListener::OnPaletteColorChanged() {}

void SceneListener::OnWindowSize() {}

}  // namespace zrk
