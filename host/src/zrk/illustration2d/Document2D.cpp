#include <zrk/illustration2d/Document2D.h>

#include <zrk/illustration2d/PageBorder2D.h>

namespace zrk::illustration2d {

Document2D::Document2D() = default;

Document2D::~Document2D() = default;

du::SmartPtr<PageBorder2D> Document2D::GetPageBorder() const {
  const dp::MutexGuard guard(mutex_);
  return border_;
}

void Document2D::SetPageBorder(const du::SmartPtr<PageBorder2D>& border) {
  const dp::MutexGuard guard(mutex_);
  border_ = border;
}

}  // namespace zrk::illustration2d
