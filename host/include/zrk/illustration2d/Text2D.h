#pragma once

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Export.h>
#include <du/Symbol.h>
#include <zrk/Object.h>

namespace zrk::illustration2d {

/// A text on a sheet. [any-thread]
class ZR_HOST_API Text2D final : public Object {
public:
  explicit Text2D(const du::Symbol& text = du::Symbol());
  ~Text2D() override;

  [[nodiscard]] du::Symbol GetString() const;
  void SetString(const du::Symbol& text);

private:
  mutable dp::Mutex mutex_;
  du::Symbol text_ ZR_GUARDED_BY(mutex_);
};

}  // namespace zrk::illustration2d
