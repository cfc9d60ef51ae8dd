#pragma once

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/Object.h>

namespace zrk::illustration2d {

class PageBorder2D;

/// The sheet behind a 2D scene. [any-thread]
class ZR_HOST_API Document2D final : public Object {
public:
  Document2D();
  ~Document2D() override;

  /// Null when the document has no page.
  [[nodiscard]] du::SmartPtr<PageBorder2D> GetPageBorder() const;
  void SetPageBorder(const du::SmartPtr<PageBorder2D>& border);

private:
  mutable dp::Mutex mutex_;
  du::SmartPtr<PageBorder2D> border_ ZR_GUARDED_BY(mutex_);
};

}  // namespace zrk::illustration2d
