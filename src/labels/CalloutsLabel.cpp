// The engine's three ways into the label worker.
#include <dp/ReadWriteLock.h>
#include <zrannotations/Callout.h>
#include <zritemlist/ItemList.h>
#include <zrk/ShapeScene.h>
#include <zrk/illustration/LabelContent.h>

#include "hostlayer/HostLayer.h"
#include "labels/LabelWorker.h"
#include "zrcallouts/Callouts.h"

namespace zrcallouts {

void Callouts::GenerateLabelString(const du::SmartPtr<zrannotations::Callout>& callout,
                                   const du::SmartPtr<zrk::Scene>& scene, Contents contents, bool markdownContent,
                                   std::string& label, const du::SmartPtr<zritemlist::ItemList>& itemList, bool hasItem,
                                   std::uint32_t itemId, bool withCallout) {
  LabelWorker({callout, scene, itemList, hasItem, itemId, withCallout, markdownContent}).Build(contents, label);
}

void Callouts::GenerateLabelString(const du::SmartPtr<zrannotations::Callout>& callout, Contents contents,
                                   bool markdownContent, std::string& label) {
  const dp::ReadWriteLock::ReadGuard guard(GetReadWriteLock());
  const auto itemId = hostlayer::ItemIdOf(callout);
  GenerateLabelString(callout, du::SmartPtr<zrk::Scene>(GetScene()), std::move(contents), markdownContent, label,
                      itemList_, itemId.has_value(), itemId.value_or(0), true);
}

void Callouts::GenerateLabelStringFor2DCallout(const du::SmartPtr<zrk::Scene>& scene, Contents contents,
                                               bool markdownContent, std::string& label, bool hasItem,
                                               std::uint32_t itemId) {
  GenerateLabelString(du::SmartPtr<zrannotations::Callout>(), scene, std::move(contents), markdownContent, label,
                      zritemlist::ItemList::GetItemListForScene(scene), hasItem, itemId, false);
}

}  // namespace zrcallouts
