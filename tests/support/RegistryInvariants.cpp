#include "support/RegistryInvariants.h"

#include <algorithm>

#include <dp/ReadWriteLock.h>
#include <zrannotations/CombinedCallout.h>
#include <zrannotations/Inset.h>
#include <zrannotations/SymbolAnnotation.h>
#include <zrk/AnnoSet.h>
#include <zrk/ReadWriteLock.h>

#include "support/EngineFields.h"

namespace zrtest {

RegistryInvariants::RegistryInvariants(WatchedScene watched) : watched_(std::move(watched)) {}

std::vector<std::string> RegistryInvariants::Broken(const Expected& expected) {
  broken_.clear();
  shown_ = IsDestroyed() ? std::vector<CalloutPtr>() : watched_.Callouts();
  CheckObserved();
  CheckFiling();
  CheckInsets();
  CheckSymbols();
  if (!IsDestroyed()) {
    CheckItems(expected.unsureMarks);
    CheckTemplates(expected);  // of a destroyed engine they go later, on the task pool
  }
  CheckCounters(expected);
  return std::move(broken_);
}

void RegistryInvariants::Require(bool holds, const std::string& otherwise) {
  if (!holds) broken_.push_back(otherwise);
}

void RegistryInvariants::CheckObserved() {
  for (const auto& callout : shown_) {
    Require(callout->HasTemplateObserver() == !callout->IsCustomCallout(), NameOf(*callout) + ": template observer");
  }
  RequireEqual(Read<ObservedCallouts>(*watched_.engine), {shown_.begin(), shown_.end()}, "observed", "in the scene");
}

void RegistryInvariants::RequireEqual(const CalloutSet& kept, const CalloutSet& implied, const std::string& keptAs,
                                      const std::string& impliedBy) {
  for (const auto& callout : implied)
    Require(kept.count(callout) == 1, NameOf(*callout) + " is " + impliedBy + ", but not " + keptAs);
  for (const auto& callout : kept)
    Require(implied.count(callout) == 1, NameOf(*callout) + " is " + keptAs + ", but not " + impliedBy);
}

RegistryInvariants::Filing RegistryInvariants::ImpliedFiling() const {
  Filing filing;
  for (const auto& callout : shown_) {
    auto filers = SinglesOf(callout);
    if (filers.empty()) filers.emplace_back();
    filers.front() = callout;  // stands for its first member
    for (const auto& filer : filers) {
      for (unsigned i = 0; i < filer->GetLeaderLineCount(true); ++i) {
        const auto assembly = filer->GetAssemblyInstanceIdAtPos(i);
        filing[assembly.empty() ? filer->GetShapeInstanceIdAtPos(i) : assembly].insert(filer);
      }
    }
  }
  return filing;
}

void RegistryInvariants::CheckFiling() {
  Filing implied = ImpliedFiling();
  for (const auto& [id, callouts] : Read<FiledCallouts>(*watched_.engine)) {
    Require(!callouts.empty(), "nothing is filed at " + id + ", but the id stays");
    RequireEqual(callouts, implied[id], "filed at " + id, "pointing there");
    implied.erase(id);
  }
  for (const auto& [id, callouts] : implied) RequireEqual({}, callouts, "filed at " + id, "pointing there");
}

void RegistryInvariants::CheckInsets() {
  const auto& observers = Read<InsetObservers>(*watched_.engine);
  std::size_t insets = 0;
  for (const auto& annotation : watched_.scene->GetAnnoSet()->GetAnnotations()) {
    const auto inset = du::DynamicCast<zrannotations::Inset>(annotation);
    if (!inset || IsDestroyed()) continue;
    ++insets;
    Require(observers.count(inset) == 1 && inset->GetObserverCount() == 1, "an inset without its one observer");
  }
  Require(observers.size() == insets, "observers of insets that are not in the scene");
  const auto& observed = Read<ObservedCallouts>(*watched_.engine);
  for (const auto& [inset, callouts] : Read<InsetCallouts>(*watched_.engine)) {
    for (const auto& callout : callouts) {
      const CalloutPtr parent = callout->GetParent();
      Require(observed.count(parent ? parent : callout) == 1, NameOf(*callout) + " is gone, but still in an inset");
    }
  }
}

void RegistryInvariants::CheckSymbols() {
  if (IsDestroyed()) return;  // keeps them until it goes itself
  for (const auto& [instance, annotation] : Read<SymbolAnnotations>(*watched_.engine)) {
    Require(watched_.scene->GetAnnoSet()->Contains(annotation), "a symbol that is not in the scene is remembered");
  }
}

RegistryInvariants::CalloutSet RegistryInvariants::CarriersOf(unsigned item) const {
  CalloutSet carriers;
  for (const auto& callout : shown_) {
    if (callout->CarriesItemId(item)) carriers.insert(callout);
  }
  return carriers;
}

void RegistryInvariants::CheckItems(const std::set<unsigned>& unsureMarks) {
  std::set<std::uint32_t> carried;
  std::set<std::uint32_t> reported;
  for (const auto& callout : shown_) {
    unsigned item = 0;
    if (callout->GetItemId(item)) carried.insert(item);
  }
  watched_.engine->GetItemdIds(reported);
  Require(reported == carried, "the reported items are not those of the callouts");
  for (const unsigned item : watched_.items->GetItemIds()) {
    std::vector<CalloutPtr> found;
    watched_.engine->GetItemIdCallouts(item, found);
    const CalloutSet carriers = CarriersOf(item);
    Require(found == std::vector<CalloutPtr>(carriers.begin(), carriers.end()),
            "the callouts found for item " + std::to_string(item) + " are not those that carry it");
    Require(unsureMarks.count(item) == 1 || watched_.items->IsIndicated(item) == !carriers.empty(),
            "item " + std::to_string(item) + (carriers.empty() ? " is indicated without" : " has unindicated") +
                " callouts");
  }
}

void RegistryInvariants::CheckTemplates(const Expected& expected) {
  for (const auto& callouttemplate : expected.templates) {
    const auto observers = std::count_if(shown_.begin(), shown_.end(), [&](const auto& callout) {
      return !callout->IsCustomCallout() && callout->GetDefinition() == callouttemplate;
    });
    Require(callouttemplate->GetObserverCount() == static_cast<std::size_t>(observers),
            "template " + callouttemplate->GetId() + " has " + std::to_string(callouttemplate->GetObserverCount()) +
                " observers for " + std::to_string(observers) + " callouts");
  }
}

void RegistryInvariants::CheckCounters(const Expected& expected) {
  const std::uint32_t picks = watched_.engine->GetPickRequestCount();
  Require(picks == expected.openPicks,
          std::to_string(picks) + " picks counted with " + std::to_string(expected.openPicks) + " open");
  Require(Read<RunningGenerations>(*watched_.engine) == 0, "a run counts as under way");
  const auto* lock = watched_.engine->GetReadWriteLock();
  Require(!lock || !lock->IsHeldByThisThread(), "the engine's lock is held");
}

}  // namespace zrtest
