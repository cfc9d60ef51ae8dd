// Leader anchors on points of their parts that can be seen: the picks that find them and what their answers change.
//
// A callout's picks are answered one by one, at once or later, in any order and on any thread; AnchorPicks hands them
// over together. What was asked about may have changed by then: an answer counts for a leader that still has the anchor
// it was asked about. Answers are applied one callout at a time, with the engine's read lock held so that no leader
// comes or goes meanwhile; listeners hear of it afterwards, with no lock held.
#include <dp/ReadWriteLock.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CalloutLeader.h>
#include <zrannotations/Inset.h>
#include <zrk/ShapeInstance.h>
#include <zrk/ShapeScene.h>
#include <zrk/ShapeView.h>

#include <algorithm>

#include "engine/EngineLink.h"
#include "hostlayer/HostLayer.h"
#include "visibility/AnchorPicks.h"
#include "zrcallouts/Callouts.h"

using zrannotations::Callout;
using zrannotations::CalloutLeader;
using LeaderPtr = du::SmartPtr<CalloutLeader>;

namespace zrcallouts {

namespace {

// Leaders on parts that cannot be seen, and hidden ones on parts that can.
struct Sights {
  std::set<LeaderPtr> lost;
  std::set<LeaderPtr> spare;
};

// Each shown leader on a part that cannot be seen gives its place to a hidden leader, in position order.
bool ExchangeHiddenFlags(const Callout& callout, const Sights& sights) {
  const auto leaders = callout.GetLeaders();
  auto spare = leaders.begin();
  bool changed = false;
  for (const auto& leader : leaders) {
    if (leader->IsHidden() || sights.lost.count(leader) == 0) continue;
    spare = std::find_if(spare, leaders.end(), [&](const auto& l) { return sights.spare.count(l) != 0; });
    if (spare == leaders.end()) break;
    leader->SetHidden(true);
    (*spare++)->SetHidden(false);
    changed = true;
  }
  return changed;
}

bool PlaceAnchor(const AnchorPicks::Question& question) {
  if (!question.answer.isVisible) return false;
  question.leader->SetAnchor(question.answer.deepest);
  question.leader->SetAnchorCalculated(true);
  return true;
}

}  // namespace

void Callouts::RequestAnchorPick(const du::SmartPtr<Callout>& callout) {
  const auto scene = GetScene();
  const auto view = scene ? du::DynamicCast<zrk::ShapeView>(scene->GetView(0)) : nullptr;
  if (!callout || !view || IsDestroyed()) return;
  const du::SmartPtr<AnchorPicks> picks(new AnchorPicks(AnchorPicks::Kind::PlaceAnchor, link_, callout, evaluation_));
  for (const auto& leader : callout->GetLeaders()) {
    if (!leader->IsAnchorCalculated()) picks->Add(leader);
  }
  picks->Request(view);
}

// The leaders that could step in for one whose part cannot be seen; where they can be seen now has to be asked anew.
void Callouts::RequestSparePicks(const du::SmartPtr<Callout>& callout) {
  const auto scene = GetScene();
  const auto view = scene ? du::DynamicCast<zrk::ShapeView>(scene->GetView(0)) : nullptr;
  if (!view || IsDestroyed()) return;
  const du::SmartPtr<AnchorPicks> picks(new AnchorPicks(AnchorPicks::Kind::PlaceAnchor, link_, callout, evaluation_));
  for (const auto& leader : callout->GetLeaders()) {
    if (leader->IsHidden() && !leader->GetInset()) picks->Add(leader);
  }
  picks->Request(view);
}

void Callouts::OnReceivePick(const AnchorPicks& picks) {
  const auto& callout = picks.GetCallout();
  bool changed = false;
  {
    const dp::ReadWriteLock::ReadGuard guard(GetReadWriteLock());
    const dp::MutexGuard answerGuard(answerMutex_);
    if (IsDestroyed()) return;
    const bool marks = !DrawsHiddenAsUsual();
    Sights sights;
    for (const auto& leader : callout->GetLeaders()) {
      if (hostlayer::IsOccluded(leader)) sights.lost.insert(leader);
    }
    for (const auto& question : picks.GetQuestions()) {
      if (!question.IsCurrent()) continue;
      const auto& leader = question.leader;
      if (PlaceAnchor(question)) {
        changed = true;
        sights.lost.erase(leader);
        if (leader->IsHidden()) sights.spare.insert(leader);
      } else {
        sights.lost.insert(leader);
      }
      if (hostlayer::SetOccluded(leader, marks && !question.answer.isVisible)) changed = true;
    }
    if (ExchangeHiddenFlags(*callout, sights)) changed = true;
  }
  if (changed) callout->NotifyCalloutChanged();
}

// Lock-free: each of these operations takes the locks of the callout, its leaders and their insets only.
void Callouts::OnAnnotationModified(const du::SmartPtr<zrk::Annotation>& annotation, bool geometryOnly) {
  const auto callout = geometryOnly ? du::DynamicCast<Callout>(annotation) : nullptr;
  if (!callout) return;
  std::set<du::SmartPtr<zrannotations::Inset>> insets;
  for (const auto& leader : callout->GetLeaders()) {
    const auto inset = leader->GetInset();
    if (inset && insets.insert(inset).second) callout->SetVisibleWithinInsetBounds(inset);
  }
}

}  // namespace zrcallouts
