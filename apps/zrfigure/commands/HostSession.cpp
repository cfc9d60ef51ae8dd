#include "commands/HostSession.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <utility>

#include <du/Localizer.h>
#include <du/TaskPool.h>
#include <zrannotations/Callout.h>
#include <zrannotations/LabelMeasure.h>
#include <zritemlist/ItemList.h>
#include <zrk/AnnoSet.h>
#include <zrk/MakeObject.h>
#include <zrk/Operation.h>
#include <zrk/RecordOperation.h>
#include <zrk/ShapeInstance.h>
#include <zrk/UndoHistory.h>
#include <zrk/World.h>
#include <zrk/illustration/CalloutEngineMgr.h>
#include <zrk/illustration/Illu3dPagePreview.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/Illustration3dView.h>
#include <zrk/illustration/ItemsList.h>
#include <zrk/illustration/SbomInstanceSelectionItem.h>
#include <zrk/illustration/SbomTree.h>
#include <zrkapp/illustration/OrreryApp.h>

#include "commands/HostTemplate.h"
#include "commands/LabelText.h"
#include "commands/PicturePicks.h"
#include "commands/RegionPicks.h"
#include "commands/RunEvent.h"
#include "drawing/BalloonSize.h"
#include "zrcallouts/CalloutGenerator.h"
#include "zrcallouts/Callouts.h"

namespace zrfigure {
namespace {

using Clock = std::chrono::steady_clock;
using zrk::illustration::ItemsList;
using zrk::illustration::SbomInstanceSelectionItem;

constexpr int kPollMilliseconds = 1000;
constexpr double kLabelAirPx = 8;  ///< Added to a balloon's size so that two never seem to touch.

Vec3 ToVec3(const dg::DPoint3D& point) {
  return {point.x, point.y, point.z};
}

double SecondsBetween(Clock::time_point from, Clock::time_point to) {
  return std::chrono::duration<double>(to - from).count();
}

dg::Camera3D CameraOf(const View& view) {
  const Matrix4 matrix = view.WorldToPixel();
  dg::DMat44 toPixel;
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) toPixel.m[row][column] = matrix.m[row][column];
  }
  dg::Camera3D camera;
  camera.SetObjectToPixel(toPixel);
  return camera;
}

}  // namespace

/// While it lives the host's label sizes come from the figure's lettering, and the first question for one is timed:
/// labels are measured when they are placed, not before.
class HostSession::LabelSizes {
public:
  explicit LabelSizes(const TextMeasure& text) {
    zrannotations::LabelMeasure::Set([this, &text](const zrannotations::Callout& callout) {
      const std::lock_guard<std::mutex> lock(mutex_);
      if (!firstAsked_) firstAsked_ = Clock::now();
      const BalloonSize size = SizeBalloon(SplitLines(callout.GetText(true).GetString()), text);
      return dg::DVec2(size.width + kLabelAirPx, size.height + kLabelAirPx);
    });
  }
  ~LabelSizes() { zrannotations::LabelMeasure::Set({}); }
  LabelSizes(const LabelSizes&) = delete;
  LabelSizes& operator=(const LabelSizes&) = delete;

  [[nodiscard]] std::optional<Clock::time_point> FirstAsked() {
    const std::lock_guard<std::mutex> lock(mutex_);
    return firstAsked_;
  }
  void Restart() {
    const std::lock_guard<std::mutex> lock(mutex_);
    firstAsked_.reset();
  }

private:
  std::mutex mutex_;
  std::optional<Clock::time_point> firstAsked_;
};

HostSession::HostSession(const OccurrenceTree& occurrences, const ViewDirection& direction, const TextMeasure& text)
    : occurrences_(occurrences),
      scene_(zrk::MakeObject<zrk::illustration::Illustration3dScene>()),
      view_(zrk::MakeObject<zrk::illustration::Illustration3dView>()),
      itemList_(zritemlist::ItemList::CreateItemListForScene(scene_)),
      structure_(occurrences, direction, scene_),
      labelSizes_(std::make_unique<LabelSizes>(text)) {
  view_->SetPrintPreview(zrk::MakeObject<zrk::illustration::Illu3dPagePreview>());
  view_->SetPageShown(true);
  scene_->AddView(view_);
  zrkapp::illustration::OrreryApp::GetOrreryApp()->SetSbomTree(structure_.GetTree());
  engine_ = du::DynamicCast<zrcallouts::Callouts>(
      zrk::illustration::CalloutEngineMgr::Instance().CreateEngineForScene(scene_));
}

HostSession::~HostSession() {
  scene_->Destroy();
  zrkapp::illustration::OrreryApp::GetOrreryApp()->SetSbomTree(nullptr);
  // The engine's last work, releasing its callouts, runs on the pool and must not outlive the structure.
  zrk::World::GetWorld()->GetTaskPool()->WaitIdle();
}

bool HostSession::HasEngine() const {
  return static_cast<bool>(engine_);
}

void HostSession::SetTemplate(const TemplateDefinition& definition, const std::string& language) {
  engine_->SetTemplate(BuildTemplate(definition, language, *engine_));
}

void HostSession::SetMode(CalloutMode mode) {
  engine_->SetCombineForSamePart(mode == CalloutMode::Combine);
  engine_->SetDrawOneForSamePart(mode == CalloutMode::OnePerItem);
}

void HostSession::SetView(const View& view, const Box2& room) {
  view_->SetCamera(CameraOf(view));
  view_->SetWindowSize(view.widthPx, view.heightPx);
  const dg::DBox2D rect(dg::DPoint2D(room.minX, room.minY), dg::DPoint2D(room.maxX, room.maxY));
  du::StaticCast<zrk::illustration::Illu3dPagePreview>(view_->GetPrintPreview())->SetPage(rect, 1.0);
}

void HostSession::SetVisibleRegions(std::vector<VisibleRegion> regions) {
  view_->SetPickService(zrk::MakeObject<RegionPicks>(structure_, std::move(regions)));
}

void HostSession::SetPicture(const View& view, IdBuffer ids) {
  view_->SetPickService(zrk::MakeObject<PicturePicks>(structure_, view, CameraOf(view), std::move(ids)));
  view_->FireTimeout();
}

void HostSession::PrepareRows(const std::vector<PlannedRow>& rows, bool hierarchical) {
  std::string name;
  (void)du::Localizer("zrbase:zrmodulesStrings").LocalizeMessage("142", name);
  auto operation = zrk::MakeObject<zrk::Operation>(name, scene_, true);
  ItemsList::Numbering numbering;
  numbering.hierarchical = hierarchical;
  itemList_->GetZrkItemList()->SetNumberingSettings(numbering);
  for (const PlannedRow& row : rows) AddRow(row, hierarchical, operation);
  if (operation->GetStepCount() == 0) return;
  zrk::RecordOperation(operation);
  rowOperations_.insert(operation);
}

void HostSession::AddRow(const PlannedRow& row, bool hierarchical, const du::SmartPtr<zrk::Operation>& operation) {
  const auto items = itemList_->GetZrkItemList();
  for (int occurrence : row.occurrences) {
    unsigned item = 0;
    const auto& instance = structure_.GetSbomInstance(occurrence);
    const bool exists = itemList_->GetMatchingItem(instance, item);
    item = itemList_->AddInstance(instance, operation, false, {});
    if (exists) continue;
    if (hierarchical) items->SetHierarchyIndex(item, row.path, operation);
    const auto& properties = occurrences_.GetModel().products[row.product].properties;
    const auto tag = properties.find("tag");
    if (tag != properties.end()) items->SetItemTag(item, tag->second, operation);
  }
}

RunSeconds HostSession::Generate(const std::vector<int>& selected, bool showProgress) {
  std::vector<du::SmartPtr<SbomInstanceSelectionItem>> selection;
  for (int occurrence : selected) {
    selection.push_back(zrk::MakeObject<SbomInstanceSelectionItem>(structure_.GetSbomInstance(occurrence)));
  }
  const auto event = zrk::MakeObject<RunEvent>(showProgress);
  labelSizes_->Restart();
  const Clock::time_point begin = Clock::now();
  zrcallouts::CalloutGenerator::CreateCallouts(engine_, std::move(selection), event);
  while (!event->WaitComplete(kPollMilliseconds)) {
  }
  const Clock::time_point end = Clock::now();
  zrk::World::GetWorld()->GetTaskPool()->WaitIdle();
  runOperation_ = zrk::UndoHistory::GetLast(scene_);
  const Clock::time_point placing = labelSizes_->FirstAsked().value_or(end);
  return {SecondsBetween(begin, placing), SecondsBetween(placing, end)};
}

bool HostSession::Undo() {
  if (!zrk::UndoHistory::Undo(scene_)) return false;
  if (rowOperations_.count(zrk::UndoHistory::GetLast(scene_)) > 0) zrk::UndoHistory::Undo(scene_);
  return true;
}

bool HostSession::Redo() {
  if (!zrk::UndoHistory::Redo(scene_)) return false;
  if (rowOperations_.count(zrk::UndoHistory::GetLast(scene_)) > 0) zrk::UndoHistory::Redo(scene_);
  return true;
}

std::vector<CalloutState> HostSession::GetCallouts() const {
  std::vector<CalloutState> callouts;
  for (const auto& annotation : scene_->GetAnnoSet()->GetAnnotations()) {
    const auto callout = du::DynamicCast<zrannotations::Callout>(annotation);
    if (callout) callouts.push_back(Describe(*callout));
  }
  return callouts;
}

CalloutState HostSession::Describe(const zrannotations::Callout& callout) const {
  CalloutState state;
  state.id = callout.Id();
  std::uint32_t item = 0;
  if (callout.GetItemId(item)) state.item = item;
  state.text = callout.GetText(true).GetString();
  state.label = ToVec3(callout.GetMarkupLabelPosition());
  for (const auto& leader : callout.GetLeaders()) state.leaders.push_back(Describe(*leader));
  return state;
}

LeaderState HostSession::Describe(const zrannotations::CalloutLeader& leader) const {
  LeaderState state;
  state.occurrence = leader.IsAssemblyLeader() ? structure_.FindOccurrence(leader.GetSbomInstance())
                                               : structure_.FindOccurrence(leader.GetShapeInstance());
  state.anchor = ToVec3(leader.GetAnchor());
  for (const dg::DPoint3D& bend : leader.GetBendPoints()) state.bends.push_back(ToVec3(bend));
  state.hidden = leader.IsHidden();
  state.visible = leader.IsVisible();
  state.occluded = leader.IsOccluded();
  return state;
}

std::vector<ItemState> HostSession::GetItems() const {
  std::vector<ItemState> items;
  const auto list = itemList_->GetZrkItemList();
  for (unsigned id : list->GetItemIds()) {
    ItemState state;
    state.id = id;
    bool itemized = false;
    itemList_->GetItemLabel(id, state.number, itemized);
    state.quantity = list->GetQuantity(id);
    state.tag = list->GetItemTag(id);
    std::set<du::SmartPtr<zrk::illustration::SbomInstance>> instances;
    list->GetInstances(id, instances);
    for (const auto& instance : instances) state.occurrences.push_back(structure_.FindOccurrence(instance));
    std::sort(state.occurrences.begin(), state.occurrences.end());
    items.push_back(std::move(state));
  }
  return items;
}

}  // namespace zrfigure
