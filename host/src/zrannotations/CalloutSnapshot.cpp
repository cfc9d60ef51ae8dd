#include <zrannotations/CalloutSnapshot.h>

#include <zrannotations/CombinedCallout.h>
#include <zrk/illustration/CalloutTemplateObserver.h>

namespace zrannotations {

CalloutSnapshot Callout::TakeSnapshot() const {
  CalloutSnapshot snapshot;
  {
    const dp::MutexGuard guard(mutex_);
    snapshot.definition = definition_;
    snapshot.markdown = markdown_;
    snapshot.text = text_;
    snapshot.localizable = localizableString_;
    snapshot.localizableSource = localizableString_.GetSourceText();
    snapshot.label = label_;
    snapshot.itemId = itemId_;
  }
  for (const du::SmartPtr<CalloutLeader>& leader : GetLeaders()) {
    snapshot.leaders.push_back({leader, leader->IsHidden(), leader->IsVisible()});
  }
  return snapshot;
}

void Callout::RestoreSnapshot(const CalloutSnapshot& snapshot, std::int32_t aspects) {
  if (aspects & CalloutSnapshot::Definition) {
    UpdateDefinition(snapshot.definition);
    const dp::MutexGuard guard(mutex_);
    markdown_ = snapshot.markdown;
  }
  if (aspects & CalloutSnapshot::Text) RestoreText(snapshot);
  if (aspects & CalloutSnapshot::LabelPosition) {
    const dp::MutexGuard guard(mutex_);
    label_ = snapshot.label;
  }
  if (aspects & CalloutSnapshot::ItemId) SetItemId(snapshot.itemId);
  if (aspects & CalloutSnapshot::Leaders) RestoreLeaders(snapshot);
  NotifyModified(false);
}

void Callout::RestoreText(const CalloutSnapshot& snapshot) {
  du::LocalizableString localizable;
  {
    const dp::MutexGuard guard(mutex_);
    text_ = snapshot.text;
    // The record stays: its translations outlive the change that is taken back. But where localisation was set up only
    // afterwards, the text is none that the language decides.
    if (!localizableString_.IsEnabled() || !snapshot.localizable.IsEnabled()) localizableString_ = snapshot.localizable;
    localizable = localizableString_;
  }
  if (localizable.IsEnabled()) localizable.SetSourceText(snapshot.localizableSource);
}

void Callout::RestoreLeaders(const CalloutSnapshot& snapshot) {
  LeaderVector leaders;
  for (const CalloutSnapshot::LeaderState& state : snapshot.leaders) {
    state.leader->SetHidden(state.hidden);
    state.leader->SetVisible(state.visible);
    leaders.push_back(state.leader);
  }
  SetLeaders(leaders);
}

}  // namespace zrannotations
