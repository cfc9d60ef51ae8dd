#include "HistoryOracle.h"

#include <sstream>

#include <zrk/UndoHistory.h>

namespace zrfuzz {

using Effect = HostCall::Effect;

namespace {

std::string NameOfLast(const LiveScene& live) {
  const auto operation = zrk::UndoHistory::GetLast(live.scene);
  return operation ? operation->GetName() : std::string();
}

}  // namespace

HistoryOracle::HistoryOracle(const LiveScene& live) : live_(live) {
  now_ = live_.Watched().State(live_.parts);
  Forget();
}

void HistoryOracle::Forget() {
  at_ = zrk::UndoHistory::GetCount(live_.scene);
  states_.clear();
  states_.resize(at_ + zrk::UndoHistory::GetRedoCount(live_.scene) + 1);
}

std::string HistoryOracle::Compare(Effect effect) {
  const std::string before = std::exchange(now_, live_.Watched().State(live_.parts));
  const std::string lastBefore = std::exchange(last_, NameOfLast(live_));
  const std::size_t count = zrk::UndoHistory::GetCount(live_.scene);
  switch (effect) {
    case Effect::Nothing:
      if (count != at_) return "recorded something";
      return now_ == before ? "" : "changed something: " + FirstDifference(before, now_);
    case Effect::Aside:
      Forget();
      return "";
    case Effect::Recorded:
      return CompareRecorded(before);
    case Effect::Undo:
      return CompareVisit(count, lastBefore);
    case Effect::Redo:
      return CompareVisit(count, last_);
  }
  return "";
}

// Whatever is recorded ends the redo list.
std::string HistoryOracle::CompareRecorded(const std::string& before) {
  const std::size_t count = zrk::UndoHistory::GetCount(live_.scene);
  if (count == at_) {
    return now_ == before ? "" : "changed something outside its operation: " + FirstDifference(before, now_);
  }
  if (count < at_ || zrk::UndoHistory::GetRedoCount(live_.scene) != 0) return "the history lost an operation";
  states_.resize(at_ + 1);
  states_.back() = before;
  states_.resize(count + 1);
  states_.back() = now_;
  at_ = count;
  return "";
}

std::string HistoryOracle::CompareVisit(std::size_t place, const std::string& operation) {
  const std::size_t away = place > at_ ? place - at_ : at_ - place;
  if (away > 1 || states_.size() != place + zrk::UndoHistory::GetRedoCount(live_.scene) + 1) {
    return "the history lost an operation";
  }
  at_ = place;
  if (operation == kInexact || !live_.exactHistory) Forget();
  if (!states_[place]) states_[place] = now_;
  return *states_[place] == now_ ? "" : "another state than before: " + FirstDifference(*states_[place], now_);
}

std::string FirstDifference(const std::string& expected, const std::string& actual) {
  std::istringstream expectedLines(expected);
  std::istringstream actualLines(actual);
  std::string left;
  std::string right;
  while (true) {
    const bool more = static_cast<bool>(std::getline(expectedLines, left));
    const bool moreToo = static_cast<bool>(std::getline(actualLines, right));
    if (!more) left = "nothing";
    if (!moreToo) right = "nothing";
    if (left != right || (!more && !moreToo)) return "\n    was: " + left + "\n    now: " + right;
  }
}

}  // namespace zrfuzz
