#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <dp/Mutex.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/Scene.h>

namespace zrk {

class Instance;
class ShapeInstance;

/// A scene of placed shapes with an annotation set of its own. Thread-safe; listeners are told after the change with no
/// lock held. Lookups cost O(log n).
class ZR_HOST_API ShapeScene : public Scene {
public:
  ShapeScene();
  ~ShapeScene() override;

  /// The shape instance of that instance, the one added first when there are several; null when there is none.
  [[nodiscard]] du::SmartPtr<ShapeInstance> GetShapeInstance(const du::SmartPtr<Instance>& instance) const;
  /// The shape instance by the id that leaders carry: the id of its structure-side instance, else of its own instance
  /// ("/" and the component id for a 3D symbol), as it was when the shape instance was added. Null when unknown.
  [[nodiscard]] du::SmartPtr<ShapeInstance> FindShapeInstance(const std::string& id) const;
  /// All shape instances in the order in which they were added.
  [[nodiscard]] std::vector<du::SmartPtr<ShapeInstance>> GetShapeInstances() const;

  /// The shape instances of that instance in the order in which they were added.
  [[nodiscard]] std::vector<du::SmartPtr<ShapeInstance>> GetShapeInstances(
      const du::SmartPtr<Instance>& instance) const;
  /// Where the shape instance stands in the order of addition, for PutBackShapeInstance; 0 for a non-member.
  [[nodiscard]] std::uint64_t GetPlace(const du::SmartPtr<ShapeInstance>& shape) const;

  /// Grows with every shape instance that comes, goes, moves, is shown or hidden: equal counts, equal pictures.
  [[nodiscard]] std::uint64_t GetChangeCount() const;

  /// Adds it and notifies; null, a member and a shape instance of another scene change nothing.
  void AddShapeInstance(const du::SmartPtr<ShapeInstance>& shape);
  /// Removes it and notifies; a non-member changes nothing.
  void RemoveShapeInstance(const du::SmartPtr<ShapeInstance>& shape);
  /// Adds a shape instance that was removed at the place it had, and notifies; otherwise as AddShapeInstance.
  void PutBackShapeInstance(const du::SmartPtr<ShapeInstance>& shape, std::uint64_t place);
  void NotifyPaletteChanged();

private:
  template <class K>
  using Index = std::map<std::pair<K, std::uint64_t>, du::SmartPtr<ShapeInstance>>;
  struct Member {
    std::uint64_t order;
    std::string id;
  };

  friend class ShapeInstance;

  std::atomic<std::uint64_t> changeCount_{0};
  mutable dp::Mutex mutex_;
  std::uint64_t nextOrder_ ZR_GUARDED_BY(mutex_) = 1;
  std::map<std::uint64_t, du::SmartPtr<ShapeInstance>> inOrder_ ZR_GUARDED_BY(mutex_);
  Index<const Instance*> byInstance_ ZR_GUARDED_BY(mutex_);
  Index<std::string> byId_ ZR_GUARDED_BY(mutex_);
  std::map<const ShapeInstance*, Member> members_ ZR_GUARDED_BY(mutex_);
};

}  // namespace zrk
