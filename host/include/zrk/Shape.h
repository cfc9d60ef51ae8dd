#pragma once

#include <string>

#include <du/Export.h>
#include <zrk/Object.h>

namespace zrk {

/// The geometry that shape instances share. Its identity is what counts: equal parts have one Shape.
class ZR_HOST_API Shape : public Object {
public:
  explicit Shape(const std::string& name);
  ~Shape() override;

  [[nodiscard]] const std::string& GetName() const;
  [[nodiscard]] std::string GetObjectName() const override;

private:
  const std::string name_;
};

}  // namespace zrk
