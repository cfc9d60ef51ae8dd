// One 2D callout after a template.
#include <du/LocalizableString.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CreateCallout2D.h>
#include <zritemlist/ItemList.h>
#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/PenHolder.h>
#include <zrk/illustration/PenPool.h>
#include <zrk/illustration/PlainTextToMarkdown.h>
#include <zrk/illustration/TAnnotation.h>
#include <zrk/illustration2d/Annotation2D.h>
#include <zrk/illustration2d/Callout2D.h>
#include <zrk/illustration2d/Scene2D.h>

#include "hostlayer/HostLayer.h"
#include "labels/Catalogue.h"
#include "zrcallouts/Callouts.h"
#include "zrcallouts/Functions.h"

using zrk::illustration::PenPool;
using zrk::illustration::TAnnotation;
using zrk::illustration2d::Annotation2D;
using zrk::illustration2d::Callout2D;
using zrk::illustration2d::Scene2D;

namespace zrcallouts {

namespace {

std::string LabelText(const du::SmartPtr<Scene2D>& scene, const TAnnotation& definition, bool hasItem,
                      std::uint32_t itemId) {
  const du::SmartPtr<zrk::Scene> anyScene(scene);
  Callouts::Contents contents;
  definition.GetTextContent(contents);
  std::string text;
  Callouts::GenerateLabelString(du::SmartPtr<zrannotations::Callout>(), anyScene, std::move(contents),
                                definition.IsMarkdown(), text, zritemlist::ItemList::GetItemListForScene(anyScene),
                                hasItem, itemId, false);
  return text.empty() ? zrk::illustration::PlainTextToMarkdown(CatalogueText(kPredefinedTextMessage)) : text;
}

void EnsureLeaderPen(TAnnotation& definition) {
  const auto pool = PenPool::GetPenPool();
  if (!definition.GetLeaderPen() && pool) definition.SetLeaderPen(pool->UsePen(PenPool::PEN_THIN_STR));
}

unsigned CalloutType(const TAnnotation& definition) {
  if (!hostlayer::IsItemTemplate(definition)) return 1;
  return definition.RequiresItemList() ? 0 : 2;
}

}  // namespace

// Everything that has to change for the creation changes in a private copy of the template.
du::SmartPtr<Callout2D> CreateNewCallout2D(const du::SmartPtr<Scene2D>& scene,
                                           const du::SmartPtr<TAnnotation>& callouttemplate, bool hasItem,
                                           const dg::DPoint2D& point1, const dg::DPoint2D& point2,
                                           std::uint32_t itemId) {
  if (!callouttemplate) return {};
  const du::SmartPtr<TAnnotation> definition(new TAnnotation(*callouttemplate));
  if (!definition) return {};
  const std::string text = LabelText(scene, *definition, hasItem, itemId);
  const bool wasMarkdown = definition->IsMarkdown();
  definition->SetIsMarkdown(true);
  EnsureLeaderPen(*definition);
  du::LocalizableString localizable;
  const du::Symbol id = Annotation2D::GenerateIDAndLocalization(localizable, scene, du::Symbol("NoteContent"), text,
                                                                hostlayer::NotesAreLocalized());
  const auto callout =
      zrannotations::CreateCallout2D(scene, definition, point1, point2, definition->GetTextAlignment(), localizable);
  definition->SetIsMarkdown(wasMarkdown);
  if (!callout) return callout;
  callout->SetIDPath(hostlayer::IdPathOf(id));
  callout->SetCalloutTemplate(callouttemplate);
  callout->SetLinkedTo3DCallout(false);
  callout->SetCalloutType(CalloutType(*definition));
  if (hasItem) callout->SetItemId(itemId);
  return callout;
}

}  // namespace zrcallouts
