#pragma once

#include <memory>

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <zrk/PickService.h>

namespace zrk {

class BoxPicture;

/// The bare host's answers, given at once: a view shows the boxes of its scene's visible shapes. Keeps the last picture
/// as long as nothing changes. [any-thread]
class BoxPicks final : public PickService {
public:
  BoxPicks();
  ~BoxPicks() override;

  void RequestPick(const du::SmartPtr<PickEvent>& event) override;

private:
  [[nodiscard]] std::shared_ptr<const BoxPicture> GetPicture(const ShapeView& view);

  dp::Mutex mutex_;
  std::shared_ptr<const BoxPicture> picture_ ZR_GUARDED_BY(mutex_);
};

}  // namespace zrk
