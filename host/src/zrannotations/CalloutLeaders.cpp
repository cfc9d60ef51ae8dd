// Leaders of a callout by position, and how they are made.

#include <algorithm>

#include <zrannotations/Callout.h>
#include <zrannotations/CombinedCallout.h>
#include <zrannotations/Inset.h>
#include <zrk/ShapeInstance.h>
#include <zrk/illustration/CalloutTemplateObserver.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/TAnnotation.h>

#include "ShapeGeometry.h"

namespace zrannotations {

unsigned Callout::GetLeaderLineCount(bool includeHidden) const {
  if (includeHidden) {
    const dp::MutexGuard guard(mutex_);
    return static_cast<unsigned>(leaders_.size());
  }
  const LeaderVector leaders = GetLeaders();
  return static_cast<unsigned>(std::count_if(
      leaders.begin(), leaders.end(),
      [](const du::SmartPtr<CalloutLeader>& leader) { return !leader->IsHidden() && leader->IsResolved(); }));
}

std::string Callout::GetAssemblyInstanceIdAtPos(unsigned position) const {
  const du::SmartPtr<CalloutLeader> leader = GetLeaderAtPos(position);
  return leader ? leader->GetAssemblyInstanceId() : std::string();
}

std::string Callout::GetShapeInstanceIdAtPos(unsigned position) const {
  const du::SmartPtr<CalloutLeader> leader = GetLeaderAtPos(position);
  return leader ? leader->GetShapeInstanceId() : std::string();
}

du::SmartPtr<zrk::ShapeInstance> Callout::GetShapeInstanceAtPos(unsigned position) const {
  const du::SmartPtr<CalloutLeader> leader = GetLeaderAtPos(position);
  return leader ? leader->GetShapeInstance() : nullptr;
}

du::SmartPtr<zrk::illustration::SbomInstance> Callout::GetSbomInstanceAtPos(unsigned position) const {
  const du::SmartPtr<CalloutLeader> leader = GetLeaderAtPos(position);
  return leader ? leader->GetSbomInstance() : nullptr;
}

du::SmartPtr<Inset> Callout::GetInsetAtPos(unsigned position) const {
  const du::SmartPtr<CalloutLeader> leader = GetLeaderAtPos(position);
  return leader ? leader->GetInset() : nullptr;
}

void Callout::SetInsetAtPos(const du::SmartPtr<Inset>& inset, unsigned position) {
  const du::SmartPtr<CalloutLeader> leader = GetLeaderAtPos(position);
  if (leader) leader->SetInset(inset);
}

void Callout::SetSymbolIdAtPos(unsigned symbolId, unsigned position) {
  const du::SmartPtr<CalloutLeader> leader = GetLeaderAtPos(position);
  if (leader) leader->SetSymbolId(symbolId);
}

unsigned Callout::GetSymbolIdAtPos(unsigned position) const {
  const du::SmartPtr<CalloutLeader> leader = GetLeaderAtPos(position);
  return leader ? leader->GetSymbolId() : 0;
}

dg::Location Callout::GetInstanceLocationAtPos(unsigned position, bool) const {
  // Leaders and shapes never ask a callout, so that theirs are the inner locks.
  const dp::MutexGuard guard(mutex_);
  return position < leaders_.size() ? leaders_[position]->GetLocation() : dg::Location::IDENTITY;
}

std::vector<du::SmartPtr<CalloutLeader>> Callout::GetLeaders() const {
  const dp::MutexGuard guard(mutex_);
  return leaders_;
}

bool Callout::IsDimmed() const {
  bool dimmed = false;
  for (const du::SmartPtr<CalloutLeader>& leader : GetLeaders()) {
    if (!leader->IsDrawn()) continue;
    if (!leader->IsOccluded()) return false;
    dimmed = true;
  }
  return dimmed;
}

bool Callout::CalculateAnchor(const du::SmartPtr<zrk::ShapeInstance>& shapeInstance, dg::DPoint3D& point) const {
  if (!shapeInstance) return false;
  point = GetModelCenter(*shapeInstance);
  return true;
}

du::SmartPtr<CalloutLeader> Callout::CreateCalloutLeader(const dg::DPoint3D& point,
                                                         const du::SmartPtr<zrk::ShapeInstance>& shapeInstance) {
  return CalloutLeader::MakeForShape(point, shapeInstance);
}

dg::Location Callout::CalculateAssemblyRoughLocation(const ShapeSet& shapeInstances) const {
  return GetRoughLocation(shapeInstances);
}

bool Callout::CalculateAssemblyAnchor(const ShapeSet& shapeInstances, dg::DPoint3D& point) const {
  return GetAssemblyAnchor(shapeInstances, point);
}

du::SmartPtr<CalloutLeader> Callout::CreateCalloutLeader(const dg::DPoint3D& point, const dg::Location& location,
                                                         const du::SmartPtr<zrk::illustration::SbomInstance>& assembly,
                                                         const ShapeSet& shapeInstances) {
  return CalloutLeader::MakeForAssembly(point, location, assembly, shapeInstances);
}

void Callout::ConnectLeader(const du::SmartPtr<CalloutLeader>& leader) {
  if (!leader) return;
  const dp::MutexGuard guard(mutex_);
  if (std::find(leaders_.begin(), leaders_.end(), leader) == leaders_.end()) leaders_.push_back(leader);
}

void Callout::DisconnectLeader(const du::SmartPtr<CalloutLeader>& leader) {
  const dp::MutexGuard guard(mutex_);
  leaders_.erase(std::remove(leaders_.begin(), leaders_.end(), leader), leaders_.end());
}

void Callout::AddUnresolvedLeader(const std::string& shapeId, const std::string& assemblyId) {
  ConnectLeader(CalloutLeader::MakeUnresolved(shapeId, assemblyId));
}

Callout::LeaderVector Callout::GetFollowingLeaders() const {
  return GetLeaders();
}

void Callout::SetLeaders(const LeaderVector& leaders) {
  LeaderVector exchanged = leaders;
  const dp::MutexGuard guard(mutex_);
  leaders_.swap(exchanged);
}

du::SmartPtr<CalloutLeader> Callout::GetLeaderAtPos(unsigned position) const {
  const dp::MutexGuard guard(mutex_);
  return position < leaders_.size() ? leaders_[position] : nullptr;
}

}  // namespace zrannotations
