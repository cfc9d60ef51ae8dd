#include "script/ChangeReport.h"

#include <cmath>
#include <map>
#include <utility>

namespace zrfigure {
namespace {

constexpr double kSamePlaceMm = 1e-3;

bool Differ(const Vec3& a, const Vec3& b) {
  return std::hypot(a.x - b.x, a.y - b.y, a.z - b.z) > kSamePlaceMm;
}

/// Key of a leader in its callout: what it points at, and how many before it point there too.
using LeaderKey = std::pair<int, int>;

std::map<LeaderKey, const LeaderState*> KeyLeaders(const CalloutState& callout) {
  std::map<LeaderKey, const LeaderState*> keyed;
  for (const LeaderState& leader : callout.leaders) {
    int repeat = 0;
    while (!keyed.emplace(LeaderKey(leader.occurrence, repeat), &leader).second) ++repeat;
  }
  return keyed;
}

void CompareLeaders(const CalloutState& before, const CalloutState& after, CalloutChanges& changes) {
  auto old = KeyLeaders(before);
  for (const auto& [key, leader] : KeyLeaders(after)) {
    const auto found = old.find(key);
    if (found == old.end()) {
      ++changes.leadersAdded;
      continue;
    }
    if (Differ(found->second->anchor, leader->anchor)) ++changes.leadersMoved;
    if (IsShown(*found->second) && !IsShown(*leader)) ++changes.leadersHidden;
    if (!IsShown(*found->second) && IsShown(*leader)) ++changes.leadersShown;
    old.erase(found);
  }
  changes.leadersRemoved += old.size();
}

/// Collects "3 labels changed", "1 leader moved" and so on into one line.
class Sentence {
public:
  void Count(std::size_t count, const char* noun, const char* verb) {
    if (count > 0) Add(std::to_string(count) + " " + noun + (count == 1 ? " " : "s ") + verb);
  }
  /// A single callout is named by its id.
  void Callouts(const std::vector<unsigned>& ids, const char* verb) {
    if (ids.size() == 1) {
      Add("callout " + std::to_string(ids.front()) + " " + verb);
    } else {
      Count(ids.size(), "callout", verb);
    }
  }
  [[nodiscard]] std::string Text() const { return text_.empty() ? "no callout changed" : text_; }

private:
  void Add(const std::string& phrase) { text_ += (text_.empty() ? "" : ", ") + phrase; }

  std::string text_;
};

}  // namespace

bool IsShown(const LeaderState& leader) {
  return !leader.hidden && leader.visible;
}

CalloutChanges CompareCallouts(const std::vector<CalloutState>& before, const std::vector<CalloutState>& after) {
  std::map<unsigned, const CalloutState*> old;
  for (const CalloutState& callout : before) old[callout.id] = &callout;
  CalloutChanges changes;
  for (const CalloutState& callout : after) {
    const auto found = old.find(callout.id);
    if (found == old.end()) {
      changes.added.push_back(callout.id);
      continue;
    }
    if (found->second->text != callout.text) changes.relabelled.push_back(callout.id);
    if (Differ(found->second->label, callout.label)) changes.labelsMoved.push_back(callout.id);
    CompareLeaders(*found->second, callout, changes);
    old.erase(found);
  }
  for (const auto& [id, callout] : old) changes.removed.push_back(id);
  return changes;
}

std::string DescribeChanges(const CalloutChanges& changes) {
  Sentence sentence;
  sentence.Callouts(changes.added, "added");
  sentence.Callouts(changes.removed, "removed");
  sentence.Count(changes.relabelled.size(), "label", "changed");
  sentence.Count(changes.labelsMoved.size(), "label", "moved");
  sentence.Count(changes.leadersAdded, "leader", "added");
  sentence.Count(changes.leadersRemoved, "leader", "removed");
  sentence.Count(changes.leadersMoved, "leader", "moved");
  sentence.Count(changes.leadersShown, "leader", "shown");
  sentence.Count(changes.leadersHidden, "leader", "hidden");
  return sentence.Text();
}

}  // namespace zrfigure
