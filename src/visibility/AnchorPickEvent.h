#pragma once

#include <zrk/PickEvent.h>

#include "visibility/PickShare.h"

namespace zrcallouts {

/// A pick about the anchor of a leader. Counted as outstanding until it is answered or dropped; never keeps the engine
/// alive.
class AnchorPickEvent : public zrk::PickEvent {
public:
  AnchorPickEvent(const du::SmartPtr<zrk::ShapeView>& view, const du::SmartPtr<zrk::ShapeInstance>& shape,
                  const dg::DPoint3D& pixel, PickShare::Place place)
      : PickEvent(view, shape, pixel), share_(std::move(place)) {}

protected:
  void OnAnswer(const zrk::PickAnswer& answer) override { share_.Settle(&answer); }

private:
  PickShare share_;
};

}  // namespace zrcallouts
