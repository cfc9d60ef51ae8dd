#pragma once

#include <atomic>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <dp/Mutex.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <du/Symbol.h>
#include <zrk/BackLink.h>
#include <zrk/BaseInstance.h>
#include <zrk/PropertyTable.h>

namespace zrk {

class Instance;

namespace illustration {

class SbomTree;

/// One occurrence in the service structure. It owns its children; its parent is a plain link that empties when the
/// parent goes. Made and changed by its SbomTree; reading is thread-safe. Allocated at ascending addresses, so that
/// the order of addresses is the order of creation.
class ZR_HOST_API SbomInstance : public BaseInstance {
public:
  ~SbomInstance() override;

  static void* operator new(std::size_t size) noexcept;
  static void operator delete(void* memory) noexcept;

  /// Null at the root and after the instance was taken out of its tree.
  [[nodiscard]] du::SmartPtr<SbomInstance> GetParent() const;
  /// In the order in which they were added.
  [[nodiscard]] std::vector<du::SmartPtr<SbomInstance>> GetChildren() const;
  /// The design-side occurrence; null when none was given.
  [[nodiscard]] du::SmartPtr<Instance> GetEbomInstance() const;
  /// Inserts the design-side instances that stand for this one: its own for a part, those of all parts below it for a
  /// weld or an assembly. False when there is none. Linear in the size of the part of the structure below.
  bool GetEbomInstancesForWeld(std::set<du::SmartPtr<Instance>>& instances) const;
  /// The outermost weld among the instance itself and its ancestors; null when there is none.
  [[nodiscard]] du::SmartPtr<SbomInstance> GetTopWeld() const;
  [[nodiscard]] bool IsWeld() const;
  /// Whether one of the ancestors is a weld. Constant time.
  [[nodiscard]] bool IsWeldMember() const;
  /// Makes the instance a weld or an ordinary instance again; linear in the number of instances below.
  void SetWeld(bool weld);

  [[nodiscard]] std::string GetName() const;
  /// Path of names from the root, joined by '/'; equal siblings carry "#2", "#3" and so on. A '/' inside a name reads
  /// '|', an empty name "unnamed". Stays for the life of the instance.
  [[nodiscard]] du::Symbol GetId() const override;
  [[nodiscard]] unsigned GetDepth() const override;
  [[nodiscard]] bool HasChildren() const override;
  [[nodiscard]] du::SmartPtr<Property> GetProperty(const du::Symbol& group, const du::Symbol& name,
                                                   const du::Symbol& shapeSource = du::Symbol::EMPTY) const override;
  [[nodiscard]] std::string GetObjectName() const override;

  /// Reading only: SbomTree changes properties, so that its observers hear of it.
  [[nodiscard]] const PropertyTable& GetProperties() const;

private:
  friend class SbomTree;
  SbomInstance(const du::SmartPtr<SbomInstance>& parent, const std::string& id, const std::string& name,
               const du::SmartPtr<Instance>& ebom);
  static du::SmartPtr<SbomInstance> Create(const du::SmartPtr<SbomInstance>& parent, const std::string& name,
                                           const du::SmartPtr<Instance>& ebom);
  [[nodiscard]] std::string TakeSegment(const std::string& name);
  void AddChild(const du::SmartPtr<SbomInstance>& child);
  void PutBackChild(const du::SmartPtr<SbomInstance>& child, std::size_t position);
  bool RemoveChild(const du::SmartPtr<SbomInstance>& child);
  void Detach(const SbomInstance* parent);
  void SetBelowWeld(bool below);

  const std::string name_;
  const du::Symbol id_;
  const unsigned depth_;
  const du::SmartPtr<Instance> ebom_;
  BackLink<SbomInstance> parent_;
  PropertyTable properties_;
  std::atomic<bool> weld_{false};
  std::atomic<bool> belowWeld_{false};
  mutable dp::Mutex mutex_;
  std::vector<du::SmartPtr<SbomInstance>> children_ ZR_GUARDED_BY(mutex_);
  std::set<std::string> segments_ ZR_GUARDED_BY(mutex_);
  std::map<std::string, unsigned> segmentCounts_ ZR_GUARDED_BY(mutex_);
};

}  // namespace illustration
}  // namespace zrk
