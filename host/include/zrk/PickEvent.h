#pragma once

#include <atomic>
#include <memory>

#include <dg/DPoint3D.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/BackLink.h>
#include <zrk/Object.h>
#include <zrk/PickAnswer.h>

namespace zrk {

class ShapeInstance;
class ShapeView;

/// The question what a view shows of a shape instance, at a pixel and altogether. Answered once, from any thread, or
/// dropped: its last reference goes. Whoever holds it answers and drops it with no lock held, because both tell the
/// asker there and then. It does not keep the view alive, so that a view's service may keep it. [any-thread]
class ZR_HOST_API PickEvent : public Object {
public:
  /// `pixel`: x and y in pixels of the view, z the depth of the point asked about.
  PickEvent(const du::SmartPtr<ShapeView>& view, const du::SmartPtr<ShapeInstance>& shapeInstance,
            const dg::DPoint3D& pixel);
  ~PickEvent() override;
  PickEvent(const PickEvent&) = delete;
  PickEvent& operator=(const PickEvent&) = delete;

  /// Null once the view is gone.
  [[nodiscard]] du::SmartPtr<ShapeView> GetView() const;
  [[nodiscard]] const du::SmartPtr<ShapeInstance>& GetShapeInstance() const;
  [[nodiscard]] const dg::DPoint3D& GetPixel() const;

  /// Hands the answer to the asker. False, and without effect, after the first time.
  bool Answer(const PickAnswer& answer);
  [[nodiscard]] bool IsAnswered() const;

protected:
  /// The one answer, on the thread that gives it.
  virtual void OnAnswer(const PickAnswer& answer) = 0;

private:
  const std::shared_ptr<BackLink<ShapeView>> view_;
  const du::SmartPtr<ShapeInstance> shapeInstance_;
  const dg::DPoint3D pixel_;
  std::atomic<bool> answered_{false};
};

}  // namespace zrk
