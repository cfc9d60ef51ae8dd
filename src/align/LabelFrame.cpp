#include "align/LabelFrame.h"

#include <dg/FMat33.h>
#include <dg/Location.h>
#include <zrannotations/Callout.h>

#include "hostlayer/HostLayer.h"

namespace zrcallouts {

dg::DMat44 ModelToLabelFrame(const du::SmartPtr<zrannotations::Callout>& callout) {
  if (!callout || hostlayer::IsLabelFreeInModelSpace(callout)) return dg::DMat44::IDENTITY;
  const dg::Location instance = callout->GetInstanceLocationAtPos(0, false);
  dg::Location frame = dg::Location::IDENTITY;
  frame.SetPos(instance.GetPos());
  frame.SetMat(dg::FMat33::Scale(instance.GetScale()));
  dg::DMat44 toFrame = frame.GetXform();
  toFrame.Invert();
  return toFrame;
}

}  // namespace zrcallouts
