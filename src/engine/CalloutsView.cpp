// View-level reactions and the indication of items.
#include <dg/Camera3D.h>
#include <dp/ReadWriteLock.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CombinedCallout.h>
#include <zrannotations/Inset.h>
#include <zritemlist/ItemList.h>
#include <zrk/ShapeScene.h>
#include <zrk/ShapeView.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/ItemsList.h>

#include "hostlayer/HostLayer.h"
#include "zrcallouts/Callouts.h"

using zrannotations::Callout;
using zrannotations::CombinedCallout;
using zrk::illustration::Illustration3dScene;

namespace zrcallouts {

void Callouts::SetBackgroundColor(const du::SmartPtr<zrk::ShapeView>& view) {
  if (view) view->GetBackgroundColors(firstBackground_, secondBackground_, thirdBackground_);
}

void Callouts::OnBackgroundColor(const du::SmartPtr<zrk::ShapeView>& view) {
  if (!view) return;
  const auto scene = du::DynamicCast<Illustration3dScene>(view->GetShapeScene());
  if (!scene) return;
  SetBackgroundColor(view);
  // Only while the scene's own switch is off: with the switch on the host draws hidden callouts itself.
  if (!scene->GetDrawWhenHidden()) OnDrawWhenHidden(view);
}

void Callouts::OnPaletteColorChanged() {
  const dp::ReadWriteLock::ReadGuard guard(GetReadWriteLock());
  for (const auto& callout : CopyOfCallouts()) {
    if (callout) callout->RefreshColors();
  }
}

void Callouts::OnWindowSize() {
  const dp::ReadWriteLock::ReadGuard guard(GetReadWriteLock());
  for (const auto& callout : CopyOfCallouts()) {
    if (!callout) continue;
    const unsigned leaderCount = callout->GetLeaderLineCount(false);
    for (unsigned leader = 0; leader < leaderCount; ++leader) {
      callout->SetVisibleWithinInsetBounds(callout->GetInsetAtPos(leader));
    }
  }
}

void Callouts::OnHandleTimeoutEvent(const du::SmartPtr<zrk::ShapeView>& view, dg::Camera3D& lastCamera) {
  if (!view) return;
  const auto scene = du::DynamicCast<Illustration3dScene>(view->GetShapeScene());
  if (!scene || scene->GetDrawWhenHidden()) return;
  const dg::Camera3D camera = view->GetCamera();
  if (camera == lastCamera) return;
  // With picks outstanding the camera is not taken over, so that a later timeout does the refresh.
  if (GetPickRequestCount() != 0) return;
  lastCamera = camera;
  OnDrawWhenHidden(view);
}

void Callouts::SetIndicated(const du::SmartPtr<Callout>& callout, bool indicated) {
  const auto itemList = HeldItemList();
  if (!callout || !itemList) return;
  if (const auto combined = du::DynamicCast<CombinedCallout>(callout)) {
    for (const auto& member : combined->GetCalloutVec()) SetIndicated(member, indicated);
    return;
  }
  const auto itemId = hostlayer::ItemIdOf(callout);
  const auto items = itemList->GetZrkItemList();
  if (!itemId || !items) return;
  if (!indicated && HasCarrier(*itemId)) return;  // another callout still shows the item
  items->SetIndicated(*itemId, indicated);
}

}  // namespace zrcallouts
