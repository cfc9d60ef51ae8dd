#pragma once

#include <map>
#include <string>

#include <dp/Mutex.h>
#include <du/Export.h>
#include <du/SmartPtr.h>

namespace du {
class RefCounted;
}

namespace zrk {

class ShapeScene;

namespace illustration {

class Callouts;

/// The one table of scenes and their callout engines. It owns the engines until they are destroyed. Thread-safe.
class ZR_HOST_API CalloutEngineMgr {
public:
  /// The component's entry point: names of the component, its class and an instance, and the created object.
  using EntryPoint = bool (*)(const std::string&, const std::string&, const std::string&,
                              du::SmartPtr<du::RefCounted>&);

  static CalloutEngineMgr& Instance();

  /// Empty for a scene without an engine and for a null scene.
  [[nodiscard]] du::SmartPtr<Callouts> GetCalloutsEngineForScene(const du::SmartPtr<ShapeScene>& scene) const;
  /// The entry point that CreateEngineForScene uses; null takes it away.
  void SetComponent(EntryPoint create);
  /// Creates an engine through the entry point, binds it to the scene, registers it and tells it what the scene holds
  /// already: symbols and insets, then callouts, then view 0. Returns the present engine when the scene has one, and
  /// null without entry point or when it yields no engine.
  du::SmartPtr<Callouts> CreateEngineForScene(const du::SmartPtr<ShapeScene>& scene);
  void RegisterEngine(const du::SmartPtr<ShapeScene>& scene, const du::SmartPtr<Callouts>& engine);
  /// Drops the engine of the scene; harmless when there is none.
  void UnregisterEngine(const du::SmartPtr<ShapeScene>& scene);
  /// Drops the engine of the scene when it is that one.
  void UnregisterEngine(const du::SmartPtr<ShapeScene>& scene, const Callouts* engine);

private:
  CalloutEngineMgr();
  ~CalloutEngineMgr();
  [[nodiscard]] EntryPoint GetComponent() const;

  mutable dp::Mutex mutex_;
  EntryPoint create_ ZR_GUARDED_BY(mutex_) = nullptr;
  std::map<du::SmartPtr<ShapeScene>, du::SmartPtr<Callouts>> engines_ ZR_GUARDED_BY(mutex_);
};

}  // namespace illustration
}  // namespace zrk
