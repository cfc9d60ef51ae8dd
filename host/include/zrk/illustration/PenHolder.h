#pragma once

#include <dg/LengthUnit.h>
#include <du/Export.h>
#include <zrk/Object.h>

namespace zrk::illustration {

/// A line style. Immutable.
class ZR_HOST_API PenHolder : public Object {
public:
  /// Both weights are lengths in `unit`; a halo weight of 0 is no halo.
  PenHolder(dg::LengthUnit::Unit unit, double lineWeight, double haloWeight = 0.0);
  ~PenHolder() override;

  [[nodiscard]] dg::LengthUnit::Unit GetUnit() const;
  [[nodiscard]] double GetLineWeight() const;
  /// Whether the line has a halo that keeps crossing lines apart.
  [[nodiscard]] bool GetHalo() const;
  [[nodiscard]] double GetHaloWeight() const;

private:
  const dg::LengthUnit::Unit unit_;
  const double lineWeight_;
  const double haloWeight_;
};

}  // namespace zrk::illustration
