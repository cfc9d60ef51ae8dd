#include <zrk/illustration2d/Text2D.h>

namespace zrk::illustration2d {

Text2D::Text2D(const du::Symbol& text) : text_(text) {}

Text2D::~Text2D() = default;

du::Symbol Text2D::GetString() const {
  const dp::MutexGuard guard(mutex_);
  return text_;
}

void Text2D::SetString(const du::Symbol& text) {
  const dp::MutexGuard guard(mutex_);
  text_ = text;
}

}  // namespace zrk::illustration2d
