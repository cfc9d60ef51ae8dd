// What happens to the labels of callouts after a run: other numbers, other places.

#include <map>
#include <utility>

#include <dg/Location.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CalloutLeader.h>
#include <zrannotations/MoveOperationStep.h>
#include <zritemlist/ItemList.h>
#include <zrk/AnnoSet.h>
#include <zrk/MakeObject.h>
#include <zrk/Operation.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/Illustration3dView.h>
#include <zrk/illustration/ItemsList.h>

#include "commands/HostSession.h"
#include "commands/ItemNumbering.h"

namespace zrfigure {
namespace {

using zrannotations::Callout;

std::vector<du::SmartPtr<Callout>> CalloutsOf(const zrk::illustration::Illustration3dScene& scene) {
  std::vector<du::SmartPtr<Callout>> callouts;
  for (const auto& annotation : scene.GetAnnoSet()->GetAnnotations()) {
    if (auto callout = du::DynamicCast<Callout>(annotation)) callouts.push_back(std::move(callout));
  }
  return callouts;
}

dg::Location InFrame(const Callout& callout, const dg::DPoint3D& position) {
  dg::DMat44 toFrame = callout.GetLabelFrame().GetXform();
  toFrame.Invert();
  dg::Location location = dg::Location::IDENTITY;
  location.SetPos(position * toFrame);
  return location;
}

}  // namespace

void HostSession::RenumberItems(const std::vector<unsigned>& order) {
  Renumber(itemList_->GetZrkItemList(), order, runOperation_);
}

void HostSession::MoveLabels(const std::vector<LabelMove>& moves) {
  std::map<unsigned, Vec3> places(moves.begin(), moves.end());
  for (const auto& callout : CalloutsOf(*scene_)) {
    const auto place = places.find(callout->Id());
    if (place == places.end()) continue;
    const Vec3& to = place->second;
    const dg::Location from = InFrame(*callout, callout->GetMarkupLabelPosition());
    const dg::Location target = InFrame(*callout, dg::DPoint3D(to.x, to.y, to.z));
    auto step = zrk::MakeObject<zrannotations::MoveOperationStep>(callout, 0, from, target, true);
    runOperation_ ? runOperation_->AddStep(step) : step->Redo();
  }
}

bool HostSession::AlignLabels(zrcallouts::Align_Mode mode, bool distribute, std::string& error) {
  const auto callouts = CalloutsOf(*scene_);
  if (callouts.size() < 2) {
    error = "there are fewer than two labels to line up";
    return false;
  }
  if (!zrcallouts::Align::IsAxisAvailable(view_, mode)) {
    error = "the axis points at the viewer: there is no line to align along";
    return false;
  }
  zrcallouts::Align::Annotations annotations(callouts.begin(), callouts.end());
  const auto operation = zrk::MakeObject<zrk::Operation>("align", scene_, true);
  const du::SmartPtr<zrcallouts::Align> align(new zrcallouts::Align(annotations, mode, distribute, view_, operation));
  if (align->Execute({})) return true;
  error = "these labels cannot be lined up";
  return false;
}

}  // namespace zrfigure
