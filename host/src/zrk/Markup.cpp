#include <zrk/Markup.h>

namespace zrk {

Markup::Markup() = default;

Markup::~Markup() = default;

bool Markup::IsVisible() const {
  return visible_;
}

void Markup::SetVisible(bool visible) {
  visible_ = visible;
}

}  // namespace zrk
