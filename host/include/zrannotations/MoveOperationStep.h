#pragma once

#include <optional>

#include <dg/Location.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrannotations/Callout.h>
#include <zrk/OperationStep.h>

namespace zrannotations {

/// Moves a callout's label. Locations are in the label's own frame; for a screen-relative label their x and y are the
/// relative screen position.
class ZR_HOST_API MoveOperationStep final : public zrk::OperationStep {
public:
  /// `index` 0 is the label; other indices move nothing. `apply`: the move is made when the step is added to an
  /// operation.
  MoveOperationStep(const du::SmartPtr<Callout>& callout, unsigned index, const dg::Location& from,
                    const dg::Location& to, bool apply);
  ~MoveOperationStep() override;

  /// Gives the step the label's whole placement from before the move. Undo then restores it to the bit, with what a
  /// screen-relative label stores besides its relative position, and redo what undo replaced.
  void SetPlacementBefore(const CalloutLabelPlacement& placement);
  void Undo() override;
  void Redo() override;
  void OnAddedToOperation() override;
  [[nodiscard]] dg::Location GetFrom() const;
  [[nodiscard]] dg::Location GetTo() const;
  [[nodiscard]] const du::SmartPtr<Callout>& GetCallout() const;

private:
  void MoveTo(const dg::Location& location);
  void Restore(const CalloutLabelPlacement& placement);

  du::SmartPtr<Callout> callout_;
  unsigned index_;
  dg::Location from_;
  dg::Location to_;
  bool apply_;
  bool relativeToScreen_;
  std::optional<CalloutLabelPlacement> before_;
  std::optional<CalloutLabelPlacement> after_;
};

}  // namespace zrannotations
