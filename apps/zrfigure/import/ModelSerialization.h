#pragma once
// A Model as bytes, for the way from the importing child process to its parent: same machine, same build.

#include <optional>
#include <string>
#include <string_view>

#include "Model.h"

namespace zrfigure {

/// The model as a self-contained block that begins with a mark and a version.
[[nodiscard]] std::string SerializeModel(const Model& model);

/// The model in a block made by SerializeModel(). Nothing when the block is cut short, has another version, bytes left
/// over, counts larger than itself, or indices that point outside the model: what comes back is safe to walk.
[[nodiscard]] std::optional<Model> DeserializeModel(std::string_view bytes);

}  // namespace zrfigure
