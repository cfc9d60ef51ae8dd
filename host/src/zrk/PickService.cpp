#include <zrk/PickService.h>

#include <zrk/PickEvent.h>
#include <zrk/ShapeInstance.h>
#include <zrk/ShapeView.h>

namespace zrk {

PickService::~PickService() = default;

void PickService::RequestPick(const du::SmartPtr<PickEvent>& event) {
  const du::SmartPtr<ShapeView> view = event->GetView();
  if (!view) return;
  PickAnswer answer;
  answer.isVisible = FindVisiblePoint(view, event->GetShapeInstance(), answer.deepest);
  event->Answer(answer);
}

bool PickService::FindVisiblePoint(const du::SmartPtr<ShapeView>&, const du::SmartPtr<ShapeInstance>&, dg::DPoint3D&) {
  return false;
}

}  // namespace zrk
