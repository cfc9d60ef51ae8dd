#include <zrk/ClassType.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <vector>

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>

namespace zrk {

namespace {

struct Register {
  dp::Mutex mutex;
  std::vector<const ClassType*> types ZR_GUARDED_BY(mutex);
};

Register& GetRegister() {
  static Register* instance = new Register;
  return *instance;
}

unsigned MakeId() {
  static std::atomic<unsigned> lastId{0};
  return ++lastId;
}

}  // namespace

ClassType::ClassType(const char* name, const ClassType* base) : name_(name), base_(base), id_(MakeId()) {
  Register& all = GetRegister();
  const dp::MutexGuard guard(all.mutex);
  all.types.push_back(this);
}

ClassType::~ClassType() {
  Register& all = GetRegister();
  const dp::MutexGuard guard(all.mutex);
  std::erase(all.types, this);
}

const char* ClassType::GetName() const {
  return name_;
}

unsigned ClassType::GetId() const {
  return id_;
}

const ClassType* ClassType::GetBase() const {
  return base_;
}

const ClassType* ClassType::Find(const char* name) {
  if (!name) return nullptr;
  Register& all = GetRegister();
  const dp::MutexGuard guard(all.mutex);
  const auto found = std::find_if(all.types.begin(), all.types.end(),
                                  [name](const ClassType* type) { return std::strcmp(type->name_, name) == 0; });
  return found == all.types.end() ? nullptr : *found;
}

}  // namespace zrk
