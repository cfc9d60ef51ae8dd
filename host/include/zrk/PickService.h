#pragma once

#include <dg/DPoint3D.h>
#include <du/Export.h>
#include <du/RefCounted.h>
#include <du/SmartPtr.h>

namespace zrk {

class PickEvent;
class ShapeInstance;
class ShapeView;

/// Answers what can be seen in a view; supplied by whoever draws it. A service overrides one of the two operations.
/// [any-thread]
class ZR_HOST_API PickService : public virtual du::RefCounted {
public:
  ~PickService() override;

  /// Takes the event and answers it at once, later, from another thread, or never: then it lets go of it. Here:
  /// answered at once with what FindVisiblePoint finds.
  virtual void RequestPick(const du::SmartPtr<PickEvent>& event);
  /// The simple way: gives a model-space point of the shape instance that is visible in the view; false, with `point`
  /// untouched, when nothing of it can be seen. Here nothing can.
  virtual bool FindVisiblePoint(const du::SmartPtr<ShapeView>& view, const du::SmartPtr<ShapeInstance>& shapeInstance,
                                dg::DPoint3D& point);
};

}  // namespace zrk
