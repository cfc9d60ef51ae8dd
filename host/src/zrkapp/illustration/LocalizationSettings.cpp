#include <zrkapp/illustration/LocalizationSettings.h>

namespace zrkapp::illustration {

LocalizationSettings::LocalizationSettings() = default;

LocalizationSettings::~LocalizationSettings() = default;

bool LocalizationSettings::GetNotes() const {
  return notes_;
}

void LocalizationSettings::SetNotes(bool on) {
  notes_ = on;
}

}  // namespace zrkapp::illustration
