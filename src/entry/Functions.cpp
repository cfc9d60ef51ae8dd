#include "zrcallouts/Functions.h"

#include <zrk/ShapeScene.h>
#include <zrk/illustration/CalloutEngineMgr.h>

#include "zrcallouts/Callouts.h"

namespace zrcallouts {

du::SmartPtr<Callouts> GetCalloutsEngineForScene(const du::SmartPtr<zrk::ShapeScene>& scene) {
  // Every engine that the manager holds in this system comes from this library, so no run-time check is needed.
  return du::StaticCast<Callouts>(zrk::illustration::CalloutEngineMgr::Instance().GetCalloutsEngineForScene(scene));
}

}  // namespace zrcallouts
