#include <zrk/Observable.h>

#include <exception>

#include <du/Tracer.h>
#include <zrk/illustration/ItemsList.h>

namespace zrk {

Observable::Observable() = default;

Observable::~Observable() = default;

Observable::UpdateGroup::UpdateGroup(const du::SmartPtr<illustration::ItemsList>& observed)
    : keepAlive_(observed), observed_(observed.Get()) {
  if (observed_) observed_->BeginUpdate();
}

Observable::UpdateGroup::UpdateGroup(Observable& observed) : observed_(&observed) {
  observed_->BeginUpdate();
}

Observable::UpdateGroup::~UpdateGroup() {
  if (!observed_) return;
  // The scope may be left by an exception already; one of an observer must not end the process.
  try {
    observed_->EndUpdate();
  } catch (const std::exception& error) {
    du::Tracer::Trace(2, "zrhost", "Observable", "an observer failed at the end of an update: %s", error.what());
  }
}

void Observable::BeginUpdate() {
  {
    const dp::MutexGuard guard(mutex_);
    if (++depth_ > 1) return;
  }
  OnUpdateBegun();
}

void Observable::EndUpdate() {
  {
    const dp::MutexGuard guard(mutex_);
    if (depth_ == 0 || --depth_ > 0) return;
  }
  OnUpdateEnded();
}

bool Observable::IsUpdating() const {
  const dp::MutexGuard guard(mutex_);
  return depth_ > 0;
}

void Observable::OnUpdateBegun() {}

void Observable::OnUpdateEnded() {}

}  // namespace zrk
