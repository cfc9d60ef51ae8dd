#include "commands/HostSession.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "SmallAssembly.h"
#include "commands/FigurePlan.h"
#include "commands/HostProcess.h"
#include "visibility/VectorMath.h"

namespace zrfigure {
namespace {

using Texts = std::vector<std::string>;

/// The press in the host, seen from the front with a page of 1600 x 1200 pixels.
class HostSessionTest : public testing::Test {
protected:
  void Open(Model model = fixtures::MakePress()) {
    model_ = std::move(model);
    tree_ = std::make_unique<OccurrenceTree>(model_, Texts());
    process_ = std::make_unique<HostProcess>("en");
    std::string error;
    ASSERT_TRUE(process_->LoadComponent(error)) << error;
    session_ = std::make_unique<HostSession>(*tree_, ViewDirection(), text_);
    ASSERT_TRUE(session_->HasEngine());
    const Box2 room{50, 50, 1550, 1150};
    const View view = FitView(model_, tree_->Leaves(), {}, {300, 300, 1300, 900}, {1600, 1200});
    session_->SetView(view, room);
    const VisibilityScene scene(model_);
    session_->SetVisibleRegions(FindVisibleRegions(RenderIdBuffer(scene, view), view));
    session_->SetTemplate(*BuiltInTemplate("number"), "en");
    session_->SetMode(CalloutMode::OnePerItem);
  }
  void TearDown() override {
    session_.reset();
    process_.reset();
  }

  void Generate(bool hierarchical = false) {
    if (hierarchical) session_->PrepareRows(PlanHierarchicalRows(*tree_, tree_->Leaves()), true);
    session_->Generate(tree_->Leaves(), false);
  }

  /// "number xQuantity", a row each.
  [[nodiscard]] Texts Items() const {
    Texts texts;
    for (const ItemState& item : session_->GetItems())
      texts.push_back(item.number + " x" + std::to_string(item.quantity));
    return texts;
  }
  /// "text leaders/shown", a callout each.
  [[nodiscard]] Texts Callouts() const {
    Texts texts;
    for (const CalloutState& callout : session_->GetCallouts()) {
      const auto& leaders = callout.leaders;
      const auto shown = std::count_if(leaders.begin(), leaders.end(), [](const auto& l) { return !l.hidden; });
      texts.push_back(callout.text + " " + std::to_string(leaders.size()) + "/" + std::to_string(shown));
    }
    return texts;
  }
  /// Undoes and redoes; the figure must go and come back as it is, and be gone at the end.
  void ExpectOneStep() {
    const Texts items = Items(), callouts = Callouts();
    ASSERT_TRUE(session_->Undo());
    EXPECT_EQ(Items(), Texts());
    EXPECT_EQ(Callouts(), Texts());
    ASSERT_TRUE(session_->Redo());
    EXPECT_EQ(Items(), items);
    EXPECT_EQ(Callouts(), callouts);
    EXPECT_FALSE(session_->Redo());
    ASSERT_TRUE(session_->Undo());
    EXPECT_FALSE(session_->Undo());
  }

  Model model_;
  TextMeasure text_{28};
  std::unique_ptr<OccurrenceTree> tree_;
  std::unique_ptr<HostProcess> process_;
  std::unique_ptr<HostSession> session_;
};

TEST_F(HostSessionTest, RunIsOneStepInEveryMode) {
  Open();
  struct Case {
    CalloutMode mode;
    bool hierarchical;
    std::vector<unsigned> order;  // Of item ids, 1 to 4 in the first case and 5 to 9 in the second.
    Texts items, callouts;
  };
  const Texts flat{"1 x1", "2 x2", "3 x3", "4 x1"};
  using enum CalloutMode;
  const Case cases[] = {
      {OnePerItem, false, {3, 1}, {"1 x3", "2 x1", "3 x2", "4 x1"}, {"2 1/1", "3 2/1", "1 3/1", "4 1/1"}},
      {OnePerItem,
       true,
       {9, 8, 5},
       {"1 x1", "2 x2", "2.1 x3", "2.2 x2", "3 x1"},
       {"3 1/1", "2.2 2/1", "2.1 3/1", "1 1/1"}},
      {OnePerItem, true, {}, {"1 x1", "2 x2", "2.1 x2", "2.2 x3", "3 x1"}, {"1 1/1", "2.1 2/1", "2.2 3/1", "3 1/1"}},
      {OnePerItem, false, {}, flat, {"1 1/1", "2 2/1", "3 3/1", "4 1/1"}},
      {Combine, false, {}, flat, {"1 1/1", "2 2/2", "3 3/3", "4 1/1"}},
      {PerInstance, false, {}, flat, {"1 1/1", "2 1/1", "2 1/1", "3 1/1", "3 1/1", "3 1/1", "4 1/1"}}};
  for (const Case& expected : cases) {
    SCOPED_TRACE(expected.callouts[0] + " in mode " + std::to_string(static_cast<int>(expected.mode)));
    session_->SetMode(expected.mode);
    Generate(expected.hierarchical);
    if (!expected.order.empty()) session_->RenumberItems(expected.order);
    EXPECT_EQ(Items(), expected.items);
    EXPECT_EQ(Callouts(), expected.callouts);
    ExpectOneStep();
  }
}

TEST_F(HostSessionTest, MovedLabelsBelongToTheRun) {
  Open();
  Generate();
  session_->MoveLabels({{session_->GetCallouts()[1].id, {1, 2, 3}}, {9999, {0, 0, 0}}});
  for (int round = 0; round < 2; ++round) {
    const Vec3 label = session_->GetCallouts().at(1).label;
    EXPECT_NEAR(Length(label - Vec3{1, 2, 3}), 0, 1e-6);
    ASSERT_TRUE(session_->Undo());
    ASSERT_TRUE(round == 1 || session_->Redo());
  }
  session_->Generate({1}, false);
  std::string error;
  EXPECT_FALSE(session_->AlignLabels(zrcallouts::Align_Mode::MinX, false, error));
  EXPECT_NE(error.find("fewer than two"), std::string::npos) << error;
}

TEST_F(HostSessionTest, NothingOutlivesTheSession) {
  const auto cycle = [this] {
    Open();
    Generate(true);
    EXPECT_TRUE(session_->Undo() && session_->Redo());
    TearDown();
    return du::RefCounted::GetLiveObjectCount();
  };
  // The first round also makes what lives as long as the process.
  const long left = cycle();
  EXPECT_EQ(cycle(), left);
}

TEST_F(HostSessionTest, ShownLeaderMovesToAPartThatCanBeSeen) {
  // The first jaw stands behind a second base plate that is in front of it.
  Model model = fixtures::MakePress();
  const Vec3 jaw = model.occurrences[3].toWorld.translation;
  model.occurrences[9].toWorld.translation = {jaw.x, jaw.y - 5, jaw.z};
  Open(model);
  Generate();
  const CalloutState jaws = session_->GetCallouts()[1];
  ASSERT_EQ(jaws.leaders.size(), 2u);
  EXPECT_TRUE(jaws.leaders[0].hidden && !jaws.leaders[1].hidden);
  EXPECT_EQ(jaws.leaders[1].occurrence, 6);
}

}  // namespace
}  // namespace zrfigure
