#pragma once

#include <cstdint>
#include <memory>

#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrannotations/Callout.h>
#include <zrk/OperationStep.h>

namespace zrannotations {

struct CalloutSnapshot;

/// Brings a callout back to what it was when the step was made: construct it before the change.
class ZR_HOST_API CalloutOperationStep : public zrk::OperationStep {
public:
  /// Takes the snapshot; null makes a step that does nothing.
  explicit CalloutOperationStep(const du::SmartPtr<Callout>& callout);
  ~CalloutOperationStep() override;

  /// Restores the aspects whose bits are set in the state field, and keeps the present state for Redo.
  void Undo() override;
  /// Restores what Undo replaced; nothing before an Undo.
  void Redo() override;
  [[nodiscard]] const du::SmartPtr<Callout>& GetCallout() const;

protected:
  /// CalloutSnapshot::Aspect bits; all at first.
  std::int32_t m_state;

private:
  du::SmartPtr<Callout> callout_;
  std::unique_ptr<CalloutSnapshot> before_;
  std::unique_ptr<CalloutSnapshot> after_;
};

}  // namespace zrannotations
