#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/Scene.h>

namespace zrk::illustration2d {

class Annotation2D;
class Document2D;

/// A sheet with annotations. [any-thread]
class ZR_HOST_API Scene2D final : public Scene {
public:
  /// With a document that has an A4 page, upright.
  Scene2D();
  ~Scene2D() override;

  /// Null when the scene has none.
  [[nodiscard]] du::SmartPtr<Document2D> GetDocument2D() const;
  void SetDocument2D(const du::SmartPtr<Document2D>& document);
  /// Null and an annotation that is there already change nothing.
  void AddAnnotation2D(const du::SmartPtr<Annotation2D>& annotation);
  void RemoveAnnotation2D(const du::SmartPtr<Annotation2D>& annotation);
  /// A copy, in the order of addition.
  [[nodiscard]] std::vector<du::SmartPtr<Annotation2D>> GetAnnotations2D() const;
  /// Counts the change and marks the views dirty; null changes nothing.
  void Annotation2DModified(const du::SmartPtr<Annotation2D>& annotation);
  [[nodiscard]] unsigned GetModifiedCount(const du::SmartPtr<Annotation2D>& annotation) const;
  /// 1, 2, 3 and so on.
  [[nodiscard]] std::uint64_t TakeAnnotationNumber();

private:
  mutable dp::Mutex mutex_;
  du::SmartPtr<Document2D> document_ ZR_GUARDED_BY(mutex_);
  std::vector<du::SmartPtr<Annotation2D>> annotations_ ZR_GUARDED_BY(mutex_);
  std::map<du::SmartPtr<Annotation2D>, unsigned> modifiedCounts_ ZR_GUARDED_BY(mutex_);
  std::uint64_t nextNumber_ ZR_GUARDED_BY(mutex_) = 1;
};

}  // namespace zrk::illustration2d
