#pragma once

#include <memory>
#include <string>
#include <vector>

#include <du/Export.h>
#include <du/RefCounted.h>
#include <du/SmartPtr.h>
#include <du/Symbol.h>
#include <zrk/ClassType.h>
#include <zrk/MemoryPoolAllocated.h>

namespace zrk {

/// Base of the host's objects: counted, from the memory pool, with a run-time class record and user data by key.
/// The order of the virtual functions is part of the interface. User data is thread-safe.
class ZR_HOST_API Object : public MemoryPoolAllocated, public virtual du::RefCounted {
public:
  Object();
  /// A copy starts without user data; assignment leaves the user data alone.
  Object(const Object& other);
  Object& operator=(const Object& other);
  ~Object() override;

  /// The name of the object's class with its namespaces, for messages.
  [[nodiscard]] virtual const char* GetDebugClassName() const;
  [[nodiscard]] virtual const ClassType& GetClassType() const;
  /// True when the object's class record or one of its bases has that id.
  [[nodiscard]] virtual bool IsATypeOfId(unsigned classTypeId) const;
  /// Appends the class records, most derived first.
  virtual void GetClassTypes(std::vector<const ClassType*>& types) const;
  /// Stores a plain pointer that the object does not own, replacing the one under that key.
  virtual void AddUserData(const du::Symbol& key, void* data);
  /// Null when there is none.
  [[nodiscard]] virtual void* GetUserData(const du::Symbol& key) const;
  /// Removes what is stored under the key, the plain and the counted.
  virtual void RemoveUserData(const du::Symbol& key);
  [[nodiscard]] virtual std::string GetObjectDescription() const;
  [[nodiscard]] virtual std::string GetObjectName() const;
  /// Stores a counted object, replacing the one under that key.
  virtual void AddRefCountedUserData(const du::Symbol& key, const du::SmartPtr<du::RefCounted>& data);
  [[nodiscard]] virtual du::SmartPtr<du::RefCounted> GetRefCountedUserData(const du::Symbol& key) const;

  /// The record of this class, base of the records of derived classes.
  [[nodiscard]] static const ClassType& GetObjectClassType();

private:
  struct UserData;
  std::unique_ptr<UserData> userData_;
};

}  // namespace zrk
