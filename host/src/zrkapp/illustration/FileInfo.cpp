#include <zrkapp/illustration/FileInfo.h>

#include <zrk/MakeObject.h>
#include <zrkapp/illustration/LocalizationSettings.h>

namespace zrkapp::illustration {

FileInfo::FileInfo() : localizationSettings_(zrk::MakeObject<LocalizationSettings>()) {}

FileInfo::~FileInfo() = default;

du::SmartPtr<LocalizationSettings> FileInfo::GetLocalizationSettings() const {
  return localizationSettings_;
}

}  // namespace zrkapp::illustration
