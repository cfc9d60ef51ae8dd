#pragma once

#include <atomic>

#include <du/Export.h>
#include <zrk/Object.h>

namespace zrk {

/// A drawn text that belongs to something else, such as the caption of an inset; visible at first. [any-thread]
class ZR_HOST_API Markup : public Object {
public:
  Markup();
  ~Markup() override;

  [[nodiscard]] bool IsVisible() const;
  void SetVisible(bool visible);

private:
  std::atomic<bool> visible_{true};
};

}  // namespace zrk
