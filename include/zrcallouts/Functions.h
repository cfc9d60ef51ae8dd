#pragma once
// The component's free functions.

#include <cstdint>
#include <vector>

#include <dg/DPoint2D.h>
#include <du/SmartPtr.h>

#include "zrcallouts/Export.h"

namespace zrannotations {
class Callout;
}

namespace zrk {
class Operation;
class ShapeScene;
class ShapeView;
namespace illustration {
class TAnnotation;
}
namespace illustration2d {
class Callout2D;
class Scene2D;
}  // namespace illustration2d
}  // namespace zrk

namespace zrcallouts {

class Callouts;

/// The engine that the host's engine manager holds for `scene`; empty when it holds none. [any-thread]
[[nodiscard]] ZR_CALLOUTS_API du::SmartPtr<Callouts> GetCalloutsEngineForScene(
    const du::SmartPtr<zrk::ShapeScene>& scene);

/// Makes one 2D callout in `scene` after a template, which stays as it is: leader end at `point1`, label at `point2`,
/// in millimetres on the page. An empty label shows the catalogue's predefined text. Null when the library refuses.
/// [host-thread]
[[nodiscard]] ZR_CALLOUTS_API du::SmartPtr<zrk::illustration2d::Callout2D> CreateNewCallout2D(
    const du::SmartPtr<zrk::illustration2d::Scene2D>& scene,
    const du::SmartPtr<zrk::illustration::TAnnotation>& callouttemplate, bool hasItem, const dg::DPoint2D& point1,
    const dg::DPoint2D& point2, std::uint32_t itemId);

/// Places the labels anew round the model as `view` shows it, as a run places new ones, and gives their leaders new
/// routes; all other labels stay and are kept clear of. The steps go into `operation`, which the caller records;
/// without one the change is not undoable. False, and nothing moved, without an engine, a callout or a view with a
/// camera. [host-thread]
ZR_CALLOUTS_API bool ArrangeLabels(const du::SmartPtr<Callouts>& engine, const du::SmartPtr<zrk::ShapeView>& view,
                                   const std::vector<du::SmartPtr<zrannotations::Callout>>& callouts,
                                   const du::SmartPtr<zrk::Operation>& operation);

}  // namespace zrcallouts
