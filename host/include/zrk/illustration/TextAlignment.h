#pragma once

namespace zrk::illustration {

/// Horizontal alignment of a label's lines.
enum class TextAlignment { Left, Center, Right };

}  // namespace zrk::illustration
