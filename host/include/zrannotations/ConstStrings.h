#pragma once

#include <du/Export.h>

namespace zrannotations {

/// Class names of annotations, as Annotation::GetClass yields them.
struct ZR_HOST_API ConstStrings {
  static const char* const zrSymbol3D;
  static const char* const zrCalloutLabel;
  static const char* const zrInset;
};

}  // namespace zrannotations
