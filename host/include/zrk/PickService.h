#pragma once

#include <dg/DPoint3D.h>
#include <du/Export.h>
#include <du/RefCounted.h>
#include <du/SmartPtr.h>

namespace zrk {

class ShapeInstance;
class ShapeView;

/// Finds points of shapes that can be seen in a view; supplied by whoever draws the view.
class ZR_HOST_API PickService : public virtual du::RefCounted {
public:
  ~PickService() override;

  /// Gives a model-space point of the shape instance that is visible in the view; false, with `point` untouched, when
  /// nothing of it can be seen.
  virtual bool FindVisiblePoint(const du::SmartPtr<ShapeView>& view, const du::SmartPtr<ShapeInstance>& shapeInstance,
                                dg::DPoint3D& point) = 0;
};

}  // namespace zrk
