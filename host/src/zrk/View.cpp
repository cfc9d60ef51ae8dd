#include <zrk/View.h>

#include <zrk/PrintPreview.h>
#include <zrk/Scene.h>

namespace zrk {

View::View() = default;

View::~View() = default;

void View::SetDirty(bool dirty) {
  dirty_ = dirty;
  if (dirty) ++dirtyCount_;
}

bool View::IsDirty() const {
  return dirty_;
}

unsigned View::GetDirtyCount() const {
  return dirtyCount_;
}

du::SmartPtr<Scene> View::GetScene() const {
  return scene_.Get();
}

du::SmartPtr<PrintPreview> View::GetPrintPreview() const {
  const dp::MutexGuard guard(mutex_);
  return printPreview_;
}

void View::SetPrintPreview(const du::SmartPtr<PrintPreview>& preview) {
  du::SmartPtr<PrintPreview> previous = preview;
  const dp::MutexGuard guard(mutex_);
  printPreview_.Swap(previous);
}

}  // namespace zrk
