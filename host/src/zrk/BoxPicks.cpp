#include "BoxPicks.h"

#include <utility>

#include <zrk/PickEvent.h>
#include <zrk/ShapeInstance.h>
#include <zrk/ShapeScene.h>
#include <zrk/ShapeView.h>

#include "BoxPicture.h"

namespace zrk {

BoxPicks::BoxPicks() = default;

BoxPicks::~BoxPicks() = default;

void BoxPicks::RequestPick(const du::SmartPtr<PickEvent>& event) {
  const du::SmartPtr<ShapeView> view = event->GetView();
  const du::SmartPtr<ShapeInstance>& shape = event->GetShapeInstance();
  const std::shared_ptr<const BoxPicture> picture = view && shape ? GetPicture(*view) : nullptr;
  if (picture) event->Answer(picture->Look(*shape, event->GetPixel()));
}

std::shared_ptr<const BoxPicture> BoxPicks::GetPicture(const ShapeView& view) {
  const du::SmartPtr<ShapeScene> scene = view.GetShapeScene();
  if (!scene) return nullptr;
  std::shared_ptr<const BoxPicture> previous;
  {
    const dp::MutexGuard guard(mutex_);
    if (picture_ && picture_->IsCurrent(view, *scene)) return picture_;
  }
  // Taken without the lock: two threads may take the same picture, and either one will do.
  auto picture = std::make_shared<const BoxPicture>(view, *scene);
  const dp::MutexGuard guard(mutex_);
  previous = std::exchange(picture_, picture);
  return picture;
}

}  // namespace zrk
