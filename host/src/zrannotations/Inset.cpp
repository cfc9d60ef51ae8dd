#include <zrannotations/Inset.h>

#include <algorithm>

#include <zrannotations/Callout.h>
#include <zrannotations/InsetObserver.h>
#include <zrk/Markup.h>
#include <zrk/ShapeInstance.h>
#include <zrk/ShapeScene.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/TAnnotation.h>

namespace zrannotations {

Inset::Inset() = default;

Inset::~Inset() = default;

void Inset::ReleaseInsetTemplate() {
  // The inset and the callouts it shows hold each other; the last references may go here, after the lock.
  std::set<du::SmartPtr<Callout>> shown;
  const dp::MutexGuard guard(mutex_);
  shown.swap(shownCallouts_);
  released_ = true;
}

bool Inset::IsReleased() const {
  const dp::MutexGuard guard(mutex_);
  return released_;
}

void Inset::OnEnteredSet() {
  const dp::MutexGuard guard(mutex_);
  released_ = false;
}

void Inset::RegisterTemplateObserver(const du::SmartPtr<zrk::Observer>& observer) {
  du::SmartPtr<zrk::Observer> exchanged = observer;
  const dp::MutexGuard guard(mutex_);
  templateObserver_.Swap(exchanged);
}

void Inset::UnregisterTemplateObserver() {
  RegisterTemplateObserver(nullptr);
}

bool Inset::HasTemplateObserver() const {
  const dp::MutexGuard guard(mutex_);
  return static_cast<bool>(templateObserver_);
}

void Inset::RegisterObserver(const du::SmartPtr<InsetObserver>& observer) {
  observers_.Register(observer);
}

void Inset::UnregisterObserver(const du::SmartPtr<InsetObserver>& observer) {
  observers_.Unregister(observer);
}

std::size_t Inset::GetObserverCount() const {
  return observers_.GetCount();
}

du::SmartPtr<zrk::Markup> Inset::GetInsetCaption() const {
  const dp::MutexGuard guard(mutex_);
  return caption_;
}

void Inset::SetInsetCaption(const du::SmartPtr<zrk::Markup>& caption) {
  du::SmartPtr<zrk::Markup> exchanged = caption;
  const dp::MutexGuard guard(mutex_);
  caption_.Swap(exchanged);
}

void Inset::SetupLocalizationIfNecessary() {
  const dp::MutexGuard guard(mutex_);
  if (localizableString_.IsEnabled() && localizableString_.GetSourceText() == captionText_) return;
  localizableString_ = du::LocalizableString::Create(du::Symbol(), captionText_);
}

du::LocalizableString& Inset::GetLocalizableString() {
  return localizableString_;
}

du::Symbol Inset::GetCaptionText() const {
  const dp::MutexGuard guard(mutex_);
  return captionText_;
}

void Inset::SetCaptionText(const du::Symbol& text, bool, bool fromLocalizable) {
  du::LocalizableString localizable;
  {
    const dp::MutexGuard guard(mutex_);
    captionText_ = text;
    localizable = localizableString_;
  }
  if (!fromLocalizable && localizable.IsEnabled()) localizable.SetSourceText(text);
  const du::SmartPtr<Inset> self(this);
  for (const du::SmartPtr<InsetObserver>& observer : observers_.Copy()) observer->OnInsetCaptionChanged(self);
}

void Inset::OnCalloutsChanged(const std::set<du::SmartPtr<Callout>>& callouts) {
  // Swapped, so that last references to callouts go after the lock is released.
  std::set<du::SmartPtr<Callout>> exchanged = callouts;
  const dp::MutexGuard guard(mutex_);
  shownCallouts_.swap(exchanged);
  if (!shownCallouts_.empty()) released_ = false;  // or nobody would make it forget them again
}

std::set<du::SmartPtr<Callout>> Inset::GetShownCallouts() const {
  const dp::MutexGuard guard(mutex_);
  return shownCallouts_;
}

bool Inset::AcceptsCallout(const du::SmartPtr<Callout>& callout) const {
  if (!callout) return false;
  if (GetBounds().IsEmpty()) return true;
  const std::vector<du::SmartPtr<CalloutLeader>> leaders = callout->GetLeaders();
  return std::any_of(leaders.begin(), leaders.end(),
                     [this](const du::SmartPtr<CalloutLeader>& leader) { return ContainsPoint(leader->GetAnchor()); });
}

du::SmartPtr<zrk::ShapeScene> Inset::GetSubsetScene() const {
  const dp::MutexGuard guard(mutex_);
  return subsetScene_;
}

void Inset::SetSubsetScene(const du::SmartPtr<zrk::ShapeScene>& scene) {
  du::SmartPtr<zrk::ShapeScene> exchanged = scene;
  const dp::MutexGuard guard(mutex_);
  subsetScene_.Swap(exchanged);
}

dg::DBox Inset::GetBounds() const {
  const dp::MutexGuard guard(mutex_);
  return bounds_;
}

void Inset::SetBounds(const dg::DBox& bounds) {
  {
    const dp::MutexGuard guard(mutex_);
    bounds_ = bounds;
  }
  const du::SmartPtr<Inset> self(this);
  for (const du::SmartPtr<InsetObserver>& observer : observers_.Copy()) observer->OnInsetBoundsChanged(self);
}

bool Inset::ContainsPoint(const dg::DPoint3D& point) const {
  const dg::DBox bounds = GetBounds();
  if (bounds.IsEmpty()) return true;
  for (int axis = 0; axis < 3; ++axis) {
    if (point[axis] < bounds.min[axis] || point[axis] > bounds.max[axis]) return false;
  }
  return true;
}

bool Inset::IsVisible() const {
  const dp::MutexGuard guard(mutex_);
  return visible_;
}

void Inset::SetVisible(bool visible) {
  {
    const dp::MutexGuard guard(mutex_);
    if (visible_ == visible) return;
    visible_ = visible;
  }
  const du::SmartPtr<Inset> self(this);
  for (const du::SmartPtr<InsetObserver>& observer : observers_.Copy()) {
    observer->OnInsetVisibilityChanged(self, visible);
  }
}

}  // namespace zrannotations
