#include <dom/ManagedObject.h>

#include <dom/ObjectManager.h>

namespace dom {

// The manager of the original does not know the copy.
ManagedObject::ManagedObject(const ManagedObject& other) : RefCounted(other) {}

ManagedObject& ManagedObject::operator=(const ManagedObject&) {
  return *this;
}

ManagedObject::~ManagedObject() {
  if (ObjectManager* manager = manager_.exchange(nullptr)) manager->Forget(*this);
}

void ManagedObject::ManageObject(ObjectManager* manager) {
  if (!manager) return;
  ObjectManager* previous = manager_.exchange(manager);
  if (previous == manager) return;
  if (previous) previous->Forget(*this);
  manager->Manage(*this);
}

bool ManagedObject::IsManaged() const {
  return manager_.load() != nullptr;
}

void ManagedObject::ReleaseFromManager(const ObjectManager& manager) {
  ObjectManager* expected = const_cast<ObjectManager*>(&manager);
  manager_.compare_exchange_strong(expected, nullptr);
}

}  // namespace dom
