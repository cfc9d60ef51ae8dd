#pragma once

#include <du/Export.h>
#include <du/SmartPtr.h>
#include <du/Symbol.h>
#include <zrannotations/Annotation.h>

namespace zrk {
class Instance;
}

namespace zrannotations {

/// The annotation behind a 3D symbol. [any-thread]
class ZR_HOST_API SymbolAnnotation final : public zrk::Annotation {
public:
  explicit SymbolAnnotation(const du::SmartPtr<zrk::Instance>& instance);
  ~SymbolAnnotation() override;

  [[nodiscard]] unsigned GetAnnotationType() const override;
  /// The symbol's instance; null when none was given.
  [[nodiscard]] du::SmartPtr<zrk::Instance> GetInstance() const;
  /// Id of the symbol's component instance, without a leading slash; empty when there is none.
  [[nodiscard]] du::Symbol GetInstanceId() const;

private:
  const du::SmartPtr<zrk::Instance> instance_;
};

}  // namespace zrannotations
