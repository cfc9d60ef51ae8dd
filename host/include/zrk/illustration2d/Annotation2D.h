#pragma once

#include <string>

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Export.h>
#include <du/LocalizableString.h>
#include <du/SmartPtr.h>
#include <du/Symbol.h>
#include <zrk/Object.h>

namespace zrk::illustration2d {

class Scene2D;

/// Something drawn on a sheet. [any-thread]
class ZR_HOST_API Annotation2D : public Object {
public:
  Annotation2D();
  ~Annotation2D() override;

  /// Gives `localizable` a new record with the key and the source text, and returns an id that no annotation of the
  /// scene has had. `notes` is not needed to make either. Without a scene the id is unique in the process.
  [[nodiscard]] static du::Symbol GenerateIDAndLocalization(du::LocalizableString& localizable,
                                                            const du::SmartPtr<Scene2D>& scene, const du::Symbol& key,
                                                            const std::string& text, bool notes);
  /// "/" followed by the annotation's id.
  void SetIDPath(const du::Symbol& path);
  [[nodiscard]] du::Symbol GetIDPath() const;

private:
  mutable dp::Mutex annotationMutex_;
  du::Symbol idPath_ ZR_GUARDED_BY(annotationMutex_);
};

}  // namespace zrk::illustration2d
