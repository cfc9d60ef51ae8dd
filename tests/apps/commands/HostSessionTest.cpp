#include "commands/HostSession.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "SmallAssembly.h"
#include "commands/FigurePlan.h"
#include "commands/HostProcess.h"
#include "commands/Selection.h"

namespace zrfigure {
namespace {

using Texts = std::vector<std::string>;

/// The press in the host, seen from the front with a page of 1600 x 1200 pixels.
class HostSessionTest : public testing::Test {
protected:
  void Open(Model model = fixtures::MakePress(), const Texts& welds = {}) {
    model_ = std::move(model);
    tree_ = std::make_unique<OccurrenceTree>(model_, welds);
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
    UseTemplate("number");
    session_->SetMode(CalloutMode::OnePerItem);
  }
  void TearDown() override { Close(); }
  void Close() {
    session_.reset();
    process_.reset();
  }

  void UseTemplate(const std::string& name) { session_->SetTemplate(*BuiltInTemplate(name), "en"); }
  void GenerateLeaves() { session_->Generate(tree_->Leaves(), false); }
  void PrepareHierarchy() { session_->PrepareRows(PlanHierarchicalRows(*tree_, tree_->Leaves()), true); }

  /// "number xQuantity", a row each.
  [[nodiscard]] Texts Items() const {
    Texts texts;
    for (const ItemState& item : session_->GetItems()) {
      texts.push_back(item.number + " x" + std::to_string(item.quantity));
    }
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

TEST_F(HostSessionTest, ModesDecideCalloutsAndLeaders) {
  Open();
  const std::pair<CalloutMode, Texts> modes[] = {
      {CalloutMode::OnePerItem, {"1 1/1", "2 2/1", "3 3/1", "4 1/1"}},
      {CalloutMode::Combine, {"1 1/1", "2 2/2", "3 3/3", "4 1/1"}},
      {CalloutMode::PerInstance, {"1 1/1", "2 1/1", "2 1/1", "3 1/1", "3 1/1", "3 1/1", "4 1/1"}}};
  for (const auto& [mode, callouts] : modes) {
    session_->SetMode(mode);
    GenerateLeaves();
    EXPECT_EQ(Items(), (Texts{"1 x1", "2 x2", "3 x3", "4 x1"}));
    EXPECT_EQ(Callouts(), callouts);
    ExpectOneStep();
  }
}

TEST_F(HostSessionTest, HierarchicalRowsNumberAssembliesAndLabels) {
  Open();
  PrepareHierarchy();
  GenerateLeaves();
  EXPECT_EQ(Items(), (Texts{"1 x1", "2 x2", "2.1 x2", "2.2 x3", "3 x1"}));
  EXPECT_EQ(Callouts(), (Texts{"1 1/1", "2.1 2/1", "2.2 3/1", "3 1/1"}));
  ExpectOneStep();
}

TEST_F(HostSessionTest, AssembliesGetTheirCallouts) {
  Open();
  session_->Generate(SelectOccurrences(*tree_, 1u, {}), false);
  EXPECT_EQ(Items(), (Texts{"1 x1", "2 x2", "3 x1", "4 x1"}));
  EXPECT_EQ(Callouts(), (Texts{"1 1/1", "2 2/1", "3 1/1", "4 1/1"}));
  EXPECT_EQ(session_->GetCallouts()[1].leaders[0].occurrence, 2);
}

TEST_F(HostSessionTest, MembersOfAWeldmentLeadToTheWeldment) {
  Open(fixtures::MakePress(), {"clamp"});
  GenerateLeaves();
  EXPECT_EQ(Items(), (Texts{"1 x1", "2 x2", "3 x1", "4 x1"}));
  const std::vector<PlannedRow> planned = PlanFlatRows(*tree_, tree_->Leaves());
  for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(session_->GetItems().at(i).occurrences, planned.at(i).occurrences);
}

TEST_F(HostSessionTest, TemplatesShowNumberQuantityTagAndName) {
  Model model = fixtures::MakePress();
  model.products[4].properties["tag"] = "B-7";
  Open(model);
  for (const auto& [name, text] :
       {std::pair{"number-quantity", "3 (3x)"}, {"number-name", "3 bolt"}, {"number-tag", "3 B-7"}}) {
    UseTemplate(name);
    session_->PrepareRows(PlanFlatRows(*tree_, tree_->Leaves()), false);
    GenerateLeaves();
    ASSERT_EQ(session_->GetCallouts().size(), 4u) << name;
    EXPECT_EQ(session_->GetCallouts()[2].text, text);
    ASSERT_TRUE(session_->Undo());
  }
}

TEST_F(HostSessionTest, TemplateSpeaksTheLanguageItHasAPatternFor) {
  Open();
  std::string error;
  const auto definition = ParseTemplate(R"({"id":"p","name":"p","contents":[{"text":"Item "},
      {"group":"System","name":"zrITM"}],"translations":{"de":"Pos. {0}!"}})",
                                        error);
  ASSERT_TRUE(definition) << error;
  for (const auto& [language, text] : {std::pair{"de", "Pos. 1!"}, {"fr", "Item 1"}}) {
    session_->SetTemplate(*definition, language);
    session_->Generate({1}, false);
    EXPECT_EQ(session_->GetCallouts().at(0).text, text);
    ASSERT_TRUE(session_->Undo());
  }
}

TEST_F(HostSessionTest, RenumberingGoesWithTheRun) {
  Open();
  struct Case {
    bool hierarchical;
    std::vector<unsigned> order;  // Of item ids; with assemblies the press has 1 base, 2 clamp, 3 jaw, 4 bolt, 5 lid.
    Texts items, callouts;
  };
  const Case cases[] = {
      {false, {3, 1}, {"1 x3", "2 x1", "3 x2", "4 x1"}, {"2 1/1", "3 2/1", "1 3/1", "4 1/1"}},
      {true, {9, 8, 5}, {"1 x1", "2 x2", "2.1 x3", "2.2 x2", "3 x1"}, {"3 1/1", "2.2 2/1", "2.1 3/1", "1 1/1"}}};
  for (const Case& expected : cases) {
    if (expected.hierarchical) PrepareHierarchy();
    GenerateLeaves();
    session_->RenumberItems(expected.order);
    EXPECT_EQ(Items(), expected.items);
    EXPECT_EQ(Callouts(), expected.callouts);
    ExpectOneStep();
  }
}

TEST_F(HostSessionTest, AlignedAndMovedLabelsComeBackWithUndo) {
  Open();
  GenerateLeaves();
  const auto labels = [&] {
    std::vector<double> places;
    for (const auto& callout : session_->GetCallouts()) {
      places.insert(places.end(), {callout.label.x, callout.label.y, callout.label.z});
    }
    return places;
  };
  const std::vector<double> before = labels();
  std::string error;
  EXPECT_FALSE(session_->AlignLabels(zrcallouts::Align_Mode::AlongAxisY, false, error));
  EXPECT_NE(error.find("points at the viewer"), std::string::npos) << error;
  EXPECT_EQ(labels(), before);
  ASSERT_TRUE(session_->AlignLabels(zrcallouts::Align_Mode::AlongAxisX, true, error)) << error;
  const double level = labels()[2];
  for (const auto& callout : session_->GetCallouts()) EXPECT_NEAR(callout.label.z, level, 1e-6);
  ASSERT_TRUE(session_->Undo());
  EXPECT_EQ(labels(), before);
  session_->MoveLabels({{session_->GetCallouts()[1].id, {1, 2, 3}}, {9999, {0, 0, 0}}});
  const CalloutState moved = session_->GetCallouts()[1];
  EXPECT_NEAR(moved.label.x + moved.label.y + moved.label.z, 6, 1e-6);
  ASSERT_TRUE(session_->Undo() && session_->Redo()) << "moving belongs to the run";
  EXPECT_NEAR(session_->GetCallouts()[1].label.z, 3, 1e-6);
  ASSERT_TRUE(session_->Undo());
  session_->Generate({1}, false);
  EXPECT_FALSE(session_->AlignLabels(zrcallouts::Align_Mode::MinX, false, error));
  EXPECT_NE(error.find("fewer than two"), std::string::npos) << error;
}

TEST_F(HostSessionTest, NothingOutlivesTheSession) {
  const auto cycle = [this] {
    Open();
    PrepareHierarchy();
    GenerateLeaves();
    EXPECT_TRUE(session_->Undo() && session_->Redo());
    Close();
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
  GenerateLeaves();
  const CalloutState jaws = session_->GetCallouts()[1];
  ASSERT_EQ(jaws.leaders.size(), 2u);
  EXPECT_TRUE(jaws.leaders[0].hidden && !jaws.leaders[1].hidden);
  EXPECT_EQ(jaws.leaders[1].occurrence, 6);
}

}  // namespace
}  // namespace zrfigure
