#pragma once

#include <functional>

#include <dg/DVec2.h>
#include <du/Export.h>

namespace zrannotations {

class Callout;

/// Size of a callout's label on the screen. The application sets a function that knows its fonts; without one a plain
/// estimate answers: 8 pixels a character of the longest line and 16 more, 24 pixels a line. [any-thread]
class ZR_HOST_API LabelMeasure {
public:
  /// Width and height in pixels.
  using Function = std::function<dg::DVec2(const Callout&)>;

  /// An empty function brings the estimate back.
  static void Set(Function function);
  [[nodiscard]] static dg::DVec2 Measure(const Callout& callout);
};

}  // namespace zrannotations
