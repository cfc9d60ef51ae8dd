#pragma once

#include <dg/Camera3D.h>
#include <du/Export.h>

namespace dg {

/// The way from model space to the screen that label boxes are measured along.
class ZR_HOST_API Pipeline {
public:
  explicit Pipeline(int mode);

  [[nodiscard]] int GetMode() const;
  void SetCamera(const Camera3D& camera);
  [[nodiscard]] const Camera3D& GetCamera() const;

private:
  int mode_;
  Camera3D camera_;
};

}  // namespace dg
