#include "engine/ItemsListObserver.h"

#include <zrk/Operation.h>
#include <zrk/illustration/SbomInstance.h>

#include "zrcallouts/Callouts.h"

namespace zrcallouts {

void ItemsListObserver::OnItemRemoved(unsigned itemId) {
  if (engine_) engine_->OnItemRemoved(itemId, du::SmartPtr<zrk::Operation>());
}

void ItemsListObserver::OnItemContentChanged(unsigned itemId,
                                             const std::set<du::SmartPtr<zrk::illustration::SbomInstance>>& added,
                                             const std::set<du::SmartPtr<zrk::illustration::SbomInstance>>& removed) {
  if (engine_) engine_->OnItemContentChanged(itemId, added, removed);
}

}  // namespace zrcallouts
