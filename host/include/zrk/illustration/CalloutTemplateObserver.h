#pragma once

#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/Observer.h>

namespace zrk::illustration {

class TAnnotation;

/// Hears the changes of a callout template; every reaction is empty here.
class ZR_HOST_API CalloutTemplateObserver : public Observer {
public:
  ~CalloutTemplateObserver() override;

  /// Whether OnThumbnailsLoaded is wanted; true unless overridden.
  [[nodiscard]] virtual bool WantsThumbnails() const;
  /// The template was replaced by another one; what it requires may have changed.
  virtual void OnTemplateReplaced(const du::SmartPtr<TAnnotation>& callouttemplate);
  /// The template's text content was edited.
  virtual void OnTemplateModified(const du::SmartPtr<TAnnotation>& callouttemplate);
  virtual void OnThumbnailsLoaded();
};

}  // namespace zrk::illustration
