#include <zrk/illustration2d/Scene2D.h>

#include <algorithm>

#include <zrk/MakeObject.h>
#include <zrk/View.h>
#include <zrk/illustration2d/Annotation2D.h>
#include <zrk/illustration2d/Document2D.h>
#include <zrk/illustration2d/PageBorder2D.h>

namespace zrk::illustration2d {

Scene2D::Scene2D() : document_(MakeObject<Document2D>()) {
  const dg::DVec2 a4(210.0, 297.0);
  if (document_) document_->SetPageBorder(MakeObject<PageBorder2D>(a4, dg::LengthUnit::MILLIMETER));
}

Scene2D::~Scene2D() = default;

du::SmartPtr<Document2D> Scene2D::GetDocument2D() const {
  const dp::MutexGuard guard(mutex_);
  return document_;
}

void Scene2D::SetDocument2D(const du::SmartPtr<Document2D>& document) {
  const dp::MutexGuard guard(mutex_);
  document_ = document;
}

void Scene2D::AddAnnotation2D(const du::SmartPtr<Annotation2D>& annotation) {
  if (!annotation) return;
  const dp::MutexGuard guard(mutex_);
  const bool isKnown = std::find(annotations_.begin(), annotations_.end(), annotation) != annotations_.end();
  if (!isKnown) annotations_.push_back(annotation);
}

void Scene2D::RemoveAnnotation2D(const du::SmartPtr<Annotation2D>& annotation) {
  const dp::MutexGuard guard(mutex_);
  annotations_.erase(std::remove(annotations_.begin(), annotations_.end(), annotation), annotations_.end());
}

std::vector<du::SmartPtr<Annotation2D>> Scene2D::GetAnnotations2D() const {
  const dp::MutexGuard guard(mutex_);
  return annotations_;
}

void Scene2D::Annotation2DModified(const du::SmartPtr<Annotation2D>& annotation) {
  if (!annotation) return;
  {
    const dp::MutexGuard guard(mutex_);
    ++modifiedCounts_[annotation];
  }
  for (unsigned index = 0; const du::SmartPtr<View> view = GetView(index); ++index) view->SetDirty(true);
}

unsigned Scene2D::GetModifiedCount(const du::SmartPtr<Annotation2D>& annotation) const {
  const dp::MutexGuard guard(mutex_);
  const auto found = modifiedCounts_.find(annotation);
  return found == modifiedCounts_.end() ? 0 : found->second;
}

std::uint64_t Scene2D::TakeAnnotationNumber() {
  const dp::MutexGuard guard(mutex_);
  return nextNumber_++;
}

}  // namespace zrk::illustration2d
