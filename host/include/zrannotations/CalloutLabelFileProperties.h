#pragma once

#include <string>

#include <du/Export.h>
#include <du/SmartPtr.h>

namespace zrk {
class Scene;
}

namespace zrannotations {

/// Whether the group is that of file properties: exactly "File".
[[nodiscard]] ZR_HOST_API bool IsCalloutLabelGroupFileProperty(const std::string& group);
/// The name to show for a file property; empty for another group.
[[nodiscard]] ZR_HOST_API std::string GetCalloutLabelFilePropertyName(const std::string& group,
                                                                      const std::string& name);
/// The value in the scene's file; empty for another group, an unknown name and no scene. [any-thread]
[[nodiscard]] ZR_HOST_API std::string GetCalloutLabelFilePropertyValue(const du::SmartPtr<zrk::Scene>& scene,
                                                                       const std::string& group,
                                                                       const std::string& name);
/// Stores a file property with the scene, for as long as the scene lives; nothing for another group or no scene.
/// [any-thread]
ZR_HOST_API void SetFileProperty(const du::SmartPtr<zrk::Scene>& scene, const std::string& group,
                                 const std::string& name, const std::string& value);

}  // namespace zrannotations
