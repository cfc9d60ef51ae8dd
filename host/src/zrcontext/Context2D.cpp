#include <zrcontext/Context2D.h>

#include <atomic>

namespace zrcontext {

namespace {

std::atomic<int> liveContexts{0};

}  // namespace

Context2D::Context2D() {
  ++liveContexts;
}

Context2D::~Context2D() {
  --liveContexts;
}

int Context2D::GetLiveCount() {
  return liveContexts;
}

}  // namespace zrcontext
