#pragma once

#include <dg/DPoint3D.h>

namespace zrk {

/// What a view shows of one shape instance. Points in model space, distances in pixels.
struct PickAnswer {
  /// What stands at the pixel that was asked about.
  enum class Place {
    Elsewhere,   ///< Something else, or nothing.
    OtherPoint,  ///< The shape instance, though not the point asked about: that one lies behind.
    SamePoint    ///< The point asked about.
  };

  bool isVisible = false;  ///< Something of the shape instance can be seen; without it nothing below has a meaning.
  dg::DPoint3D deepest;    ///< The visible point farthest from everything else in the picture.
  double clearance = 0;    ///< How far that is.
  Place place = Place::Elsewhere;
  dg::DPoint3D atPixel;  ///< Unless Elsewhere: the visible point of the shape instance at or right beside the pixel.
  double clearanceAtPixel = 0;  ///< How far that point is from everything else.
};

}  // namespace zrk
