#include <zrannotations/CalloutLeader.h>

#include <algorithm>
#include <utility>

#include <zrannotations/AssemblyShapes.h>
#include <zrannotations/Inset.h>
#include <zrk/AddressArena.h>
#include <zrk/Instance.h>
#include <zrk/MakeObject.h>
#include <zrk/ShapeInstance.h>
#include <zrk/ShapeScene.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/SbomTree.h>

#include "ShapeGeometry.h"

namespace zrannotations {

namespace {

zrk::AddressArena& GetArena() {
  // Never destroyed: leaders may outlive the statics of this library.
  static zrk::AddressArena* const arena = new zrk::AddressArena(sizeof(CalloutLeader));
  return *arena;
}

std::string GetTargetId(const zrk::ShapeInstance& shape) {
  const du::SmartPtr<zrk::Instance> instance = shape.GetInstance();
  if (!instance) return {};
  const du::SmartPtr<zrk::illustration::SbomInstance> sbomInstance = instance->GetSbomInstance();
  const bool isOwnId = instance->Is3dSymbol() || !sbomInstance;
  return (isOwnId ? instance->GetId() : sbomInstance->GetId()).GetString();
}

bool IsInScene(const du::SmartPtr<zrk::ShapeInstance>& shape) {
  return shape && shape->IsInScene();
}

du::SmartPtr<zrk::illustration::SbomInstance> FindAssembly(const du::SmartPtr<zrk::ShapeScene>& scene,
                                                           const std::string& id) {
  const auto illustrationScene = du::DynamicCast<zrk::illustration::Illustration3dScene>(scene);
  if (!illustrationScene) return nullptr;
  const du::SmartPtr<zrk::illustration::SbomTree> tree = illustrationScene->GetSbomTree();
  return tree ? tree->FindInstance(id) : nullptr;
}

bool IsBelow(du::SmartPtr<zrk::illustration::SbomInstance> instance, const std::string& assemblyId) {
  for (; instance; instance = instance->GetParent()) {
    if (instance->GetId().GetString() == assemblyId) return true;
  }
  return false;
}

}  // namespace

void* CalloutLeader::operator new(std::size_t size) noexcept {
  return GetArena().Allocate(size);
}

void CalloutLeader::operator delete(void* memory) noexcept {
  GetArena().Free(memory);
}

template <class T>
T CalloutLeader::Read(T State::*field) const {
  const dp::MutexGuard guard(mutex_);
  return state_.*field;
}

template <class T>
void CalloutLeader::Store(T State::*field, const T& value) {
  const dp::MutexGuard guard(mutex_);
  state_.*field = value;
}

CalloutLeader::CalloutLeader() = default;

CalloutLeader::~CalloutLeader() = default;

du::SmartPtr<CalloutLeader> CalloutLeader::MakeForShape(const dg::DPoint3D& anchor,
                                                        const du::SmartPtr<zrk::ShapeInstance>& shapeInstance) {
  const auto leader = zrk::MakeObject<CalloutLeader>();
  if (!leader) return leader;
  if (shapeInstance) {
    const dp::MutexGuard guard(leader->mutex_);
    leader->state_.shapeInstance = shapeInstance;
    leader->state_.shapeId = GetTargetId(*shapeInstance);
    leader->state_.location = shapeInstance->GetLocation();
    leader->state_.locationKnown = true;
  }
  leader->ShowAsTarget();
  leader->SetAnchor(anchor);
  return leader;
}

du::SmartPtr<CalloutLeader> CalloutLeader::MakeForAssembly(
    const dg::DPoint3D& anchor, const dg::Location& location,
    const du::SmartPtr<zrk::illustration::SbomInstance>& assembly, const ShapeSet& shapeInstances) {
  const auto leader = zrk::MakeObject<CalloutLeader>();
  if (!leader) return leader;
  {
    const dp::MutexGuard guard(leader->mutex_);
    leader->state_.assembly = assembly;
    if (assembly) leader->state_.assemblyId = assembly->GetId().GetString();
    leader->state_.shapeInstances = shapeInstances;
    leader->state_.location = location;
    leader->state_.locationKnown = true;
  }
  leader->ShowAsTarget();
  leader->SetAnchor(anchor);
  return leader;
}

du::SmartPtr<CalloutLeader> CalloutLeader::MakeUnresolved(const std::string& shapeId, const std::string& assemblyId) {
  const auto leader = zrk::MakeObject<CalloutLeader>();
  if (!leader) return leader;
  const dp::MutexGuard guard(leader->mutex_);
  leader->state_.shapeId = shapeId;
  leader->state_.assemblyId = assemblyId;
  return leader;
}

du::SmartPtr<CalloutLeader> CalloutLeader::Clone() const {
  const auto leader = zrk::MakeObject<CalloutLeader>();
  if (!leader) return leader;
  {
    State state = GetState();
    const dp::MutexGuard guard(leader->mutex_);
    leader->state_ = std::move(state);
  }
  leader->ShowAsTarget();
  return leader;
}

void CalloutLeader::SetHidden(bool hidden) {
  Store(&State::hidden, hidden);
}

bool CalloutLeader::IsHidden() const {
  return Read(&State::hidden);
}

void CalloutLeader::SetVisible(bool visible) {
  Store(&State::visible, visible);
}

bool CalloutLeader::IsVisible() const {
  return Read(&State::visible);
}

void CalloutLeader::SetAnchor(const dg::DPoint3D& point) {
  RefreshAssembly();
  const dp::MutexGuard guard(mutex_);
  state_.anchor = point;
  state_.calculated = false;
}

dg::DPoint3D CalloutLeader::GetAnchor() const {
  RefreshAssembly();
  const dp::MutexGuard guard(mutex_);
  return state_.anchor;
}

void CalloutLeader::SetAnchorCalculated(bool calculated) {
  RefreshAssembly();
  const dp::MutexGuard guard(mutex_);
  state_.calculated = calculated;
  state_.pickedAnchor = state_.anchor;
  state_.pickedLocation = state_.location;
}

bool CalloutLeader::IsAnchorCalculated() const {
  return Read(&State::calculated);
}

void CalloutLeader::SetOccluded(bool occluded) {
  Store(&State::occluded, occluded);
}

bool CalloutLeader::IsOccluded() const {
  return Read(&State::occluded);
}

void CalloutLeader::SetBendPoints(const std::vector<dg::DPoint3D>& points) {
  Store(&State::bendPoints, points);
}

std::vector<dg::DPoint3D> CalloutLeader::GetBendPoints() const {
  return Read(&State::bendPoints);
}

void CalloutLeader::SetInset(const du::SmartPtr<Inset>& inset) {
  // Swapped, so that a last reference to the old inset goes after the lock is released.
  du::SmartPtr<Inset> exchanged = inset;
  const dp::MutexGuard guard(mutex_);
  state_.inset.Swap(exchanged);
  state_.withinInsetBounds = true;
}

du::SmartPtr<Inset> CalloutLeader::GetInset() const {
  return Read(&State::inset);
}

void CalloutLeader::SetSymbolId(unsigned symbolId) {
  Store(&State::symbolId, symbolId);
}

unsigned CalloutLeader::GetSymbolId() const {
  return Read(&State::symbolId);
}

void CalloutLeader::SetWithinInsetBounds(bool within) {
  Store(&State::withinInsetBounds, within);
}

bool CalloutLeader::IsWithinInsetBounds() const {
  return Read(&State::withinInsetBounds);
}

bool CalloutLeader::IsDrawn() const {
  {
    const dp::MutexGuard guard(mutex_);
    if (state_.hidden || !state_.visible || !state_.withinInsetBounds) return false;
  }
  const du::SmartPtr<Inset> inset = GetInset();
  return IsResolved() && (!inset || inset->IsVisible());
}

du::SmartPtr<zrk::ShapeInstance> CalloutLeader::GetShapeInstance() const {
  du::SmartPtr<zrk::ShapeInstance> shape;
  {
    const dp::MutexGuard guard(mutex_);
    shape = state_.shapeInstance;
  }
  return IsInScene(shape) ? shape : nullptr;
}

std::string CalloutLeader::GetShapeInstanceId() const {
  return Read(&State::shapeId);
}

std::string CalloutLeader::GetAssemblyInstanceId() const {
  return Read(&State::assemblyId);
}

du::SmartPtr<zrk::illustration::SbomInstance> CalloutLeader::GetSbomInstance() const {
  du::SmartPtr<zrk::ShapeInstance> shape;
  {
    const dp::MutexGuard guard(mutex_);
    if (!state_.shapeInstance) return state_.assembly;
    shape = state_.shapeInstance;
  }
  const du::SmartPtr<zrk::Instance> instance = shape->GetInstance();
  return instance ? instance->GetSbomInstance() : nullptr;
}

CalloutLeader::ShapeSet CalloutLeader::GetShapeInstances() const {
  const dp::MutexGuard guard(mutex_);
  return state_.shapeInstance ? ShapeSet{state_.shapeInstance} : state_.shapeInstances;
}

bool CalloutLeader::IsAssemblyLeader() const {
  const dp::MutexGuard guard(mutex_);
  return !state_.assemblyId.empty();
}

CalloutLeader::State CalloutLeader::GetState() const {
  const dp::MutexGuard guard(mutex_);
  return state_;
}

bool CalloutLeader::IsResolved() const {
  du::SmartPtr<zrk::ShapeInstance> first;
  {
    const dp::MutexGuard guard(mutex_);
    first = state_.shapeInstance;
    if (!first && !state_.shapeInstances.empty()) first = *state_.shapeInstances.begin();
  }
  if (!first) return false;
  if (IsInScene(first)) return true;
  // Only an assembly whose first shape is gone costs a copy of its set.
  const ShapeSet shapes = GetShapeInstances();
  return std::any_of(shapes.begin(), shapes.end(), IsInScene);
}

dg::Location CalloutLeader::GetLocation() const {
  {
    // A shape only looks at itself here, so the leader may stay locked and spares a reference.
    const dp::MutexGuard guard(mutex_);
    if (IsInScene(state_.shapeInstance)) return state_.shapeInstance->GetLocation();
  }
  RefreshAssembly();
  const dp::MutexGuard guard(mutex_);
  return state_.location;
}

void CalloutLeader::Resolve(const du::SmartPtr<zrk::ShapeScene>& scene) {
  if (!scene) return;
  const State state = GetState();
  if (state.assemblyId.empty()) {
    if (!state.shapeId.empty() && !IsInScene(state.shapeInstance)) TakeShape(scene->FindShapeInstance(state.shapeId));
    return;
  }
  const auto assembly = state.assembly ? state.assembly : FindAssembly(scene, state.assemblyId);
  if (!assembly) return;
  ShapeSet shapes;
  GetShapeInstancesForAssembly(scene, assembly, shapes);
  TakeAssemblyShapes(assembly, std::move(shapes));
}

void CalloutLeader::OnShapeInstanceCreate(const du::SmartPtr<zrk::ShapeInstance>& shapeInstance) {
  if (!shapeInstance) return;
  const State state = GetState();
  if (state.assemblyId.empty()) {
    const bool isOwn = !state.shapeId.empty() && GetTargetId(*shapeInstance) == state.shapeId;
    if (isOwn && !IsInScene(state.shapeInstance)) TakeShape(shapeInstance);
    return;
  }
  const du::SmartPtr<zrk::Instance> instance = shapeInstance->GetInstance();
  if (!instance || !IsBelow(instance->GetSbomInstance(), state.assemblyId)) return;
  const dp::MutexGuard guard(mutex_);
  state_.shapeInstances.insert(shapeInstance);
  state_.stale = true;
}

bool CalloutLeader::OnShapeInstanceLocation(const du::SmartPtr<zrk::ShapeInstance>& shapeInstance) {
  if (!shapeInstance) return false;
  const dg::Location location = shapeInstance->GetLocation();
  const dg::DPoint3D provisional = GetModelCenter(*shapeInstance);
  const dp::MutexGuard guard(mutex_);
  if (state_.shapeInstance == shapeInstance) {
    Follow(location, provisional);
    return true;
  }
  if (state_.shapeInstances.count(shapeInstance) == 0) return false;
  state_.stale = true;
  return true;
}

void CalloutLeader::ShowAsTarget() {
  const ShapeSet shapes = GetShapeInstances();
  if (shapes.empty()) return;
  SetVisible(std::any_of(shapes.begin(), shapes.end(), [](const auto& shape) { return shape->IsVisible(); }));
}

void CalloutLeader::TakeShape(const du::SmartPtr<zrk::ShapeInstance>& shapeInstance) {
  if (!shapeInstance) return;
  const dg::Location location = shapeInstance->GetLocation();
  const dg::DPoint3D provisional = GetModelCenter(*shapeInstance);
  const dp::MutexGuard guard(mutex_);
  state_.shapeInstance = shapeInstance;
  Follow(location, provisional);
}

void CalloutLeader::TakeAssemblyShapes(const du::SmartPtr<zrk::illustration::SbomInstance>& assembly, ShapeSet shapes) {
  const dp::MutexGuard guard(mutex_);
  state_.assembly = assembly;
  if (state_.shapeInstances == shapes) return;
  state_.shapeInstances.swap(shapes);
  state_.stale = true;
}

void CalloutLeader::Follow(const dg::Location& location, const dg::DPoint3D& provisional) const {
  if (!state_.calculated) {
    state_.anchor = provisional;
  } else if (!state_.locationKnown) {
    // A loaded anchor meets its target for the first time: it was placed with the target where it is now.
    state_.pickedLocation = location;
  } else if (IsSame(location, state_.pickedLocation)) {
    // Exactly as picked: a part that comes back brings its anchor back bit by bit.
    state_.anchor = state_.pickedAnchor;
  } else {
    state_.anchor = IntoFrame(state_.pickedAnchor, state_.pickedLocation) * location.GetXform();
  }
  state_.location = location;
  state_.locationKnown = true;
}

void CalloutLeader::RefreshAssembly() const {
  ShapeSet shapes;
  {
    const dp::MutexGuard guard(mutex_);
    if (!state_.stale) return;
    state_.stale = false;
    shapes = state_.shapeInstances;
  }
  dg::DPoint3D provisional;
  if (!GetAssemblyAnchor(shapes, provisional)) return;
  const dg::Location location = GetRoughLocation(shapes);
  const dp::MutexGuard guard(mutex_);
  Follow(location, provisional);
}

}  // namespace zrannotations
