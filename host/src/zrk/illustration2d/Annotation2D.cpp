#include <zrk/illustration2d/Annotation2D.h>

#include <atomic>
#include <cstdint>

#include <zrk/illustration2d/Scene2D.h>

namespace zrk::illustration2d {

namespace {

std::uint64_t TakeNumberWithoutScene() {
  static std::atomic<std::uint64_t> lastNumber{0};
  return ++lastNumber;
}

}  // namespace

Annotation2D::Annotation2D() = default;

Annotation2D::~Annotation2D() = default;

du::Symbol Annotation2D::GenerateIDAndLocalization(du::LocalizableString& localizable,
                                                   const du::SmartPtr<Scene2D>& scene, const du::Symbol& key,
                                                   const std::string& text, bool) {
  localizable = du::LocalizableString::Create(key, text);
  if (!scene) return "free-annotation-" + std::to_string(TakeNumberWithoutScene());
  return "annotation-" + std::to_string(scene->TakeAnnotationNumber());
}

void Annotation2D::SetIDPath(const du::Symbol& path) {
  const dp::MutexGuard guard(annotationMutex_);
  idPath_ = path;
}

du::Symbol Annotation2D::GetIDPath() const {
  const dp::MutexGuard guard(annotationMutex_);
  return idPath_;
}

}  // namespace zrk::illustration2d
