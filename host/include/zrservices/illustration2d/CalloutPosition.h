#pragma once

#include <dg/DPoint2D.h>
#include <du/SmartPtr.h>
#include <zrk/illustration2d/Callout2D.h>

namespace zrservices::illustration2d {

/// A 2D callout and where its label shall be, in millimetres on the page.
struct CalloutPosition {
  du::SmartPtr<zrk::illustration2d::Callout2D> callout;
  dg::DPoint2D position;
};

}  // namespace zrservices::illustration2d
