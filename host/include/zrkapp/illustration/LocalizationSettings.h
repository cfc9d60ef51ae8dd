#pragma once

#include <atomic>

#include <du/Export.h>
#include <du/RefCounted.h>

namespace zrkapp::illustration {

/// What of a file is translated.
class ZR_HOST_API LocalizationSettings : public virtual du::RefCounted {
public:
  LocalizationSettings();
  ~LocalizationSettings() override;

  /// Whether note texts are translated; false at first.
  [[nodiscard]] bool GetNotes() const;
  void SetNotes(bool on);

private:
  std::atomic<bool> notes_{false};
};

}  // namespace zrkapp::illustration
