#pragma once

#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/Object.h>

namespace zrk::illustration {

class SbomInstance;

/// One entry of a selection in the structure.
class ZR_HOST_API SbomInstanceSelectionItem : public Object {
public:
  explicit SbomInstanceSelectionItem(const du::SmartPtr<SbomInstance>& instance);
  ~SbomInstanceSelectionItem() override;

  /// Null when the selected entry stands for no instance.
  [[nodiscard]] du::SmartPtr<SbomInstance> GetSbomInstance() const;

private:
  const du::SmartPtr<SbomInstance> instance_;
};

}  // namespace zrk::illustration
