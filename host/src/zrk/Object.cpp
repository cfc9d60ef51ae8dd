#include <zrk/Object.h>

#include <cxxabi.h>

#include <cstdlib>
#include <map>
#include <typeinfo>
#include <utility>

#include <dp/Mutex.h>

namespace zrk {

struct Object::UserData {
  std::map<du::Symbol, void*> plain;
  std::map<du::Symbol, du::SmartPtr<du::RefCounted>> counted;
};

namespace {

/// One lock for the user data of all objects: it is used rarely, and a lock an object would make every object bigger.
dp::Mutex& GetUserDataMutex() {
  static dp::Mutex* mutex = new dp::Mutex;
  return *mutex;
}

}  // namespace

Object::Object() = default;

Object::Object(const Object& other) : RefCounted(other), MemoryPoolAllocated(other) {}

Object& Object::operator=(const Object&) {
  return *this;
}

Object::~Object() = default;

const ClassType& Object::GetObjectClassType() {
  static const ClassType* type = new ClassType("zrk::Object", nullptr);
  return *type;
}

const char* Object::GetDebugClassName() const {
  const char* mangled = typeid(*this).name();
  int status = 0;
  char* name = abi::__cxa_demangle(mangled, nullptr, nullptr, &status);
  // The interned copy outlives this object and the library of its class.
  const du::Symbol symbol(name ? name : mangled);
  std::free(name);
  return symbol.GetString().c_str();
}

const ClassType& Object::GetClassType() const {
  return GetObjectClassType();
}

bool Object::IsATypeOfId(unsigned classTypeId) const {
  const ClassType* type = &GetClassType();
  while (type && type->GetId() != classTypeId) type = type->GetBase();
  return type != nullptr;
}

void Object::GetClassTypes(std::vector<const ClassType*>& types) const {
  for (const ClassType* type = &GetClassType(); type; type = type->GetBase()) types.push_back(type);
}

void Object::AddUserData(const du::Symbol& key, void* data) {
  const dp::MutexGuard guard(GetUserDataMutex());
  if (!userData_) userData_ = std::make_unique<UserData>();
  userData_->plain[key] = data;
}

void* Object::GetUserData(const du::Symbol& key) const {
  const dp::MutexGuard guard(GetUserDataMutex());
  if (!userData_) return nullptr;
  const auto found = userData_->plain.find(key);
  return found == userData_->plain.end() ? nullptr : found->second;
}

void Object::RemoveUserData(const du::Symbol& key) {
  du::SmartPtr<du::RefCounted> released;
  const dp::MutexGuard guard(GetUserDataMutex());
  if (!userData_) return;
  userData_->plain.erase(key);
  const auto found = userData_->counted.find(key);
  if (found == userData_->counted.end()) return;
  released.Swap(found->second);
  userData_->counted.erase(found);
}

std::string Object::GetObjectDescription() const {
  return GetObjectName();
}

std::string Object::GetObjectName() const {
  return GetDebugClassName();
}

void Object::AddRefCountedUserData(const du::Symbol& key, const du::SmartPtr<du::RefCounted>& data) {
  du::SmartPtr<du::RefCounted> replacement = data;
  const dp::MutexGuard guard(GetUserDataMutex());
  if (!userData_) userData_ = std::make_unique<UserData>();
  userData_->counted[key].Swap(replacement);
}

du::SmartPtr<du::RefCounted> Object::GetRefCountedUserData(const du::Symbol& key) const {
  const dp::MutexGuard guard(GetUserDataMutex());
  if (!userData_) return nullptr;
  const auto found = userData_->counted.find(key);
  return found == userData_->counted.end() ? nullptr : found->second;
}

}  // namespace zrk
