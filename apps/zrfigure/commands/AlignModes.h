#pragma once
// Names of the alignments that a whole figure or chosen callouts can get.

#include <optional>
#include <string>
#include <string_view>

#include "zrcallouts/Align.h"

namespace zrfigure {

/// By name, e.g. "min-x" or "axis-z"; nothing for any other name.
[[nodiscard]] std::optional<zrcallouts::Align_Mode> FindAlignMode(std::string_view name);

/// All names, for messages and help: "min-x, center-x, ...".
[[nodiscard]] std::string AlignModeNames();

}  // namespace zrfigure
