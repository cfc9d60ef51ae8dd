#pragma once

#include <set>
#include <string>
#include <vector>

#include <dg/DPoint3D.h>
#include <dg/Location.h>
#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/Object.h>

namespace zrk {
class ShapeInstance;
class ShapeScene;
namespace illustration {
class SbomInstance;
}
}  // namespace zrk

namespace zrannotations {

class Inset;

/// One leader line of a callout: from an anchor on a part, a 3D symbol or an assembly to the label. Positions are in
/// model space. Remembers the id of what it points at, so that it finds it again when it comes back. [any-thread]
class ZR_HOST_API CalloutLeader final : public zrk::Object {
public:
  using ShapeSet = std::set<du::SmartPtr<zrk::ShapeInstance>>;

  static void* operator new(std::size_t size) noexcept;
  static void operator delete(void* memory) noexcept;

  CalloutLeader();
  ~CalloutLeader() override;
  /// A leader on one shape instance; null gives a leader without target.
  static du::SmartPtr<CalloutLeader> MakeForShape(const dg::DPoint3D& anchor,
                                                  const du::SmartPtr<zrk::ShapeInstance>& shapeInstance);
  /// A leader on an assembly, standing on the given shapes at a rough location.
  static du::SmartPtr<CalloutLeader> MakeForAssembly(const dg::DPoint3D& anchor, const dg::Location& location,
                                                     const du::SmartPtr<zrk::illustration::SbomInstance>& assembly,
                                                     const ShapeSet& shapeInstances);
  /// A leader as a document holds it: ids only, either may be empty.
  static du::SmartPtr<CalloutLeader> MakeUnresolved(const std::string& shapeId, const std::string& assemblyId);
  /// A separate leader with the same state.
  [[nodiscard]] du::SmartPtr<CalloutLeader> Clone() const;

  /// A hidden leader is kept with the callout but neither drawn nor counted.
  void SetHidden(bool hidden);
  [[nodiscard]] bool IsHidden() const;
  /// Follows the visibility of what the leader points at; independent of hiding.
  void SetVisible(bool visible);
  [[nodiscard]] bool IsVisible() const;
  /// Places the anchor; it counts as provisional until SetAnchorCalculated(true).
  void SetAnchor(const dg::DPoint3D& point);
  [[nodiscard]] dg::DPoint3D GetAnchor() const;
  /// True after a pick placed the anchor on a visible point.
  void SetAnchorCalculated(bool calculated);
  [[nodiscard]] bool IsAnchorCalculated() const;
  /// Set while geometry hides the leader's end: it is drawn dashed. Not part of the document.
  void SetOccluded(bool occluded);
  [[nodiscard]] bool IsOccluded() const;
  /// The way from anchor to label in model space, both ends left out; empty = straight.
  void SetBendPoints(const std::vector<dg::DPoint3D>& points);
  [[nodiscard]] std::vector<dg::DPoint3D> GetBendPoints() const;
  /// The inset the leader is shown in; null for the main view.
  void SetInset(const du::SmartPtr<Inset>& inset);
  [[nodiscard]] du::SmartPtr<Inset> GetInset() const;
  void SetSymbolId(unsigned symbolId);
  [[nodiscard]] unsigned GetSymbolId() const;
  /// False while the anchor lies outside the bounds of the leader's inset.
  void SetWithinInsetBounds(bool within);
  [[nodiscard]] bool IsWithinInsetBounds() const;
  /// Not hidden, visible, resolved and inside its inset, which is shown.
  [[nodiscard]] bool IsDrawn() const;

  /// The part's or symbol's shape instance; null for an assembly leader and while the shape is in no scene.
  [[nodiscard]] du::SmartPtr<zrk::ShapeInstance> GetShapeInstance() const;
  /// Structure id of the part, "/" and component id for a 3D symbol; empty for an assembly leader.
  [[nodiscard]] std::string GetShapeInstanceId() const;
  /// Structure id of the assembly, else empty.
  [[nodiscard]] std::string GetAssemblyInstanceId() const;
  /// The assembly, or the structure entry of the part; null when there is none.
  [[nodiscard]] du::SmartPtr<zrk::illustration::SbomInstance> GetSbomInstance() const;
  /// The shapes an assembly leader stands on; the one shape of a part.
  [[nodiscard]] ShapeSet GetShapeInstances() const;
  [[nodiscard]] bool IsAssemblyLeader() const;
  /// Points at something that is in a scene.
  [[nodiscard]] bool IsResolved() const;
  /// Location of the target in model space; the last known one while unresolved, IDENTITY when never known.
  [[nodiscard]] dg::Location GetLocation() const;

  /// Looks the target up in the scene by its id: an unresolved part, and the shape set of an assembly in any case.
  void Resolve(const du::SmartPtr<zrk::ShapeScene>& scene);
  /// Takes a shape that came into the scene when its id, or an assembly above it, is the leader's.
  void OnShapeInstanceCreate(const du::SmartPtr<zrk::ShapeInstance>& shapeInstance);
  /// Moves the anchor along when the leader stands on the shape; true when it does. A picked anchor moves rigidly with
  /// its target, a provisional one is computed anew.
  bool OnShapeInstanceLocation(const du::SmartPtr<zrk::ShapeInstance>& shapeInstance);

private:
  struct State {
    dg::DPoint3D anchor;
    bool calculated = false;
    dg::DPoint3D pickedAnchor;
    dg::Location pickedLocation;
    dg::Location location;
    bool locationKnown = false;
    bool stale = false;
    std::vector<dg::DPoint3D> bendPoints;
    du::SmartPtr<zrk::ShapeInstance> shapeInstance;
    std::string shapeId;
    du::SmartPtr<zrk::illustration::SbomInstance> assembly;
    std::string assemblyId;
    ShapeSet shapeInstances;
    du::SmartPtr<Inset> inset;
    unsigned symbolId = 0;
    bool hidden = false;
    bool visible = true;
    bool withinInsetBounds = true;
    bool occluded = false;
  };

  template <class T>
  [[nodiscard]] T Read(T State::*field) const;
  template <class T>
  void Store(T State::*field, const T& value);
  [[nodiscard]] State GetState() const;
  void ShowAsTarget();
  void TakeShape(const du::SmartPtr<zrk::ShapeInstance>& shapeInstance);
  void TakeAssemblyShapes(const du::SmartPtr<zrk::illustration::SbomInstance>& assembly, ShapeSet shapes);
  void Follow(const dg::Location& location, const dg::DPoint3D& provisional) const ZR_REQUIRES(mutex_);
  void RefreshAssembly() const;

  mutable dp::Mutex mutex_;
  // Mutable: anchor and location of an assembly leader are computed when they are asked for, since moving an assembly
  // moves its shapes one by one.
  mutable State state_ ZR_GUARDED_BY(mutex_);
};

}  // namespace zrannotations
