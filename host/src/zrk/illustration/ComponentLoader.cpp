#include <zrk/illustration/ComponentLoader.h>

#include <dlfcn.h>

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/RefCounted.h>
#include <zrk/illustration/CalloutEngineMgr.h>

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define ZR_UNDER_SANITIZER 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define ZR_UNDER_SANITIZER 1
#endif

namespace zrk {
namespace illustration {

namespace {

using PlainFunction = void (*)();

struct Library {
  void* handle = nullptr;
  std::string path;
  PlainFunction initialize = nullptr;
  PlainFunction terminate = nullptr;
  CalloutEngineMgr::EntryPoint create = nullptr;
  bool isInitialized = false;
};

struct Slot {
  dp::Mutex mutex;
  Library library ZR_GUARDED_BY(mutex);
};

Slot& GetSlot() {
  static Slot* slot = new Slot;
  return *slot;
}

template <class Function>
bool Find(void* handle, const char* name, Function& function, std::string& error) {
  function = reinterpret_cast<Function>(dlsym(handle, name));
  if (!function) error.assign("it has no entry point \"").append(name).append("\"");
  return function != nullptr;
}

bool Open(const std::string& path, Library& library, std::string& error) {
  library.handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!library.handle) {
    error = dlerror();
    return false;
  }
  if (Find(library.handle, "ZRDllInit", library.initialize, error) &&
      Find(library.handle, "ZRDllCreateComponent", library.create, error) &&
      Find(library.handle, "ZRDllTerminate", library.terminate, error)) {
    library.path = path;
    return true;
  }
  dlclose(library.handle);
  return false;
}

}  // namespace

bool ComponentLoader::Load(const std::string& path, std::string& error) {
  Library library;
  {
    Slot& slot = GetSlot();
    const dp::MutexGuard guard(slot.mutex);
    if (slot.library.handle && slot.library.path != path) {
      error = "\"" + path + "\" cannot be loaded: \"" + slot.library.path + "\" is loaded already";
      return false;
    }
    if (slot.library.isInitialized) return true;
    std::string reason;
    if (!slot.library.handle && !Open(path, slot.library, reason)) {
      slot.library = Library();
      error = "\"" + path + "\" cannot be loaded: " + reason;
      return false;
    }
    slot.library.isInitialized = true;
    library = slot.library;
  }
  library.initialize();
  CalloutEngineMgr::Instance().SetComponent(library.create);
  return true;
}

bool ComponentLoader::IsLoaded() {
  Slot& slot = GetSlot();
  const dp::MutexGuard guard(slot.mutex);
  return slot.library.isInitialized;
}

void ComponentLoader::Terminate() {
  PlainFunction terminate = nullptr;
  {
    Slot& slot = GetSlot();
    const dp::MutexGuard guard(slot.mutex);
    if (!slot.library.isInitialized) return;
    slot.library.isInitialized = false;
    terminate = slot.library.terminate;
  }
  CalloutEngineMgr::Instance().SetComponent(nullptr);
  terminate();
}

bool ComponentLoader::Unload() {
  Terminate();
#if defined(ZR_UNDER_SANITIZER)
  return false;
#else
  Slot& slot = GetSlot();
  const dp::MutexGuard guard(slot.mutex);
  if (!slot.library.handle) return true;
  if (du::RefCounted::GetLiveObjectCount() > 0) return false;
  dlclose(slot.library.handle);
  slot.library = Library();
  return true;
#endif
}

}  // namespace illustration
}  // namespace zrk
