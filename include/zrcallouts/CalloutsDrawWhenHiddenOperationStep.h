#pragma once
// The undoable switch of a scene between drawing callouts as usual where geometry hides them, and marking them.

#include <memory>

#include <du/SmartPtr.h>
#include <zrk/OperationStep.h>

#include "zrcallouts/Export.h"

namespace zrcallouts {

class Callouts;

/// Switches the scene of an engine when it joins an operation: on, hidden callouts are drawn as usual; off, leaders are
/// dashed and callouts dimmed where geometry hides them. Either way the callouts are evaluated at once, and undo puts
/// anchors and hidden leaders back to where they were before the switch. The camera is nobody's to undo: what is hidden
/// after undo and redo is what the present view hides. Does nothing for an engine without an illustration scene.
/// [host-thread], no lock held.
class ZR_CALLOUTS_API CalloutsDrawWhenHiddenOperationStep final : public zrk::OperationStep {
public:
  /// Keeps the engine alive as long as the step is.
  CalloutsDrawWhenHiddenOperationStep(const du::SmartPtr<Callouts>& engine, bool drawWhenHidden);
  ~CalloutsDrawWhenHiddenOperationStep() override;

  void OnAddedToOperation() override;
  void Undo() override;
  void Redo() override;

private:
  struct Former;

  void Switch(bool drawWhenHidden) const;

  const du::SmartPtr<Callouts> engine_;
  const bool drawWhenHidden_;
  std::unique_ptr<Former> former_;  // empty until the step has joined an operation
};

}  // namespace zrcallouts
