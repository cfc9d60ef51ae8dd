#pragma once
// What was asked at one time about the leaders of one callout, and the answers to it. Shared by the events of those
// picks; handed to the engine when the last one is answered or dropped, so that the order of answers makes no
// difference.

#include <atomic>
#include <cstdint>
#include <optional>
#include <vector>

#include <dg/DPoint3D.h>
#include <du/RefCounted.h>
#include <du/SmartPtr.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CalloutLeader.h>
#include <zrk/PickAnswer.h>

#include "engine/EngineLink.h"

namespace zrk {
class PickEvent;
class ShapeInstance;
class ShapeView;
}  // namespace zrk

namespace zrcallouts {

/// Holds the callout and its leaders, not the engine. A pick is settled once, from any thread; reading is for whoever
/// is handed the whole.
class AnchorPicks final : public virtual du::RefCounted {
public:
  enum class Kind { PlaceAnchor, CheckAnchor };
  /// One leader and what is known of it; an assembly's answer joins those of its shapes.
  struct Question {
    du::SmartPtr<zrannotations::CalloutLeader> leader;
    dg::DPoint3D anchor;  ///< When it was asked.
    bool answered = false;
    zrk::PickAnswer answer;

    /// Whether the answer came and is still about the anchor that the leader has.
    [[nodiscard]] bool IsCurrent() const;
  };

  /// `evaluation` is the engine's number of the evaluation of hidden parts that asks.
  AnchorPicks(Kind kind, du::SmartPtr<EngineLink> link, du::SmartPtr<zrannotations::Callout> callout,
              std::uint64_t evaluation);
  ~AnchorPicks() override;

  void Add(const du::SmartPtr<zrannotations::CalloutLeader>& leader);
  /// Asks the view: a pick for every shape of every leader. The answers may come before this returns.
  void Request(const du::SmartPtr<zrk::ShapeView>& view);
  /// Notes the answer to a pick, or that there will be none; with the last one the engine is told, if it is still
  /// there.
  void Settle(std::size_t pick, const zrk::PickAnswer* answer);

  [[nodiscard]] const du::SmartPtr<zrannotations::Callout>& GetCallout() const { return callout_; }
  [[nodiscard]] std::uint64_t GetEvaluation() const { return evaluation_; }
  /// One entry an added leader, in that order. Complete when the engine is told.
  [[nodiscard]] const std::vector<Question>& GetQuestions() const { return questions_; }

private:
  struct Pick {
    std::size_t question;
    du::SmartPtr<zrk::ShapeInstance> shape;
    std::optional<zrk::PickAnswer> answer;
  };

  [[nodiscard]] du::SmartPtr<zrk::PickEvent> MakeEvent(std::size_t pick, const du::SmartPtr<zrk::ShapeView>& view,
                                                       const dg::DPoint3D& pixel);
  void JoinAnswers();
  void TellEngine();

  const Kind kind_;
  const du::SmartPtr<EngineLink> link_;
  const du::SmartPtr<zrannotations::Callout> callout_;
  const std::uint64_t evaluation_;
  std::vector<Question> questions_;
  std::vector<Pick> picks_;  // a place is written by the thread that settles it, and read by the last one to settle
  std::atomic<std::size_t> outstanding_{0};
};

}  // namespace zrcallouts
