#include <zrk/AnnoSet.h>

#include <utility>

#include <zrk/AnnoSetVisitor.h>
#include <zrk/Annotation.h>
#include <zrk/MakeObject.h>
#include <zrk/Operation.h>
#include <zrk/Scene.h>
#include <zrk/SceneListener.h>

#include "AnnoSetStep.h"

namespace zrk {

namespace {

using AnnotationVector = std::vector<du::SmartPtr<Annotation>>;

}  // namespace

AnnoSet::AnnoSet(Scene* owner) : link_(std::make_shared<BackLink<Scene>>()) {
  link_->Set(owner);
}

AnnoSet::~AnnoSet() {
  link_->Set(nullptr);
}

void AnnoSet::AddAnnotationToSet(const du::SmartPtr<Annotation>& annotation, const du::SmartPtr<Operation>& operation) {
  Place place;
  place.isMember = true;
  Add(annotation, place, operation);
}

void AnnoSet::RemoveAnnotationFromSet(const du::SmartPtr<Annotation>& annotation,
                                      const du::SmartPtr<Operation>& operation) {
  Remove(annotation, false, operation);
}

void AnnoSet::RemoveAnnotationWithDependencies(const du::SmartPtr<Annotation>& annotation,
                                               const du::SmartPtr<Operation>& operation) {
  std::set<const Annotation*> visited;
  RemoveTree(annotation, false, operation, visited);
}

void AnnoSet::RemoveRefAnnotationWithDependencies(const du::SmartPtr<Annotation>& annotation,
                                                  const du::SmartPtr<Operation>& operation) {
  std::set<const Annotation*> visited;
  RemoveTree(annotation, true, operation, visited);
}

void AnnoSet::GetRefAnnotationsByType(unsigned type, std::set<du::SmartPtr<Annotation>>& annotations,
                                      bool includeMembers) const {
  AnnotationVector candidates = GetReferencedAnnotations();
  if (includeMembers) {
    const AnnotationVector members = GetAnnotations();
    candidates.insert(candidates.end(), members.begin(), members.end());
  }
  for (const du::SmartPtr<Annotation>& candidate : candidates) {
    if (candidate->GetAnnotationType() == type) annotations.insert(candidate);
  }
}

std::vector<du::SmartPtr<Annotation>> AnnoSet::GetReferencedAnnotations() const {
  const dp::MutexGuard guard(mutex_);
  AnnotationVector result;
  result.reserve(referenced_.size());
  for (const auto& entry : referenced_) result.push_back(entry.second);
  return result;
}

void AnnoSet::RemoveReferencedAnnotation(const du::SmartPtr<Annotation>& annotation) {
  const dp::MutexGuard guard(mutex_);
  std::uint64_t position = 0;
  Leave(referenced_, referencedIndex_, annotation.Get(), position);
}

void AnnoSet::Visit(AnnoSetVisitor& visitor) const {
  const AnnotationVector members = GetAnnotations();
  for (const du::SmartPtr<Annotation>& member : members) {
    if (!visitor.Visit(member)) return;
  }
  if (!visitor.IncludesReferenced()) return;
  const std::set<du::SmartPtr<Annotation>> visited(members.begin(), members.end());
  for (const du::SmartPtr<Annotation>& referenced : GetReferencedAnnotations()) {
    if (!visited.count(referenced) && !visitor.Visit(referenced)) return;
  }
}

bool AnnoSet::Contains(const du::SmartPtr<Annotation>& annotation) const {
  const dp::MutexGuard guard(mutex_);
  return memberIndex_.count(annotation.Get()) != 0;
}

std::vector<du::SmartPtr<Annotation>> AnnoSet::GetAnnotations() const {
  const dp::MutexGuard guard(mutex_);
  AnnotationVector result;
  result.reserve(members_.size());
  for (const auto& entry : members_) result.push_back(entry.second);
  return result;
}

std::size_t AnnoSet::GetCount() const {
  const dp::MutexGuard guard(mutex_);
  return members_.size();
}

void AnnoSet::AddReferencedAnnotation(const du::SmartPtr<Annotation>& annotation) {
  if (!annotation) return;
  const dp::MutexGuard guard(mutex_);
  if (closed_) return;
  Enter(referenced_, referencedIndex_, annotation, nextOrder_++);
}

void AnnoSet::AddDependency(const du::SmartPtr<Annotation>& master, const du::SmartPtr<Annotation>& dependent) {
  if (!master || !dependent) return;
  const dp::MutexGuard guard(mutex_);
  if (closed_) return;
  dependents_[master].push_back(dependent);
}

du::SmartPtr<Scene> AnnoSet::GetScene() const {
  return link_->Get();
}

std::shared_ptr<BackLink<Scene>> AnnoSet::GetSceneLink() const {
  return link_;
}

void AnnoSet::DetachScene() {
  link_->Set(nullptr);
}

void AnnoSet::AttachScene(Scene* owner) {
  link_->Set(owner);
}

void AnnoSet::Close() {
  // The last references to annotations go after the lock is released: destructors may call out.
  Order members;
  Order referenced;
  std::map<du::SmartPtr<Annotation>, AnnotationVector> dependents;
  {
    const dp::MutexGuard guard(mutex_);
    closed_ = true;
    members.swap(members_);
    referenced.swap(referenced_);
    dependents.swap(dependents_);
    memberIndex_.clear();
    referencedIndex_.clear();
  }
  for (const auto& entry : members) entry.second->SetSceneLink(nullptr);
}

AnnoSet::Place AnnoSet::Take(const du::SmartPtr<Annotation>& annotation, bool alsoReferenced) {
  Place place;
  const dp::MutexGuard guard(mutex_);
  place.isMember = Leave(members_, memberIndex_, annotation.Get(), place.memberOrder);
  if (place.isMember) annotation->SetSceneLink(nullptr);
  place.isReferenced = alsoReferenced && Leave(referenced_, referencedIndex_, annotation.Get(), place.referenceOrder);
  return place;
}

void AnnoSet::Add(const du::SmartPtr<Annotation>& annotation, Place place, const du::SmartPtr<Operation>& operation) {
  if (!annotation) return;
  {
    const dp::MutexGuard guard(mutex_);
    if (closed_) return;
    if (place.memberOrder == 0) place.memberOrder = nextOrder_++;
    if (!Enter(members_, memberIndex_, annotation, place.memberOrder)) return;
    annotation->SetSceneLink(link_);
  }
  annotation->OnEnteredSet();
  if (operation) operation->AddStep(MakeObject<AnnoSetStep>(AnnoSetStep::Kind::Added, this, annotation, place));
  Notify([&](SceneListener& listener) { listener.OnAddAnnotation(annotation); });
}

void AnnoSet::PutBack(const du::SmartPtr<Annotation>& annotation, const Place& place) {
  if (place.isReferenced) {
    const dp::MutexGuard guard(mutex_);
    Enter(referenced_, referencedIndex_, annotation, place.referenceOrder);
  }
  if (place.isMember) Add(annotation, place, nullptr);
}

void AnnoSet::Remove(const du::SmartPtr<Annotation>& annotation, bool alsoReferenced,
                     const du::SmartPtr<Operation>& operation) {
  const Place place = Take(annotation, alsoReferenced);
  if (!place.isMember && !place.isReferenced) return;
  if (operation) operation->AddStep(MakeObject<AnnoSetStep>(AnnoSetStep::Kind::Removed, this, annotation, place));
  Notify([&](SceneListener& listener) { listener.OnRemoveAnnotation(annotation); });
}

void AnnoSet::RemoveTree(const du::SmartPtr<Annotation>& annotation, bool alsoReferenced,
                         const du::SmartPtr<Operation>& operation, std::set<const Annotation*>& visited) {
  // Dependencies may form a ring; and a reaction to the announcement may already have taken the annotation out.
  if (!IsKnown(annotation, alsoReferenced) || !visited.insert(annotation.Get()).second) return;
  if (operation) {
    Notify([&](SceneListener& listener) { listener.OnAnnotationDeleted(annotation, operation); });
  }
  for (const du::SmartPtr<Annotation>& dependent : GetDependents(annotation)) {
    RemoveTree(dependent, alsoReferenced, operation, visited);
  }
  Remove(annotation, alsoReferenced, operation);
}

bool AnnoSet::IsKnown(const du::SmartPtr<Annotation>& annotation, bool alsoReferenced) const {
  const dp::MutexGuard guard(mutex_);
  return memberIndex_.count(annotation.Get()) != 0 || (alsoReferenced && referencedIndex_.count(annotation.Get()) != 0);
}

std::vector<du::SmartPtr<Annotation>> AnnoSet::GetDependents(const du::SmartPtr<Annotation>& master) const {
  const dp::MutexGuard guard(mutex_);
  const auto found = dependents_.find(master);
  return found == dependents_.end() ? AnnotationVector() : found->second;
}

void AnnoSet::Notify(const std::function<void(SceneListener&)>& call) const {
  const du::SmartPtr<Scene> scene = GetScene();
  if (!scene) return;
  for (const du::SmartPtr<SceneListener>& listener : scene->GetListeners()) call(*listener);
}

bool AnnoSet::Enter(Order& order, Index& index, const du::SmartPtr<Annotation>& annotation, std::uint64_t position) {
  const auto [entry, isNew] = index.emplace(annotation.Get(), position);
  if (!isNew) return false;
  try {
    order.emplace(position, annotation);
  } catch (...) {
    index.erase(entry);  // both or neither
    throw;
  }
  return true;
}

bool AnnoSet::Leave(Order& order, Index& index, const Annotation* annotation, std::uint64_t& position) {
  const auto found = index.find(annotation);
  if (found == index.end()) return false;
  position = found->second;
  index.erase(found);
  order.erase(position);
  return true;
}

}  // namespace zrk
