#include "labels/PartProperty.h"

#include <du/Localizer.h>
#include <zrannotations/Callout.h>
#include <zrk/Instance.h>
#include <zrk/Preferences.h>
#include <zrk/Property.h>
#include <zrk/Scene.h>
#include <zrk/ShapeInstance.h>
#include <zrk/World.h>
#include <zrk/illustration/Application.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/SbomInstance.h>

#include "hostlayer/HostLayer.h"
#include "labels/Catalogue.h"

using zrk::illustration::SbomInstance;

namespace zrcallouts {

namespace {

// The top-level assembly below the structure's root: the last instance on the way up that is not the root itself.
du::SmartPtr<SbomInstance> TopLevelOf(du::SmartPtr<SbomInstance> instance) {
  while (instance->GetDepth() != 0) {
    const auto parent = instance->GetParent();
    if (!parent || parent->GetDepth() == 0) break;
    instance = parent;
  }
  return instance;
}

du::SmartPtr<SbomInstance> TopLevelOf(du::SmartPtr<zrk::Instance> instance) {
  const auto root = instance->GetRootContainerRoot();
  for (auto parent = instance->GetParent(); parent && parent != root; parent = instance->GetParent()) instance = parent;
  return instance->GetSbomInstance();
}

// "Root" never means the structure's root, except in the authoring application, where it is the root of the container.
du::SmartPtr<SbomInstance> RootLevel(const du::SmartPtr<SbomInstance>& sbom,
                                     const du::SmartPtr<zrk::ShapeInstance>& shape) {
  auto instance = shape ? shape->GetInstance() : nullptr;
  if (!instance && sbom) instance = sbom->GetEbomInstance();
  if (instance && zrk::illustration::IsRunningFoliant()) {
    const auto root = instance->GetRootContainerRoot();
    return root ? root->GetSbomInstance() : nullptr;
  }
  if (sbom) return TopLevelOf(sbom);
  return instance ? TopLevelOf(instance) : nullptr;
}

du::SmartPtr<SbomInstance> InstanceAtLevel(const std::string& level, const du::SmartPtr<SbomInstance>& sbom,
                                           const du::SmartPtr<zrk::ShapeInstance>& shape) {
  if (level == "Parent" && sbom) return sbom->GetParent();
  if (level == "Root") return RootLevel(sbom, shape);
  return sbom;
}

// Three names stand for the part's default group; built afresh each time, so that a change of language counts at once.
du::Symbol GroupSymbol(const std::string& group) {
  const bool isDefault = group == "ZRS File Properties" || group == "__ZRS_PROPERTIES" ||
                         group == CatalogueText(kDefaultPropertyGroupMessage);
  return isDefault ? du::Symbol() : du::Symbol(group);
}

}  // namespace

du::SmartPtr<zrk::Property> FindPartProperty(const du::SmartPtr<zrannotations::Callout>& callout,
                                             const zrk::illustration::LabelContent& content) {
  if (!callout) return {};
  const auto shape = callout->GetShapeInstanceAtPos(0);
  const auto chosen = InstanceAtLevel(content.level, callout->GetSbomInstanceAtPos(0), shape);
  if (!chosen) return {};
  return hostlayer::FindProperty(chosen, GroupSymbol(content.text), du::Symbol(content.name),
                                 shape ? shape->GetCurrentShapeSource() : du::Symbol());
}

std::string MissingAttributeText(const du::SmartPtr<zrk::Scene>& scene) {
  if (zrk::illustration::IsRunningFoliant()) {
    const auto world = zrk::World::GetWorld();
    const auto preferences = world ? world->GetPreferences() : nullptr;
    if (!preferences || !preferences->GetBool("Annotations/CB_MissingAttrNotification")) return {};
    return preferences->GetString("Annotations/CB_MissingAttrNotificationInput");
  }
  const auto illustrationScene = du::DynamicCast<zrk::illustration::Illustration3dScene>(scene);
  return illustrationScene && illustrationScene->GetMissingAttr() ? illustrationScene->GetMissingAttrInput()
                                                                  : std::string();
}

}  // namespace zrcallouts
