#include <zrk/illustration/TAnnotation.h>

#include <zrannotations/CalloutLabelFileProperties.h>
#include <zrk/MakeObject.h>
#include <zrk/Operation.h>
#include <zrk/illustration/CalloutTemplateObserver.h>
#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/PenHolder.h>

#include "TemplateOperationStep.h"

namespace zrk::illustration {

namespace {

bool IsItemToken(const LabelContent& content) {
  return content.text == "System" && (content.name == "zrITM" || content.name == "zrQTY" || content.name == "zrTAG");
}

TAnnotation::Contents CopyContents(const TAnnotation::Contents& contents) {
  TAnnotation::Contents copies;
  copies.reserve(contents.size());
  for (const auto& content : contents) copies.push_back(content ? MakeObject<LabelContent>(*content) : nullptr);
  return copies;
}

}  // namespace

TAnnotation::TAnnotation() = default;

TAnnotation::TAnnotation(const TAnnotation& other)
    : du::RefCounted(), CollectionItem(), state_(other.Snapshot()), id_(other.GetId()) {
  SetName(other.GetName());
}

TAnnotation::~TAnnotation() = default;

bool TAnnotation::GetTextContent(Contents& contents) const {
  const dp::MutexGuard guard(mutex_);
  contents.clear();
  if (state_.hasContent) contents = state_.contents;
  return state_.hasContent;
}

bool TAnnotation::IsMarkdown() const {
  const dp::MutexGuard guard(mutex_);
  return state_.markdown;
}

void TAnnotation::SetIsMarkdown(bool on) {
  const dp::MutexGuard guard(mutex_);
  state_.markdown = on;
}

TAnnotation::Requirements TAnnotation::GetRequirements() const {
  const dp::MutexGuard guard(mutex_);
  if (state_.required) return *state_.required;
  Requirements requirements{false, false};
  if (!state_.hasContent) return requirements;
  for (const auto& content : state_.contents) {
    if (!content || content->type != 1) continue;
    if (IsItemToken(*content)) {
      requirements.itemList = true;
    } else if (!zrannotations::IsCalloutLabelGroupFileProperty(content->text)) {
      requirements.propertyVisitor = true;
    }
  }
  return requirements;
}

bool TAnnotation::RequiresItemList() const {
  return GetRequirements().itemList;
}

bool TAnnotation::RequiresPropertyVisitor() const {
  return GetRequirements().propertyVisitor;
}

void TAnnotation::SetRequires(bool itemList, bool propertyVisitor) {
  const dp::MutexGuard guard(mutex_);
  state_.required = Requirements{itemList, propertyVisitor};
}

std::string TAnnotation::GetId() const {
  const dp::MutexGuard guard(mutex_);
  return id_;
}

void TAnnotation::SetId(const std::string& id) {
  const dp::MutexGuard guard(mutex_);
  id_ = id;
}

du::SmartPtr<PenHolder> TAnnotation::GetLeaderPen() const {
  const dp::MutexGuard guard(mutex_);
  return state_.leaderPen;
}

void TAnnotation::SetLeaderPen(const du::SmartPtr<PenHolder>& pen) {
  const dp::MutexGuard guard(mutex_);
  state_.leaderPen = pen;
}

du::SmartPtr<PenHolder> TAnnotation::GetLabelBorderPen() const {
  const dp::MutexGuard guard(mutex_);
  return state_.labelBorderPen;
}

void TAnnotation::SetLabelBorderPen(const du::SmartPtr<PenHolder>& pen) {
  const dp::MutexGuard guard(mutex_);
  state_.labelBorderPen = pen;
}

TextAlignment TAnnotation::GetTextAlignment() const {
  const dp::MutexGuard guard(mutex_);
  return state_.alignment;
}

void TAnnotation::SetTextAlignment(TextAlignment alignment) {
  const dp::MutexGuard guard(mutex_);
  state_.alignment = alignment;
}

bool TAnnotation::ExcludesItemTagTest() const {
  const dp::MutexGuard guard(mutex_);
  return state_.excludesItemTagTest;
}

void TAnnotation::SetExcludesItemTagTest(bool on) {
  const dp::MutexGuard guard(mutex_);
  state_.excludesItemTagTest = on;
}

bool TAnnotation::IsItemTemplate() const {
  const dp::MutexGuard guard(mutex_);
  return state_.itemTemplate;
}

void TAnnotation::SetIsItemTemplate(bool on) {
  const dp::MutexGuard guard(mutex_);
  state_.itemTemplate = on;
}

double TAnnotation::GetReferenceResolution() const {
  const dp::MutexGuard guard(mutex_);
  return state_.referenceResolution;
}

void TAnnotation::SetReferenceResolution(double value) {
  const dp::MutexGuard guard(mutex_);
  state_.referenceResolution = value;
}

TAnnotation::State TAnnotation::Snapshot() const {
  State state;
  {
    const dp::MutexGuard guard(mutex_);
    state = state_;
  }
  state.name = GetName();
  state.contents = CopyContents(state.contents);
  return state;
}

void TAnnotation::SetTextContent(const Contents& contents, bool hasContent, const du::SmartPtr<Operation>& operation) {
  State state = Snapshot();
  state.contents = contents;
  state.hasContent = hasContent;
  ApplyInOperation(state, Change::Modified, operation);
}

void TAnnotation::ReplaceBy(const TAnnotation& other, const du::SmartPtr<Operation>& operation) {
  ApplyInOperation(other.Snapshot(), Change::Replaced, operation);
}

void TAnnotation::ApplyInOperation(const State& state, Change change, const du::SmartPtr<Operation>& operation) {
  if (operation) operation->AddStep(MakeObject<TemplateOperationStep>(this, Snapshot(), state, change));
  Apply(state, change);
}

void TAnnotation::Apply(const State& state, Change change) {
  State previous = state;
  {
    const dp::MutexGuard guard(mutex_);
    std::swap(state_, previous);
  }
  SetName(state.name);
  Notify(change);
}

void TAnnotation::Notify(Change change) {
  const du::SmartPtr<TAnnotation> self(this);
  for (const auto& observer : observers_.Copy()) {
    if (change == Change::Replaced) {
      observer->OnTemplateReplaced(self);
    } else {
      observer->OnTemplateModified(self);
    }
  }
}

void TAnnotation::NotifyThumbnailsLoaded() {
  for (const auto& observer : observers_.Copy()) {
    if (observer->WantsThumbnails()) observer->OnThumbnailsLoaded();
  }
}

void TAnnotation::RegisterObserver(const du::SmartPtr<CalloutTemplateObserver>& observer) {
  observers_.Register(observer);
}

void TAnnotation::UnregisterObserver(const du::SmartPtr<CalloutTemplateObserver>& observer) {
  observers_.Unregister(observer);
}

std::size_t TAnnotation::GetObserverCount() const {
  return observers_.GetCount();
}

void TAnnotation::AddUser() {
  const dp::MutexGuard guard(mutex_);
  ++userCount_;
}

void TAnnotation::RemoveUser() {
  const dp::MutexGuard guard(mutex_);
  if (userCount_ > 0) --userCount_;
}

std::size_t TAnnotation::GetUserCount() const {
  const dp::MutexGuard guard(mutex_);
  return userCount_;
}

}  // namespace zrk::illustration
