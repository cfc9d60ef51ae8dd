#pragma once

#include <atomic>

#include <du/Export.h>
#include <zrk/ShapeView.h>
#include <zrk/illustration/PageSizeSettings.h>

namespace zrk::illustration {

/// A view of an illustration's 3D scene that can show the page it is printed on.
class ZR_HOST_API Illustration3dView : public ShapeView {
public:
  Illustration3dView();
  ~Illustration3dView() override;

  [[nodiscard]] PageSizeSettings GetPageSizeSettings() const;
  void SetPageShown(bool shown);

private:
  std::atomic<bool> pageShown_{false};
};

}  // namespace zrk::illustration
