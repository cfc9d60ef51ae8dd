#include "visibility/AnchorPicks.h"

#include <utility>

#include <dg/Camera3D.h>
#include <dg/DMat44.h>
#include <zrk/ShapeInstance.h>
#include <zrk/ShapeView.h>

#include "hostlayer/HostLayer.h"
#include "visibility/AnchorRule.h"
#include "visibility/CalloutAnchorVisibleEvent.h"
#include "visibility/CalloutPickAnchorEvent.h"
#include "zrcallouts/Callouts.h"

namespace zrcallouts {

namespace {

// An assembly shows at a pixel where one of its shapes does, and is deepest where that one is.
void Join(zrk::PickAnswer& joined, const zrk::PickAnswer& answer) {
  if (!answer.isVisible) return;
  if (!joined.isVisible || answer.clearance > joined.clearance) {
    joined.deepest = answer.deepest;
    joined.clearance = answer.clearance;
  }
  if (answer.place > joined.place) {
    joined.place = answer.place;
    joined.atPixel = answer.atPixel;
    joined.clearanceAtPixel = answer.clearanceAtPixel;
  }
  joined.isVisible = true;
}

}  // namespace

bool AnchorPicks::Question::IsCurrent() const {
  return answered && IsSamePoint(leader->GetAnchor(), anchor);
}

AnchorPicks::AnchorPicks(Kind kind, du::SmartPtr<EngineLink> link, du::SmartPtr<zrannotations::Callout> callout,
                         std::uint64_t evaluation)
    : kind_(kind), link_(std::move(link)), callout_(std::move(callout)), evaluation_(evaluation) {}

AnchorPicks::~AnchorPicks() = default;

void AnchorPicks::Add(const du::SmartPtr<zrannotations::CalloutLeader>& leader) {
  for (const auto& shape : leader->GetShapeInstances()) picks_.push_back({questions_.size(), shape, std::nullopt});
  questions_.push_back({leader, leader->GetAnchor(), false, {}});
}

du::SmartPtr<zrk::PickEvent> AnchorPicks::MakeEvent(std::size_t pick, const du::SmartPtr<zrk::ShapeView>& view,
                                                    const dg::DPoint3D& pixel) {
  const du::SmartPtr<AnchorPicks> self(this);
  const auto& shape = picks_[pick].shape;
  if (kind_ == Kind::PlaceAnchor) return new CalloutPickAnchorEvent(view, shape, pixel, {self, link_, pick});
  return new CalloutAnchorVisibleEvent(view, shape, pixel, {self, link_, pick});
}

void AnchorPicks::Request(const du::SmartPtr<zrk::ShapeView>& view) {
  const dg::DMat44 toPixel = view->GetCamera().GetObjectToPixel();
  const std::size_t count = picks_.size();
  outstanding_ = count;
  for (std::size_t pick = 0; pick < count; ++pick) {
    const auto event = MakeEvent(pick, view, questions_[picks_[pick].question].anchor * toPixel);
    if (event) {
      hostlayer::RequestPick(view, event);
    } else {
      Settle(pick, nullptr);  // out of memory
    }
  }
}

void AnchorPicks::Settle(std::size_t pick, const zrk::PickAnswer* answer) {
  if (answer) picks_[pick].answer = *answer;
  if (--outstanding_ == 0) TellEngine();
}

// A leader of which a shape was not answered for is seen only if another shape is.
void AnchorPicks::JoinAnswers() {
  for (Question& question : questions_) question.answered = true;
  for (const Pick& pick : picks_) {
    if (!pick.answer) questions_[pick.question].answered = false;
  }
  for (const Pick& pick : picks_) {
    if (!pick.answer) continue;
    Question& question = questions_[pick.question];
    Join(question.answer, *pick.answer);
    if (question.answer.isVisible) question.answered = true;
  }
}

void AnchorPicks::TellEngine() {
  const auto engine = link_->Take();
  if (!engine) return;
  JoinAnswers();
  if (kind_ == Kind::PlaceAnchor) {
    engine->OnReceivePick(*this);
  } else {
    engine->OnReceiveAnchorVisiblePick(*this);
  }
}

}  // namespace zrcallouts
