#pragma once

#include <du/Export.h>
#include <du/Symbol.h>
#include <zrk/Object.h>

namespace zrk {

/// The component behind a 3D symbol, known by its id.
class ZR_HOST_API ComponentInstance : public Object {
public:
  explicit ComponentInstance(const du::Symbol& id);
  ~ComponentInstance() override;

  /// The component id, without the leading slash that the symbol's instance id has.
  [[nodiscard]] du::Symbol GetID() const;

private:
  const du::Symbol id_;
};

}  // namespace zrk
