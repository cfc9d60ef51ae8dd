#include "engine/ItemsListObserver.h"

#include <zrk/Operation.h>
#include <zrk/illustration/SbomInstance.h>

#include "hostlayer/HostLayer.h"
#include "zrcallouts/Callouts.h"

namespace zrcallouts {

void ItemsListObserver::OnItemRemoved(unsigned itemId) {
  if (Callouts* const engine = engine_) engine->OnItemRemoved(itemId, du::SmartPtr<zrk::Operation>());
}

void ItemsListObserver::OnItemContentChanged(unsigned itemId,
                                             const std::set<du::SmartPtr<zrk::illustration::SbomInstance>>& added,
                                             const std::set<du::SmartPtr<zrk::illustration::SbomInstance>>& removed) {
  Callouts* const engine = engine_;
  if (!engine) return;
  engine->OnItemContentChanged(itemId, added, removed);
  engine->UpdateItemGroupCalloutLeaders(itemId, added, removed, hostlayer::CurrentOperation());
}

}  // namespace zrcallouts
