#pragma once

#include <string>

namespace zrk::illustration {

/// How the text of a label piece is lettered.
struct TextProperties {
  TextProperties() = default;

  std::string fontFace;
  double height = 3.5;  ///< millimetres on the page
  bool bold = false;
  bool italic = false;
};

}  // namespace zrk::illustration
