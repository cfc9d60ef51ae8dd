#pragma once

#include <du/Export.h>
#include <du/RefCounted.h>
#include <du/SmartPtr.h>

namespace zrkapp::illustration {

class LocalizationSettings;

/// The settings of the open file.
class ZR_HOST_API FileInfo : public virtual du::RefCounted {
public:
  FileInfo();
  ~FileInfo() override;

  [[nodiscard]] du::SmartPtr<LocalizationSettings> GetLocalizationSettings() const;

private:
  const du::SmartPtr<LocalizationSettings> localizationSettings_;
};

}  // namespace zrkapp::illustration
