#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <vector>

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/BackLink.h>
#include <zrk/Object.h>

namespace zrk {

class Annotation;
class AnnoSetVisitor;
class Operation;
class Scene;
class SceneListener;

/// The annotations of one scene: members (shown), and referenced annotations, which something still refers to without
/// their being shown. Membership costs O(log n). Changes notify the listeners of the scene on the calling thread, after
/// the change and with no lock of the set held. [any-thread]
class ZR_HOST_API AnnoSet : public Object {
public:
  /// `owner` may be null and may be under construction; no reference is taken.
  explicit AnnoSet(Scene* owner = nullptr);
  ~AnnoSet() override;

  /// Appends the annotation and sends OnAddAnnotation; nothing for a member or null. With an operation the addition is
  /// an undoable step. A listener may remove the annotation again inside the notification.
  void AddAnnotationToSet(const du::SmartPtr<Annotation>& annotation, const du::SmartPtr<Operation>& operation);
  /// Takes the annotation out and sends OnRemoveAnnotation; nothing for a non-member.
  void RemoveAnnotationFromSet(const du::SmartPtr<Annotation>& annotation, const du::SmartPtr<Operation>& operation);
  /// Removes the annotation after its dependents, dependents of dependents first. With an operation each removal is
  /// announced by OnAnnotationDeleted while the annotation is still in the set. Nothing for a non-member.
  void RemoveAnnotationWithDependencies(const du::SmartPtr<Annotation>& annotation,
                                        const du::SmartPtr<Operation>& operation);
  /// The same for an annotation of either collection; it leaves both.
  void RemoveRefAnnotationWithDependencies(const du::SmartPtr<Annotation>& annotation,
                                           const du::SmartPtr<Operation>& operation);
  /// Adds the referenced annotations of a kind to `annotations`, and with `includeMembers` the members of that kind.
  void GetRefAnnotationsByType(unsigned type, std::set<du::SmartPtr<Annotation>>& annotations,
                               bool includeMembers) const;
  /// A copy, in the order in which they were referenced.
  [[nodiscard]] std::vector<du::SmartPtr<Annotation>> GetReferencedAnnotations() const;
  /// Forgets the reference, silently; nothing when there is none.
  void RemoveReferencedAnnotation(const du::SmartPtr<Annotation>& annotation);
  /// Visits a copy of the members in their order, then, when the visitor wants them, the referenced annotations that
  /// are no members.
  void Visit(AnnoSetVisitor& visitor) const;

  [[nodiscard]] bool Contains(const du::SmartPtr<Annotation>& annotation) const;
  /// The members in their order.
  [[nodiscard]] std::vector<du::SmartPtr<Annotation>> GetAnnotations() const;
  [[nodiscard]] std::size_t GetCount() const;
  /// Notes that something outside the set refers to the annotation.
  void AddReferencedAnnotation(const du::SmartPtr<Annotation>& annotation);
  /// From now on `dependent` goes when `master` is removed with its dependencies.
  void AddDependency(const du::SmartPtr<Annotation>& master, const du::SmartPtr<Annotation>& dependent);

  /// The owning scene; null once it is gone.
  [[nodiscard]] du::SmartPtr<Scene> GetScene() const;
  /// The link behind GetScene, for those that must not keep the scene alive. Never null.
  [[nodiscard]] std::shared_ptr<BackLink<Scene>> GetSceneLink() const;
  /// Cuts the set off its scene: no more notifications. Called when the scene dies or takes another set.
  void DetachScene();
  /// Makes `owner` the scene of the set and of its members, as Scene::SetAnnoSet needs it.
  void AttachScene(Scene* owner);
  /// Empties both collections and the dependencies without notifications. Nothing enters the set any more: whoever is
  /// still at work on another thread must not fill the set of a closed scene again.
  void Close();

private:
  friend class AnnoSetStep;
  /// Where an annotation stood: what undo needs to put it back.
  struct Place {
    bool isMember = false;
    bool isReferenced = false;
    std::uint64_t memberOrder = 0;
    std::uint64_t referenceOrder = 0;
  };
  using Order = std::map<std::uint64_t, du::SmartPtr<Annotation>>;
  using Index = std::map<const Annotation*, std::uint64_t>;
  using Link = std::shared_ptr<BackLink<Scene>>;

  [[nodiscard]] Place Take(const du::SmartPtr<Annotation>& annotation, bool alsoReferenced);
  void Add(const du::SmartPtr<Annotation>& annotation, Place place, const du::SmartPtr<Operation>& operation);
  void PutBack(const du::SmartPtr<Annotation>& annotation, const Place& place);
  void Remove(const du::SmartPtr<Annotation>& annotation, bool alsoReferenced,
              const du::SmartPtr<Operation>& operation);
  void RemoveTree(const du::SmartPtr<Annotation>& annotation, bool alsoReferenced,
                  const du::SmartPtr<Operation>& operation, std::set<const Annotation*>& visited);
  [[nodiscard]] bool IsKnown(const du::SmartPtr<Annotation>& annotation, bool alsoReferenced) const;
  [[nodiscard]] std::vector<du::SmartPtr<Annotation>> GetDependents(const du::SmartPtr<Annotation>& master) const;
  void Notify(const std::function<void(SceneListener&)>& call) const;
  static bool Enter(Order& order, Index& index, const du::SmartPtr<Annotation>& annotation, std::uint64_t position);
  static bool Leave(Order& order, Index& index, const Annotation* annotation, std::uint64_t& position);

  mutable dp::Mutex mutex_;
  const Link link_;
  bool closed_ ZR_GUARDED_BY(mutex_) = false;
  std::uint64_t nextOrder_ ZR_GUARDED_BY(mutex_) = 1;
  Order members_ ZR_GUARDED_BY(mutex_);
  Index memberIndex_ ZR_GUARDED_BY(mutex_);
  Order referenced_ ZR_GUARDED_BY(mutex_);
  Index referencedIndex_ ZR_GUARDED_BY(mutex_);
  std::map<du::SmartPtr<Annotation>, std::vector<du::SmartPtr<Annotation>>> dependents_ ZR_GUARDED_BY(mutex_);
};

}  // namespace zrk
