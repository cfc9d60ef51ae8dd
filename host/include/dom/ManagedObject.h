#pragma once

#include <atomic>

#include <du/Export.h>
#include <du/RefCounted.h>

namespace dom {

class ObjectManager;

/// A counted object that an ObjectManager knows of; base of all observers. The manager outlives it or is told to let go
/// with ReleaseFromManager.
class ZR_HOST_API ManagedObject : public virtual du::RefCounted {
public:
  ManagedObject() = default;
  ManagedObject(const ManagedObject& other);
  ManagedObject& operator=(const ManagedObject& other);
  ~ManagedObject() override;

  /// Enters the object with the manager, leaving another one first. Null does nothing; calling twice is harmless.
  void ManageObject(ObjectManager* manager);
  [[nodiscard]] bool IsManaged() const;
  /// Called by a manager that ends before the object does.
  void ReleaseFromManager(const ObjectManager& manager);

private:
  std::atomic<ObjectManager*> manager_{nullptr};
};

}  // namespace dom
