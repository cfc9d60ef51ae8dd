#include <zrk/Preferences.h>

namespace zrk {

Preferences::Preferences() = default;

Preferences::~Preferences() = default;

bool Preferences::GetBool(const std::string& name) const {
  const dp::MutexGuard guard(mutex_);
  const auto found = flags_.find(name);
  return found != flags_.end() && found->second;
}

std::string Preferences::GetString(const std::string& name) const {
  const dp::MutexGuard guard(mutex_);
  const auto found = texts_.find(name);
  return found == texts_.end() ? std::string() : found->second;
}

void Preferences::SetBool(const std::string& name, bool value) {
  const dp::MutexGuard guard(mutex_);
  flags_[name] = value;
}

void Preferences::SetString(const std::string& name, const std::string& value) {
  const dp::MutexGuard guard(mutex_);
  texts_[name] = value;
}

}  // namespace zrk
