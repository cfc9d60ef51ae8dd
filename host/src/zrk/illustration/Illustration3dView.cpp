#include <zrk/illustration/Illustration3dView.h>

namespace zrk::illustration {

Illustration3dView::Illustration3dView() = default;

Illustration3dView::~Illustration3dView() = default;

PageSizeSettings Illustration3dView::GetPageSizeSettings() const {
  return {pageShown_};
}

void Illustration3dView::SetPageShown(bool shown) {
  pageShown_ = shown;
}

}  // namespace zrk::illustration
