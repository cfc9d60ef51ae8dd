#pragma once
// The frame in which a callout keeps its label position.

#include <dg/DMat44.h>
#include <du/SmartPtr.h>

namespace zrannotations {
class Callout;
}

namespace zrcallouts {

/// Carries points from model space into the label's own frame: the identity for a label that stands free in model
/// space, else the frame of the first leader's instance with position and scale. Its rotation is dropped: labels face
/// the reader.
[[nodiscard]] dg::DMat44 ModelToLabelFrame(const du::SmartPtr<zrannotations::Callout>& callout);

}  // namespace zrcallouts
