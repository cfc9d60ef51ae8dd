#pragma once

#include <du/Export.h>
#include <du/Symbol.h>
#include <zrk/Object.h>

namespace zrk {

/// A named value of a part. Immutable: a changed value is a new Property in the part's table.
class ZR_HOST_API Property : public Object {
public:
  Property(const du::Symbol& name, const du::Symbol& value);
  ~Property() override;

  [[nodiscard]] du::Symbol GetName() const;
  [[nodiscard]] virtual du::Symbol GetValue() const;

private:
  const du::Symbol name_;
  const du::Symbol value_;
};

}  // namespace zrk
