// Which leaders end where geometry hides them, and how anchors follow what can be seen as the camera turns.
#include <dp/ReadWriteLock.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CalloutLeader.h>
#include <zrannotations/Inset.h>
#include <zrk/ShapeInstance.h>
#include <zrk/ShapeScene.h>
#include <zrk/ShapeView.h>
#include <zrk/illustration/Illustration3dScene.h>

#include <algorithm>

#include "engine/EngineLink.h"
#include "hostlayer/HostLayer.h"
#include "visibility/AnchorPicks.h"
#include "visibility/AnchorRule.h"
#include "zrcallouts/Callouts.h"

using zrannotations::Callout;
using zrannotations::CalloutLeader;

namespace zrcallouts {

namespace {

bool IsInMainView(const CalloutLeader& leader) {
  return leader.IsDrawn() && !leader.GetInset();
}

bool ClearMarks(const Callout& callout) {
  bool changed = false;
  for (const auto& leader : callout.GetLeaders()) {
    if (hostlayer::SetOccluded(leader, false)) changed = true;
  }
  return changed;
}

bool HasHiddenLeader(const Callout& callout) {
  const auto leaders = callout.GetLeaders();
  return std::any_of(leaders.begin(), leaders.end(), [](const auto& leader) { return leader->IsHidden(); });
}

// True when the leader is drawn differently now.
bool ApplyAnswer(const AnchorPicks::Question& question) {
  const auto& leader = question.leader;
  bool changed = hostlayer::SetOccluded(leader, !question.answer.isVisible);
  if (!question.answer.isVisible) return changed;
  const auto anchor = MoveAnchor(question.answer);
  if (anchor && !IsSamePoint(*anchor, question.anchor)) {
    leader->SetAnchor(*anchor);
    changed = true;
  }
  if (!leader->IsAnchorCalculated()) leader->SetAnchorCalculated(true);
  return changed;
}

}  // namespace

bool Callouts::DrawsHiddenAsUsual() const {
  const auto scene = du::DynamicCast<zrk::illustration::Illustration3dScene>(GetScene());
  return scene && scene->GetDrawWhenHidden();
}

void Callouts::OnDrawWhenHidden(const du::SmartPtr<zrk::ShapeView>& view) {
  const auto scene = view ? view->GetShapeScene() : nullptr;
  if (!scene || scene != GetScene() || scene->GetView(0) != view || IsDestroyed()) return;
  const std::uint64_t evaluation = ++evaluation_;
  const bool asUsual = DrawsHiddenAsUsual();
  for (const auto& callout : CopyOfCallouts()) {
    if (asUsual) {
      if (ClearMarks(*callout)) callout->NotifyCalloutChanged();
      continue;
    }
    const du::SmartPtr<AnchorPicks> picks(new AnchorPicks(AnchorPicks::Kind::CheckAnchor, link_, callout, evaluation));
    for (const auto& leader : callout->GetLeaders()) {
      if (IsInMainView(*leader)) picks->Add(leader);
    }
    picks->Request(view);
  }
}

void Callouts::OnReceiveAnchorVisiblePick(const AnchorPicks& picks) {
  const auto& callout = picks.GetCallout();
  bool changed = false;
  bool lost = false;
  {
    const dp::ReadWriteLock::ReadGuard guard(GetReadWriteLock());
    const dp::MutexGuard answerGuard(answerMutex_);
    if (IsDestroyed() || picks.GetEvaluation() != evaluation_) return;
    for (const auto& question : picks.GetQuestions()) {
      if (!question.IsCurrent()) continue;
      if (ApplyAnswer(question)) changed = true;
      if (!question.answer.isVisible) lost = true;
    }
  }
  if (changed) callout->NotifyCalloutChanged();
  if (lost && HasHiddenLeader(*callout)) RequestSparePicks(callout);
}

void Callouts::OnInsetChanged(const du::SmartPtr<zrannotations::Inset>& inset) {
  CalloutSet callouts;
  {
    const dp::ReadWriteLock::ReadGuard guard(GetReadWriteLock());
    const auto entry = insetTable_.find(inset);
    if (entry != insetTable_.end()) callouts = entry->second;
  }
  for (const auto& callout : callouts) {
    callout->SetVisibleWithinInsetBounds(inset);
    callout->NotifyCalloutChanged();
  }
}

}  // namespace zrcallouts
