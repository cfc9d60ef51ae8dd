#pragma once
// The frame in which a callout keeps its label position.

#include <dg/DMat44.h>
#include <dg/DPoint3D.h>
#include <du/SmartPtr.h>

namespace zrannotations {
class Callout;
}

namespace zrcallouts {

/// The frame of the first leader's instance with position and scale; its rotation is dropped: labels face the reader.
/// Model space itself for a label that stands free in it.
struct LabelFrame {
  dg::DPoint3D origin;
  double scale = 1;

  /// Carries points from model space into the frame.
  [[nodiscard]] dg::DMat44 FromModel() const;
};

[[nodiscard]] LabelFrame LabelFrameOf(const du::SmartPtr<zrannotations::Callout>& callout);

}  // namespace zrcallouts
