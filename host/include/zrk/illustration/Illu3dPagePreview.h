#pragma once

#include <dg/DBox2D.h>
#include <dp/Mutex.h>
#include <du/Export.h>
#include <zrk/PrintPreview.h>

namespace zrk::illustration {

/// The page laid over a 3D view. Thread-safe.
class ZR_HOST_API Illu3dPagePreview : public PrintPreview {
public:
  Illu3dPagePreview();
  ~Illu3dPagePreview() override;

  /// Pixels of the view; empty before SetPage.
  [[nodiscard]] dg::DBox2D GetPageRectInPixels() const;
  /// Pixels of the page for a pixel of the view; 1 before SetPage.
  [[nodiscard]] double GetScale() const;
  void SetPage(const dg::DBox2D& rect, double scale);

private:
  mutable dp::Mutex mutex_;
  dg::DBox2D rect_ ZR_GUARDED_BY(mutex_) = dg::DBox2D::EMPTY;
  double scale_ ZR_GUARDED_BY(mutex_) = 1.0;
};

}  // namespace zrk::illustration
