#pragma once

#include <du/Export.h>
#include <zrk/Object.h>

namespace zrk {

/// One change that can be taken back and made again. It is made by whoever creates the step, before or right after the
/// step joins an operation; steps restore stored values and never compute inverses.
class ZR_HOST_API OperationStep : public Object {
public:
  OperationStep();
  ~OperationStep() override;

  virtual void Undo() = 0;
  virtual void Redo() = 0;
  /// The step has joined an operation: for kinds of steps that make their change at that moment. Does nothing here.
  virtual void OnAddedToOperation();
};

}  // namespace zrk
