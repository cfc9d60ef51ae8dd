#include <zrannotations/CombinedCallout.h>

#include <algorithm>

#include <zrannotations/CalloutSnapshot.h>
#include <zrk/Scene.h>
#include <zrk/illustration/CalloutTemplateObserver.h>
#include <zrk/illustration/TAnnotation.h>

#include "MemberLabels.h"

namespace zrannotations {

CombinedCallout::CombinedCallout() : ownLink_(std::make_shared<zrk::BackLink<CombinedCallout>>()) {
  ownLink_->Set(this);
}

CombinedCallout::~CombinedCallout() {
  ownLink_->Set(nullptr);
}

std::vector<du::SmartPtr<Callout>>& CombinedCallout::GetCalloutVec() {
  return members_;
}

unsigned CombinedCallout::GetCount() const {
  return static_cast<unsigned>(GetMembers().size());
}

du::SmartPtr<Callout> CombinedCallout::RemoveItemId(std::uint32_t itemId) {
  du::SmartPtr<Callout> member;
  bool wasFirst = false;
  {
    const dp::MutexGuard guard(membersMutex_);
    const auto found = std::find_if(members_.begin(), members_.end(), [itemId](const du::SmartPtr<Callout>& candidate) {
      return candidate->CarriesItemId(itemId);
    });
    if (found == members_.end()) return nullptr;
    member = *found;
    wasFirst = found == members_.begin();
    members_.erase(found);
  }
  member->SetParentLink(nullptr);
  if (wasFirst) UpdateLeaderLine();
  return member;
}

void CombinedCallout::UpdateLeaderLine() {
  const MemberVector members = GetMembers();
  if (members.empty()) return;
  LeaderVector leaders;
  for (const du::SmartPtr<CalloutLeader>& leader : members.front()->GetLeaders()) leaders.push_back(leader->Clone());
  SetLeaders(leaders);
}

void CombinedCallout::ReattachChildren() {
  const du::SmartPtr<zrk::Scene> subset = GetSubsetScene();
  const std::string subsetName = GetSubsetSceneName();
  for (const du::SmartPtr<Callout>& member : GetMembers()) {
    member->SetParentLink(ownLink_);
    if (subset) member->AttachSubsetScene(subset, subsetName);
  }
}

std::string CombinedCallout::GenerateLabelString(const du::SmartPtr<CombinedCallout>& combined,
                                                 const MemberLabel& member) {
  if (!combined) return {};
  return JoinMemberLabels<Callout>(combined->GetMembers(), member, combined->GetSeparator());
}

bool CombinedCallout::GetItemId(std::uint32_t& itemId) const {
  const MemberVector members = GetMembers();
  return !members.empty() && members.front()->GetItemId(itemId);
}

bool CombinedCallout::HasItemId() const {
  const MemberVector members = GetMembers();
  return std::any_of(members.begin(), members.end(),
                     [](const du::SmartPtr<Callout>& member) { return member->HasItemId(); });
}

bool CombinedCallout::CarriesItemId(std::uint32_t itemId) const {
  const MemberVector members = GetMembers();
  return std::any_of(members.begin(), members.end(),
                     [itemId](const du::SmartPtr<Callout>& member) { return member->CarriesItemId(itemId); });
}

bool CombinedCallout::IsCompoundCallout() const {
  return true;
}

void CombinedCallout::AddMember(const du::SmartPtr<Callout>& member) {
  if (!member) return;
  {
    const dp::MutexGuard guard(membersMutex_);
    if (std::find(members_.begin(), members_.end(), member) != members_.end()) return;
    members_.push_back(member);
  }
  member->SetParentLink(ownLink_);
}

void CombinedCallout::SetSeparator(const std::string& separator) {
  const dp::MutexGuard guard(membersMutex_);
  separator_ = separator;
}

std::string CombinedCallout::GetSeparator() const {
  const dp::MutexGuard guard(membersMutex_);
  return separator_;
}

CalloutSnapshot CombinedCallout::TakeSnapshot() const {
  CalloutSnapshot snapshot = Callout::TakeSnapshot();
  snapshot.members = GetMembers();
  return snapshot;
}

void CombinedCallout::RestoreSnapshot(const CalloutSnapshot& snapshot, std::int32_t aspects) {
  if (aspects & CalloutSnapshot::Members) {
    MemberVector previous = snapshot.members;
    {
      const dp::MutexGuard guard(membersMutex_);
      members_.swap(previous);
    }
    for (const du::SmartPtr<Callout>& member : previous) {
      if (member->GetParent().Get() == this) member->SetParentLink(nullptr);
    }
    ReattachChildren();
  }
  Callout::RestoreSnapshot(snapshot, aspects);
}

Callout::LeaderVector CombinedCallout::GetFollowingLeaders() const {
  LeaderVector leaders = GetLeaders();
  for (const du::SmartPtr<Callout>& member : GetMembers()) {
    const LeaderVector more = member->GetFollowingLeaders();
    leaders.insert(leaders.end(), more.begin(), more.end());
  }
  return leaders;
}

CombinedCallout::MemberVector CombinedCallout::GetMembers() const {
  const dp::MutexGuard guard(membersMutex_);
  return members_;
}

}  // namespace zrannotations
