#pragma once

#include <set>

#include <dom/ObjectManager.h>
#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Export.h>

namespace zrk {

/// The manager of managed objects: an ordinary object that a program owns and announces with SetKernel. It owns none of
/// the objects it records, and lets go of them when it ends. [any-thread]
class ZR_HOST_API Kernel : public dom::ObjectManager {
public:
  Kernel();
  /// Stops being the process's kernel if it was.
  ~Kernel() override;
  Kernel(const Kernel&) = delete;
  Kernel& operator=(const Kernel&) = delete;

  /// The process's kernel; null when none was announced.
  [[nodiscard]] static Kernel* GetKernel();
  static void SetKernel(Kernel* kernel);

  void Manage(dom::ManagedObject& object) override;
  void Forget(dom::ManagedObject& object) override;
  [[nodiscard]] bool IsManaged(const dom::ManagedObject& object) const;

private:
  mutable dp::Mutex mutex_;
  std::set<dom::ManagedObject*> objects_ ZR_GUARDED_BY(mutex_);
};

}  // namespace zrk
