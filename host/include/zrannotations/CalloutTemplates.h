#pragma once

#include <vector>

#include <du/Export.h>
#include <du/SmartPtr.h>

namespace zrk::illustration {
class TAnnotation;
}

namespace zrannotations {

/// Appends the known callout templates in the order in which they were added. Both flags are ignored: every template
/// here is a 3D callout template of the application. [any-thread]
ZR_HOST_API void GetCalloutTemplates(std::vector<du::SmartPtr<zrk::illustration::TAnnotation>>& templates, bool first,
                                     bool second);
/// Appends to the list; null and a template already there change nothing.
ZR_HOST_API void AddCalloutTemplate(const du::SmartPtr<zrk::illustration::TAnnotation>& callouttemplate);
ZR_HOST_API void ClearCalloutTemplates();

}  // namespace zrannotations
