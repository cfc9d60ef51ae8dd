#include <dg/Pipeline.h>

namespace dg {

Pipeline::Pipeline(int mode) : mode_(mode) {}

int Pipeline::GetMode() const {
  return mode_;
}

void Pipeline::SetCamera(const Camera3D& camera) {
  camera_ = camera;
}

const Camera3D& Pipeline::GetCamera() const {
  return camera_;
}

}  // namespace dg
