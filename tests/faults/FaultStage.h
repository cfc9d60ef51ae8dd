#pragma once
// One scene for one fault: what leads up to the operation under test, the operation, and the state as text.

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

/// Operations end at the component's interface, so that a fault meets the component and no other part of the host.
class FaultStage : public GeneratorFixture {
public:
  FaultStage();
  ~FaultStage() override;
  void TestBody() override {}
  using SceneFixture::RunTasks;

  // What leads up to the operation under test.

  void StartEmpty() {}
  void CombineLeaders() { engine_->SetCombineForSamePart(true); }
  void HideLeaders() { engine_->SetDrawOneForSamePart(true); }
  void UsePlainTemplate() { engine_->SetTemplate(TextTemplate(kLongText)); }
  void UsePropertyTemplate();
  void GenerateApart() { RunOn(parts_); }
  void GenerateCombined();
  void GenerateHidden();
  void GenerateByProperty();
  void GenerateAndJoin();
  void ChangeItemNumbers();
  void GenerateInset();
  void AddSymbol();
  void AddSymbolCallouts();
  void HoldPicks();
  void JoinItemInOperation();
  void MarkHiddenParts();
  void PrepareArrival();
  void PrepareCombinedArrival();
  void PrepareInset();

  // The operation under test.

  void CreateEngine();
  void Generate() { RunOn(parts_); }
  void GenerateAgain();
  void GenerateByItem();
  void GenerateByHand();
  void AddMadeCallouts();
  void CallOutSymbols();
  void Arrive() { engine_->OnAddAnnotation(arrival_); }
  void Leave();
  void RegenerateLabels();
  void ChangeTemplate();
  void ChangeLanguage();
  void RemoveFromItem();
  void JoinItem();
  void RemoveItem();
  void ClearItems();
  void RenumberItems();
  void Query();
  void MovePart();
  void HidePart();
  void RemoveShape();
  void PlaceAnchors();
  void EvaluateHidden();
  void SwitchDrawWhenHidden();
  void ChangeInset();
  void DeleteSymbol();
  void DropPicks();
  void UndoAndRedo();
  void AlignLabels();
  void SpreadLabels();
  void ArrangeLabels();
  void AlignSheet();
  void CreateOnSheet();
  void UpdateSheet();
  void Destroy();

  /// All that a user or another part of the host can see of the scene.
  [[nodiscard]] std::string State() const;
  /// What a caller does that is told of a fault: undoes the operation that it handed in.
  void TakeBack();
  /// Takes everything away that was made on the stage.
  void Clear();
  /// Whether another thread gets the engine's lock for itself, and no pick is outstanding.
  void ExpectIdle() const;

private:
  void LookAlong(const dg::DVec3& direction);
  void RunOn(const Names& names);
  [[nodiscard]] CalloutPtr FirstCallout() const;
  [[nodiscard]] unsigned ItemOf(const std::string& name) const;
  [[nodiscard]] std::string StateOf(const zrannotations::Callout& callout) const;

  const Names parts_ = {"bolt", "bolt#2", "nut", "frame", "weld/plate"};
  const bool drawWhenHidden_ = scene_->GetDrawWhenHidden();
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
};

}  // namespace zrtest
