#include "generator/ProcessPlanGrouping.h"

#include <dp/Environment.h>
#include <zrk/Property.h>
#include <zrk/illustration/SbomInstance.h>

#include "hostlayer/HostLayer.h"

namespace zrcallouts {

du::Symbol ProcessPlanKeyOf(const du::SmartPtr<zrk::illustration::SbomInstance>& instance) {
  static const bool enabled = !dp::Environment::Test("FOLIANT_DISABLE_MPM_CALLOUT_GROUPING");
  if (!enabled) return du::Symbol();
  static const du::Symbol group("BrindleMPMLink");
  static const du::Symbol name("operationToPartUniqueId");
  return hostlayer::ValueOf(hostlayer::FindProperty(instance, group, name, du::Symbol::EMPTY));
}

}  // namespace zrcallouts
