// Labels of 2D callouts, and the fonts in use.
#include <dp/ReadWriteLock.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CombinedCallout2D.h>
#include <zrannotations/Inset.h>
#include <zritemlist/ItemList.h>
#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/TAnnotation.h>
#include <zrk/illustration2d/Callout2D.h>
#include <zrk/illustration2d/Scene2D.h>
#include <zrk/illustration2d/Text2D.h>

#include "hostlayer/HostLayer.h"
#include "zrcallouts/Callouts.h"

using zrannotations::CombinedCallout2D;
using zrk::illustration2d::Callout2D;
using zrk::illustration2d::Scene2D;

namespace zrcallouts {

namespace {

// The label of a single 2D callout, or of a member of a combined one.
std::string LabelOf(const du::SmartPtr<Callout2D>& callout, const du::SmartPtr<zrk::Scene>& scene,
                    const du::SmartPtr<zritemlist::ItemList>& itemList) {
  if (!callout) return {};
  const auto preset = callout->GetPreset();
  Callouts::Contents contents;
  if (preset) preset->GetTextContent(contents);
  std::string label;
  Callouts::GenerateLabelString(du::SmartPtr<zrannotations::Callout>(), scene, std::move(contents),
                                preset && preset->IsMarkdown(), label, itemList, hostlayer::CarriesItem(callout),
                                callout->GetItemId(), false);
  return label;
}

}  // namespace

bool Callouts::UpdateCallout2DContent(const du::SmartPtr<Callout2D>& callout, const du::SmartPtr<Scene2D>& scene) {
  if (!callout || !callout->GetPreset()) return false;
  const auto textElement = callout->GetTextElement();
  if (!textElement) return false;
  const du::SmartPtr<zrk::Scene> anyScene(scene);
  const auto itemList = zritemlist::ItemList::GetItemListForScene(anyScene);
  const auto combined = du::DynamicCast<CombinedCallout2D>(callout);
  const std::string label = combined
                                ? CombinedCallout2D::GenerateLabelString(
                                      combined, [&](const auto& member) { return LabelOf(member, anyScene, itemList); })
                                : LabelOf(callout, anyScene, itemList);
  const du::Symbol text(label);
  if (label.empty() || textElement->GetString() == text) return false;
  callout->SetLocalizableStringText(text, false, true);
  if (scene) scene->Annotation2DModified(callout);
  return true;
}

std::set<std::string> Callouts::GetCalloutsAndInsetsFonts(bool customOnly) const {
  const dp::ReadWriteLock::ReadGuard guard(GetReadWriteLock());
  std::set<std::string> fonts;
  for (const auto& callout : callouts_) {
    if (!callout || (customOnly && !callout->IsCustomCallout())) continue;
    fonts.insert(callout->GetFontFace());
  }
  for (const auto& entry : insetTable_) {
    const auto& inset = entry.first;
    if (!inset || (customOnly && !hostlayer::IsCustom(inset))) continue;
    fonts.insert(inset->GetInsetInfo().fontFace);
  }
  return fonts;
}

}  // namespace zrcallouts
