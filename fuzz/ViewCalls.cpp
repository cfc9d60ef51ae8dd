// Cameras, windows, and picks that are answered late, in any order, or never.

#include <zrcallouts/CalloutsDrawWhenHiddenOperationStep.h>
#include <zrk/MakeObject.h>
#include <zrk/PickAnswer.h>
#include <zrk/PickEvent.h>

#include "HistoryOracle.h"

namespace zrfuzz {

namespace {

std::string TurnCamera(LiveScene& live, unsigned first, unsigned second) {
  static const dg::DVec3 kDirections[] = {{0, 0, -1}, {1, 0, 0}, {0, 1, 0}, {-1, -1, -1}, {0, 0, 0}};
  const int size = static_cast<int>(second % 4) * 200;
  dg::Camera3D camera;
  camera.SetParallel({0, 0, 0}, kDirections[first % 5], {0, 1, 0}, 10, size, size);
  live.view->SetCamera(camera);
  live.view->SetWindowSize(size, size);
  return "turn the camera to " + std::to_string(first % 5) + " in a window of " + std::to_string(size) + " pixels";
}

std::string Tick(LiveScene& live, unsigned first, unsigned /*second*/) {
  live.view->FireTimeout();
  if (first % 2 == 0) live.scene->NotifyPaletteChanged();
  if (first % 3 == 0) live.view->SetBackgroundColors({1, 0, 0, 1}, {0, 1, 0, 1}, {0, 0, 1, 1});
  return "tick";
}

std::string DrawWhenHidden(LiveScene& live, unsigned first, unsigned /*second*/) {
  live.Edit(kInexact, [&](const auto& operation) {
    operation->AddStep(zrk::MakeObject<zrcallouts::CalloutsDrawWhenHiddenOperationStep>(live.engine, first % 2 == 0));
  });
  return std::string("draw hidden callouts ") + (first % 2 == 0 ? "as usual" : "dimmed");
}

std::string AskForAnchors(LiveScene& live, unsigned first, unsigned second) {
  const auto callout = live.CalloutAt(first);
  if (second % 3 == 0) {
    live.engine->OnDrawWhenHidden(live.view);
    return "ask what is hidden";
  }
  live.engine->RequestAnchorPick(callout);
  return "ask where " + (callout ? zrtest::NameOf(*callout) : "nothing") + " can be seen";
}

PickPtr TakeOne(std::deque<PickPtr>& picks, unsigned choice) {
  if (picks.empty()) return nullptr;
  const auto chosen = picks.begin() + static_cast<std::ptrdiff_t>(choice % picks.size());
  PickPtr pick = *chosen;
  picks.erase(chosen);
  return pick;
}

std::string AnswerPick(LiveScene& live, unsigned first, unsigned second) {
  live.CollectPicks();
  const PickPtr pick = TakeOne(first % 8 == 0 ? live.stalePicks : live.picks, first);
  if (!pick) return "no pick to answer";
  if (second % 4 == 3) return "drop a pick of " + std::to_string(live.picks.size() + 1);
  zrk::PickAnswer answer;
  answer.isVisible = second % 4 != 0;
  answer.clearance = second / 16;
  answer.deepest = pick->GetShapeInstance()->GetLocation().GetPos();
  answer.deepest.z += second / 64;
  answer.place = static_cast<zrk::PickAnswer::Place>(second / 4 % 3);
  answer.atPixel = answer.deepest;
  pick->Answer(answer);
  pick->Answer(answer);  // the second time without effect
  return std::string("answer a pick: ") + (answer.isVisible ? "seen" : "not seen");
}

using Effect = HostCall::Effect;
constexpr HostCall kCalls[] = {{1, Effect::Nothing, TurnCamera},
                               {2, Effect::Nothing, Tick},
                               {1, Effect::Recorded, DrawWhenHidden},
                               {2, Effect::Nothing, AskForAnchors},
                               {8, Effect::Aside, AnswerPick}};

}  // namespace

std::span<const HostCall> ViewCalls() {
  return kCalls;
}

}  // namespace zrfuzz
