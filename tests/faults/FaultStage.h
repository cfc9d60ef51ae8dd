#pragma once
// One scene for one fault, and its state as text.

#include <string>

#include <zrannotations/Inset.h>
#include <zrk/OperationStep.h>
#include <zrk/illustration2d/Callout2D.h>
#include <zrk/illustration2d/Scene2D.h>

#include "support/GeneratorFixture.h"
#include "support/HeldPicks.h"

namespace zrtest {

/// Too long for a string to hold without asking for memory.
constexpr const char* kLongText = "more than 15 letters";

class FaultStage : public GeneratorFixture {
public:
  FaultStage();
  ~FaultStage() override;
  void TestBody() override {}
  using SceneFixture::RunTasks;

  /// All that a user or another part of the host can see of the scene.
  [[nodiscard]] std::string State() const;
  /// What a caller does that is told of a fault: undoes the operation that it handed in.
  void TakeBack();
  /// Takes everything away that was made on the stage.
  void Clear();
  /// Whether another thread gets the engine's lock for itself, and no pick is outstanding.
  void ExpectIdle() const;

protected:
  void LookAlong(const dg::DVec3& direction);
  /// An automatic run; throws what its task has ended with.
  void RunOn(const Names& names);
  [[nodiscard]] CalloutPtr FirstCallout() const;
  [[nodiscard]] unsigned ItemOf(const std::string& name) const;

  const du::SmartPtr<zrk::illustration::Illustration3dScene> other_;
  const du::SmartPtr<zrk::illustration2d::Scene2D> sheet_;
  const du::SmartPtr<HeldPicks> picks_ = du::SmartPtr<HeldPicks>(new HeldPicks);
  std::vector<du::SmartPtr<zrk::illustration2d::Callout2D>> sheetCallouts_;
  du::SmartPtr<zrk::Annotation> arrival_;
  du::SmartPtr<zrannotations::Inset> inset_;
  du::SmartPtr<zrannotations::SymbolAnnotation> symbol_;
  EnginePtr made_;
  du::SmartPtr<zrk::OperationStep> step_;
  bool undone_ = false;
  du::SmartPtr<zrk::Operation> operation_;  // handed to the operation under test
  std::string answer_;                      // of the last query

private:
  [[nodiscard]] static std::string StateOf(const zrannotations::Callout& callout);

  const bool drawWhenHidden_ = scene_->GetDrawWhenHidden();
};

}  // namespace zrtest
