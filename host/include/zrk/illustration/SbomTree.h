#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>

#include <dp/Mutex.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <du/Symbol.h>
#include <zrk/PropertyTable.h>
#include <zrk/illustration/BaseTree.h>

namespace zrk {

class Instance;

namespace illustration {

class SbomInstance;
class SbomTreeObserver;

/// The service structure: one root with everything below it. Changes are made here and reach the observers on the
/// changing thread, after the change, between a begin and an end notification: those of an open update, or a pair of
/// the change's own.
class ZR_HOST_API SbomTree : public BaseTree {
public:
  SbomTree();
  ~SbomTree() override;

  /// With `replay` the observer is first told of everything the tree holds, as one update.
  void RegisterObserver(const du::SmartPtr<SbomTreeObserver>& observer, bool replay);

  /// Null before CreateRoot and after DestroyTree.
  [[nodiscard]] du::SmartPtr<SbomInstance> GetRoot() const;
  /// The instance of that id, or null. O(log n).
  [[nodiscard]] du::SmartPtr<SbomInstance> FindInstance(const std::string& id) const;

  /// Makes the root; the present root when there is one.
  du::SmartPtr<SbomInstance> CreateRoot(const std::string& name, const du::SmartPtr<Instance>& ebom);
  /// Adds an instance below `parent`, which must be in the tree, and binds `ebom` to it. Null when it is not.
  du::SmartPtr<SbomInstance> AddInstance(const du::SmartPtr<SbomInstance>& parent, const std::string& name,
                                         const du::SmartPtr<Instance>& ebom);
  /// Takes the instance and what is below it out of the tree; an instance of another tree changes nothing.
  void RemoveInstance(const du::SmartPtr<SbomInstance>& instance);

  /// Brings an instance that was removed back, with what is below it, as the child of `parent` at that position. False
  /// when the parent is not in the tree or something of that id is.
  bool PutBackInstance(const du::SmartPtr<SbomInstance>& parent, std::size_t position,
                       const du::SmartPtr<SbomInstance>& instance);

  /// Stores a property value; an empty group is the instance's default group.
  void SetProperty(const du::SmartPtr<SbomInstance>& instance, const du::Symbol& group, const du::Symbol& name,
                   const du::Symbol& value, const du::Symbol& shapeSource);
  /// Stores the value for the shape source, or takes it out when there is none. Besides what an added or removed
  /// property sends, observers hear of a changed property in the same update: whatever shows it is out of date.
  void SetPropertyValue(const du::SmartPtr<SbomInstance>& instance, const PropertyTable::Key& key,
                        const du::Symbol& shapeSource, const std::optional<du::Symbol>& value);
  void RemoveProperty(const du::SmartPtr<SbomInstance>& instance, const du::Symbol& group, const du::Symbol& name);
  /// Says which group an empty group symbol stands for; a property-group change for the observers.
  void SetDefaultPropertyGroup(const du::SmartPtr<SbomInstance>& instance, const du::Symbol& group);

  /// Tells every observer that the tree is going, then drops the structure.
  void DestroyTree();

protected:
  void OnUpdateBegun() override;
  void OnUpdateEnded() override;

private:
  template <class Notify>
  void NotifyEach(const Notify& notify) const;
  template <class Notify>
  void NotifyChange(const Notify& notify);
  [[nodiscard]] bool Contains(const du::SmartPtr<SbomInstance>& instance) const;

  mutable dp::Mutex mutex_;
  du::SmartPtr<SbomInstance> root_ ZR_GUARDED_BY(mutex_);
  std::map<std::string, du::SmartPtr<SbomInstance>> byId_ ZR_GUARDED_BY(mutex_);
};

}  // namespace illustration
}  // namespace zrk
