#pragma once

#include <dg/DPoint2D.h>
#include <du/Export.h>
#include <du/LocalizableString.h>
#include <du/SmartPtr.h>
#include <zrk/illustration/TextAlignment.h>

namespace zrk {
namespace illustration {
class TAnnotation;
}
namespace illustration2d {
class Callout2D;
class Scene2D;
}  // namespace illustration2d
}  // namespace zrk

namespace zrannotations {

/// Makes a callout on the sheet: leader end at `point1`, label at `point2` (millimetres), with `definition` as its
/// preset and the text of the localisable string. Null without a scene or a definition, and after
/// FailNextCreateCallout2D.
[[nodiscard]] ZR_HOST_API du::SmartPtr<zrk::illustration2d::Callout2D> CreateCallout2D(
    const du::SmartPtr<zrk::illustration2d::Scene2D>& scene,
    const du::SmartPtr<zrk::illustration::TAnnotation>& definition, const dg::DPoint2D& point1,
    const dg::DPoint2D& point2, zrk::illustration::TextAlignment alignment, const du::LocalizableString& text);

/// The next CreateCallout2D of the process yields nothing: for tests of its callers.
ZR_HOST_API void FailNextCreateCallout2D();

}  // namespace zrannotations
