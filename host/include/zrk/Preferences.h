#pragma once

#include <map>
#include <string>

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Export.h>
#include <du/RefCounted.h>

namespace zrk {

/// The user's settings by path-like names. [any-thread]
class ZR_HOST_API Preferences : public virtual du::RefCounted {
public:
  Preferences();
  ~Preferences() override;
  Preferences(const Preferences&) = delete;
  Preferences& operator=(const Preferences&) = delete;

  /// False for an unknown name.
  [[nodiscard]] bool GetBool(const std::string& name) const;
  /// Empty for an unknown name.
  [[nodiscard]] std::string GetString(const std::string& name) const;
  void SetBool(const std::string& name, bool value);
  void SetString(const std::string& name, const std::string& value);

private:
  mutable dp::Mutex mutex_;
  std::map<std::string, bool> flags_ ZR_GUARDED_BY(mutex_);
  std::map<std::string, std::string> texts_ ZR_GUARDED_BY(mutex_);
};

}  // namespace zrk
