#pragma once

#include <du/Export.h>
#include <du/SmartPtr.h>

namespace zrk {

class Operation;

/// Tells reactions to a change which operation the change belongs to: while one is in scope, notifications that this
/// thread sends are about changes made in its operation. Nests; a null operation means a change outside any.
class ZR_HOST_API CurrentOperation {
public:
  explicit CurrentOperation(const du::SmartPtr<Operation>& operation);
  ~CurrentOperation();
  CurrentOperation(const CurrentOperation&) = delete;
  CurrentOperation& operator=(const CurrentOperation&) = delete;

  /// The operation of the innermost scope on this thread; null without one.
  [[nodiscard]] static du::SmartPtr<Operation> Get();

private:
  const du::SmartPtr<Operation>& operation_;
  const CurrentOperation* const outer_;
};

}  // namespace zrk
