#include <zrannotations/CalloutLabelFileProperties.h>

#include <map>

#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/RefCounted.h>
#include <zrk/Scene.h>

namespace zrannotations {

namespace {

constexpr const char* kFileGroup = "File";
constexpr const char* kUserDataKey = "zrannotations.FileProperties";

/// The file properties of one scene; kept as user data of the scene, so they end with it.
class FileProperties final : public virtual du::RefCounted {
public:
  void Set(const std::string& name, const std::string& value) {
    const dp::MutexGuard guard(mutex_);
    values_[name] = value;
  }
  [[nodiscard]] std::string Get(const std::string& name) const {
    const dp::MutexGuard guard(mutex_);
    const auto found = values_.find(name);
    return found == values_.end() ? std::string() : found->second;
  }

private:
  mutable dp::Mutex mutex_;
  std::map<std::string, std::string> values_ ZR_GUARDED_BY(mutex_);
};

du::SmartPtr<FileProperties> FindProperties(const du::SmartPtr<zrk::Scene>& scene) {
  return scene ? du::DynamicCast<FileProperties>(scene->GetRefCountedUserData(kUserDataKey)) : nullptr;
}

du::SmartPtr<FileProperties> UseProperties(const du::SmartPtr<zrk::Scene>& scene) {
  static dp::Mutex creation;
  const dp::MutexGuard guard(creation);
  du::SmartPtr<FileProperties> properties = FindProperties(scene);
  if (!properties) {
    properties = new FileProperties;
    scene->AddRefCountedUserData(kUserDataKey, properties);
  }
  return properties;
}

}  // namespace

bool IsCalloutLabelGroupFileProperty(const std::string& group) {
  return group == kFileGroup;
}

std::string GetCalloutLabelFilePropertyName(const std::string& group, const std::string& name) {
  return IsCalloutLabelGroupFileProperty(group) ? name : std::string();
}

std::string GetCalloutLabelFilePropertyValue(const du::SmartPtr<zrk::Scene>& scene, const std::string& group,
                                             const std::string& name) {
  if (!IsCalloutLabelGroupFileProperty(group)) return {};
  const du::SmartPtr<FileProperties> properties = FindProperties(scene);
  return properties ? properties->Get(name) : std::string();
}

void SetFileProperty(const du::SmartPtr<zrk::Scene>& scene, const std::string& group, const std::string& name,
                     const std::string& value) {
  if (scene && IsCalloutLabelGroupFileProperty(group)) UseProperties(scene)->Set(name, value);
}

}  // namespace zrannotations
