#pragma once
// Finds the property of a part that a label piece refers to, and the text shown where there is none.

#include <string>

#include <du/SmartPtr.h>

namespace zrk {
class Property;
class Scene;
namespace illustration {
class LabelContent;
}
}  // namespace zrk
namespace zrannotations {
class Callout;
}

namespace zrcallouts {

/// The property that `content` names, on the part under the callout's first leader or the level above it that `content`
/// asks for; empty when there is no such part or property.
[[nodiscard]] du::SmartPtr<zrk::Property> FindPartProperty(const du::SmartPtr<zrannotations::Callout>& callout,
                                                           const zrk::illustration::LabelContent& content);

/// What a label shows for a property that is not there: the user's preference in the authoring application, the scene's
/// own setting elsewhere. Empty when switched off.
[[nodiscard]] std::string MissingAttributeText(const du::SmartPtr<zrk::Scene>& scene);

}  // namespace zrcallouts
