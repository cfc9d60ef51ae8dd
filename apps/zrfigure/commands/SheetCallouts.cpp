#include "commands/SheetCallouts.h"

#include <algorithm>
#include <array>
#include <utility>

#include <dg/LengthUnit.h>
#include <zritemlist/ItemList.h>
#include <zrk/MakeObject.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/TAnnotation.h>
#include <zrk/illustration2d/Callout2D.h>
#include <zrk/illustration2d/Document2D.h>
#include <zrk/illustration2d/PageBorder2D.h>
#include <zrk/illustration2d/Scene2D.h>
#include <zrk/illustration2d/Text2D.h>
#include <zrk/illustration2d/View2D.h>

#include "commands/LabelText.h"
#include "drawing/BalloonSize.h"
#include "zrcallouts/Align2D.h"
#include "zrcallouts/Callouts.h"
#include "zrcallouts/Functions.h"

namespace zrfigure {
namespace {

using zrk::illustration2d::Callout2D;

dg::DPoint2D OnSheet(const View& view, Vec3 world) {
  const Vec3 pixel = view.ToPixel(world);
  return {pixel.x / kPxPerMm, pixel.y / kPxPerMm};
}

/// The point of the sheet in world space, at the depth of `near`.
Vec3 InSpace(const View& view, const dg::DPoint2D& at, Vec3 near) {
  return view.ToWorld({at.x * kPxPerMm, at.y * kPxPerMm, view.ToPixel(near).z});
}

std::array<dg::DVec2, 3> GridAxes(const View& view) {
  std::array<dg::DVec2, 3> axes;
  const Vec3 right = view.Right(), up = view.direction.up;
  const Vec3 world[] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  for (std::size_t i = 0; i < axes.size(); ++i) axes[i] = {Dot(world[i], right), -Dot(world[i], up)};
  return axes;
}

}  // namespace

std::string ReasonAgainstSheet(const TemplateDefinition& definition) {
  for (const TemplateContent& content : definition.contents) {
    if (!content.isProperty || content.text == "System") continue;
    return "template '" + definition.name + "' shows the part property '" + content.name +
           "', which 2d callouts cannot look up";
  }
  return {};
}

SheetCallouts::SheetCallouts(const HostSession& session, const Picture& picture, const Page& page,
                             const TextMeasure& text)
    : view_(picture.view),
      scene_(zrk::MakeObject<zrk::illustration2d::Scene2D>()),
      sheet_(zrk::MakeObject<zrk::illustration2d::View2D>()) {
  const auto document = zrk::MakeObject<zrk::illustration2d::Document2D>();
  document->SetPageBorder(zrk::MakeObject<zrk::illustration2d::PageBorder2D>(dg::DVec2(page.widthMm, page.heightMm),
                                                                             dg::LengthUnit::MILLIMETER));
  scene_->SetDocument2D(document);
  sheet_->SetGridAxes(GridAxes(view_));
  scene_->AddView(sheet_);
  zritemlist::ItemList::ShareItemList(session.GetScene(), scene_);
  for (const CalloutState& state : session.GetCallouts()) Add(state, session, text);
}

SheetCallouts::~SheetCallouts() {
  zritemlist::ItemList::RemoveItemListForScene(scene_);
  scene_->Destroy();
}

void SheetCallouts::Add(const CalloutState& state, const HostSession& session, const TextMeasure& text) {
  const auto shown = std::ranges::find(state.leaders, false, &LeaderState::hidden);
  if (shown == state.leaders.end()) return;
  auto callout = zrcallouts::CreateNewCallout2D(scene_, session.GetEngine()->GetTemplate(), state.item != 0,
                                                OnSheet(view_, shown->anchor), OnSheet(view_, state.label), state.item);
  if (!callout) return;
  const BalloonSize size = SizeBalloon(SplitLines(state.text), text);
  callout->SetLabelSize(dg::DVec2(size.width / kPxPerMm, size.height / kPxPerMm));
  CalloutState kept = state;
  kept.leaders = {*shown};
  entries_.push_back({std::move(callout), std::move(kept)});
}

bool SheetCallouts::Align(zrcallouts::Align_Mode mode, bool distribute, std::string& error) {
  zrcallouts::Align2D::Callouts2D callouts;
  for (const Entry& entry : entries_) callouts.push_back(entry.callout);
  if (!zrcallouts::Align2D::IsAxisAvailable(sheet_, mode)) {
    error = "the axis points at the viewer: there is no line to align along";
    return false;
  }
  const du::SmartPtr<zrcallouts::Align2D> align(new zrcallouts::Align2D(callouts, mode, distribute, sheet_));
  if (!align->Execute({})) {
    error = distribute ? "it takes three labels or more to space them evenly"
                       : "there are fewer than two labels to line up";
    return false;
  }
  return true;
}

void SheetCallouts::UpdateContents() {
  for (const Entry& entry : entries_) (void)zrcallouts::Callouts::UpdateCallout2DContent(entry.callout, scene_);
}

std::vector<CalloutState> SheetCallouts::GetCallouts() const {
  std::vector<CalloutState> states;
  for (const Entry& entry : entries_) {
    CalloutState state = entry.state;
    state.item = entry.callout->GetItemId();
    state.text = entry.callout->GetTextElement()->GetString().GetString();
    state.label = InSpace(view_, entry.callout->GetPosition(), state.label);
    state.leaders.front().anchor = InSpace(view_, entry.callout->GetAnchor(), state.leaders.front().anchor);
    states.push_back(std::move(state));
  }
  return states;
}

}  // namespace zrfigure
