#pragma once

#include <du/Export.h>

namespace zrk::illustration {

/// Whether the host is the authoring application; false until SetRunningFoliant says otherwise.
[[nodiscard]] ZR_HOST_API bool IsRunningFoliant();
ZR_HOST_API void SetRunningFoliant(bool on);

}  // namespace zrk::illustration
