#pragma once

#include <string>

namespace zrannotations {

/// How an inset writes its caption.
struct InsetInfo {
  std::string fontFace;
};

}  // namespace zrannotations
