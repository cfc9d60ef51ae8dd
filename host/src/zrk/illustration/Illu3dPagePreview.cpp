#include <zrk/illustration/Illu3dPagePreview.h>

namespace zrk::illustration {

Illu3dPagePreview::Illu3dPagePreview() = default;

Illu3dPagePreview::~Illu3dPagePreview() = default;

dg::DBox2D Illu3dPagePreview::GetPageRectInPixels() const {
  const dp::MutexGuard guard(mutex_);
  return rect_;
}

double Illu3dPagePreview::GetScale() const {
  const dp::MutexGuard guard(mutex_);
  return scale_;
}

void Illu3dPagePreview::SetPage(const dg::DBox2D& rect, double scale) {
  const dp::MutexGuard guard(mutex_);
  rect_ = rect;
  scale_ = scale;
}

}  // namespace zrk::illustration
