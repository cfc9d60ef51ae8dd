#include <zrk/illustration/EngineRelay.h>

#include <zrk/Annotation.h>
#include <zrk/Operation.h>
#include <zrk/ShapeInstance.h>
#include <zrk/ShapeView.h>
#include <zrk/illustration/Callouts.h>

namespace zrk::illustration {

EngineRelay::EngineRelay(Callouts* engine) : engine_(engine) {
  link_.Set(engine);
}

EngineRelay::~EngineRelay() = default;

void EngineRelay::Detach() {
  link_.Clear(engine_);
}

void EngineRelay::OnViewAttached(const du::SmartPtr<View>&) {
  if (const auto engine = link_.Get()) engine->InitializeShapeViewObserver();
}

void EngineRelay::OnSceneDestroy() {
  if (const auto engine = link_.Get()) engine->OnSceneDestroy();
}

void EngineRelay::OnShapeInstanceLocation(const du::SmartPtr<ShapeInstance>& shapeInstance) {
  if (const auto engine = link_.Get()) engine->OnShapeInstanceLocation(shapeInstance);
}

void EngineRelay::OnShapeInstanceVisibility(const du::SmartPtr<ShapeInstance>& shapeInstance, bool visible) {
  if (const auto engine = link_.Get()) engine->OnShapeInstanceVisibility(shapeInstance, visible);
}

void EngineRelay::OnShapeInstanceCreate(const du::SmartPtr<ShapeInstance>& shapeInstance) {
  if (const auto engine = link_.Get()) engine->OnShapeInstanceCreate(shapeInstance);
}

void EngineRelay::OnShapeInstanceRemove(const du::SmartPtr<ShapeInstance>& shapeInstance) {
  if (const auto engine = link_.Get()) engine->OnShapeInstanceRemove(shapeInstance);
}

void EngineRelay::OnAddAnnotation(const du::SmartPtr<Annotation>& annotation) {
  if (const auto engine = link_.Get()) engine->OnAddAnnotation(annotation);
}

void EngineRelay::OnRemoveAnnotation(const du::SmartPtr<Annotation>& annotation) {
  if (const auto engine = link_.Get()) engine->OnRemoveAnnotation(annotation);
}

void EngineRelay::OnAnnotationModified(const du::SmartPtr<Annotation>& annotation, bool geometryOnly) {
  if (const auto engine = link_.Get()) engine->OnAnnotationModified(annotation, geometryOnly);
}

void EngineRelay::OnAnnotationDeleted(const du::SmartPtr<Annotation>& annotation,
                                      const du::SmartPtr<Operation>& operation) {
  if (const auto engine = link_.Get()) engine->OnAnnotationDeleted(annotation, operation);
}

void EngineRelay::OnHandleTimeoutEvent(const du::SmartPtr<ShapeView>& view, dg::Camera3D& lastCamera) {
  if (const auto engine = link_.Get()) engine->OnHandleTimeoutEvent(view, lastCamera);
}

void EngineRelay::OnBackgroundColor(const du::SmartPtr<ShapeView>& view) {
  if (const auto engine = link_.Get()) engine->OnBackgroundColor(view);
}

void EngineRelay::OnPaletteColorChanged() {
  if (const auto engine = link_.Get()) engine->OnPaletteColorChanged();
}

void EngineRelay::OnWindowSize() {
  if (const auto engine = link_.Get()) engine->OnWindowSize();
}

}  // namespace zrk::illustration
