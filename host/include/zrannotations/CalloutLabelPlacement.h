#pragma once

#include <dg/DPoint2D.h>
#include <dg/DPoint3D.h>

namespace zrannotations {

/// Where a callout's label stands.
struct CalloutLabelPlacement {
  /// In the label's own frame: the frame of leader 0's instance (position and scale), or model space in state 1.
  dg::DPoint3D position;
  /// 0 = follows the instance of leader 0; 1 = free in model space.
  int state = 0;
  bool relativeToScreen = false;
  /// Fractions of the window's width and height; meaningful while relativeToScreen.
  dg::DPoint2D relative;
  /// Depth in pixel space that goes with `relative`.
  double depth = 0.0;
};

}  // namespace zrannotations
