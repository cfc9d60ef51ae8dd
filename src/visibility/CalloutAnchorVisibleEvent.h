#pragma once

#include <zrk/PickEvent.h>

#include "visibility/PickShare.h"

namespace zrcallouts {

/// Asks whether the anchor of a leader can be seen, and where else its part can. Counted as
/// outstanding until it is answered or dropped; never keeps the engine alive.
class CalloutAnchorVisibleEvent final : public zrk::PickEvent {
public:
  CalloutAnchorVisibleEvent(const du::SmartPtr<zrk::ShapeView>& view, const du::SmartPtr<zrk::ShapeInstance>& shape,
                            const dg::DPoint3D& pixel, PickShare::Place place)
      : PickEvent(view, shape, pixel), share_(std::move(place)) {}

protected:
  void OnAnswer(const zrk::PickAnswer& answer) override { share_.Settle(&answer); }

private:
  PickShare share_;
};

}  // namespace zrcallouts
