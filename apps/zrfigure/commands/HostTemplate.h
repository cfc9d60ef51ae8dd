#pragma once
// From a template as plain values to the host's template object.

#include <string>

#include <du/SmartPtr.h>
#include <zrk/illustration/TAnnotation.h>

#include "commands/TemplateFile.h"

namespace zrcallouts {
class Callouts;
}

namespace zrfigure {

/// A new template object. When the definition has a pattern for `language`, the engine turns it into the contents, so
/// that labels are generated, measured and placed in that language.
[[nodiscard]] du::SmartPtr<zrk::illustration::TAnnotation> BuildTemplate(const TemplateDefinition& definition,
                                                                         const std::string& language,
                                                                         const zrcallouts::Callouts& engine);

/// Whether a label of the template shows the item's tag.
[[nodiscard]] bool ShowsTag(const TemplateDefinition& definition);

/// Weight of the leader pen in millimetres; 0 when the template has none.
[[nodiscard]] double LeaderWeightMm(const TemplateDefinition& definition);

}  // namespace zrfigure
