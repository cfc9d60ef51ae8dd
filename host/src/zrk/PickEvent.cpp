#include <zrk/PickEvent.h>

#include <zrk/ShapeInstance.h>
#include <zrk/ShapeView.h>

namespace zrk {

PickEvent::PickEvent(const du::SmartPtr<ShapeView>& view, const du::SmartPtr<ShapeInstance>& shapeInstance,
                     const dg::DPoint3D& pixel)
    : view_(view ? view->GetLink() : nullptr), shapeInstance_(shapeInstance), pixel_(pixel) {}

PickEvent::~PickEvent() = default;

du::SmartPtr<ShapeView> PickEvent::GetView() const {
  return view_ ? view_->Get() : nullptr;
}

const du::SmartPtr<ShapeInstance>& PickEvent::GetShapeInstance() const {
  return shapeInstance_;
}

const dg::DPoint3D& PickEvent::GetPixel() const {
  return pixel_;
}

bool PickEvent::Answer(const PickAnswer& answer) {
  if (answered_.exchange(true)) return false;
  OnAnswer(answer);
  return true;
}

bool PickEvent::IsAnswered() const {
  return answered_;
}

}  // namespace zrk
