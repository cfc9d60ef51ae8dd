// The engine's settings: plain values under the engine's lock. A setter stores and does nothing else.
#include <dp/ReadWriteLock.h>
#include <zritemlist/ItemList.h>
#include <zrk/illustration/TAnnotation.h>

#include "zrcallouts/Callouts.h"

namespace zrcallouts {

bool Callouts::GetCombineForSamePart() const {
  const dp::ReadWriteLock::ReadGuard guard(GetReadWriteLock());
  return combineForSamePart_;
}

void Callouts::SetCombineForSamePart(bool on) {
  const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
  combineForSamePart_ = on;
}

bool Callouts::GetDrawOneForSamePart() const {
  const dp::ReadWriteLock::ReadGuard guard(GetReadWriteLock());
  return drawOneForSamePart_;
}

void Callouts::SetDrawOneForSamePart(bool on) {
  const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
  drawOneForSamePart_ = on;
}

bool Callouts::GetForce2DArrowheads() const {
  const dp::ReadWriteLock::ReadGuard guard(GetReadWriteLock());
  return force2DArrowheads_;
}

void Callouts::SetForce2DArrowheads(bool on) {
  const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
  force2DArrowheads_ = on;
}

std::uint32_t Callouts::GetPickRequestCount() const {
  const dp::ReadWriteLock::ReadGuard guard(GetReadWriteLock());
  return pickRequestCount_;
}

du::SmartPtr<zrk::illustration::TAnnotation> Callouts::GetTemplate() const {
  const dp::ReadWriteLock::ReadGuard guard(GetReadWriteLock());
  return template_;
}

void Callouts::SetTemplate(du::SmartPtr<zrk::illustration::TAnnotation> callouttemplate) {
  const dp::ReadWriteLock::WriteGuard guard(GetReadWriteLock());
  template_ = callouttemplate;
}

du::SmartPtr<zritemlist::ItemList> Callouts::GetItemsList() const {
  return itemList_;
}

}  // namespace zrcallouts
