// Labels that are placed anew stand apart from each other, and undo and redo give every place and route back.
#include <zrannotations/CalloutLeader.h>
#include <zrannotations/CalloutSnapshot.h>
#include <zrcallouts/Functions.h>
#include <zrk/RecordOperation.h>
#include <zrk/UndoHistory.h>

#include "align/AlignFixture.h"

namespace {

using zrcallouts::ArrangeLabels;

class ArrangeLabelsTest : public zrtest::AlignFixture {
protected:
  ArrangeLabelsTest() {
    view_->SetWindowSize(800, 600);
    Place({{20, 40}, {21, 40}, {300, 200}, {22, 41}});
    labels_[2]->SetLabelScreenSpaceMode(view_);
    labels_[3]->GetLeaders()[0]->SetBendPoints({{1, 2, 3}});
    labels_.resize(4);
    for (const auto& label : labels_) Add(label);
  }
  /// Everything of a label that arranging may change.
  [[nodiscard]] std::vector<double> StateOf(std::size_t index) const {
    const auto placement = labels_[index]->TakeSnapshot().label;
    std::vector<double> state{
        placement.position.x, placement.position.y, placement.position.z,    placement.relative.x,
        placement.relative.y, placement.depth,      double(placement.state), double(placement.relativeToScreen)};
    for (const auto& bend : labels_[index]->GetLeaders()[0]->GetBendPoints()) {
      state.insert(state.end(), {bend.x, bend.y, bend.z});
    }
    return state;
  }
  [[nodiscard]] std::vector<std::vector<double>> States() const {
    return {StateOf(0), StateOf(1), StateOf(2), StateOf(3)};
  }
};

TEST_F(ArrangeLabelsTest, UndoAndRedoGivePlacesAndRoutesBack) {
  const auto before = States();
  const auto operation = NewOperation();
  ASSERT_TRUE(ArrangeLabels(engine_, view_, {labels_[0], labels_[2], labels_[3]}, operation));
  zrk::RecordOperation(operation);
  const auto arranged = States();
  EXPECT_EQ(arranged[1], before[1]) << "a label that was not named stays";
  for (const std::size_t moved : {0, 2, 3}) EXPECT_NE(arranged[moved], before[moved]) << moved;
  EXPECT_TRUE(labels_[2]->IsLabelRelativeToScreen());
  const auto pixel = [&](std::size_t label) { return labels_[label]->GetLabelRelativeScreenPosition(view_); };
  for (const std::size_t other : {0, 2, 3}) {
    EXPECT_GT(std::hypot(pixel(other).x - pixel(1).x, pixel(other).y - pixel(1).y), 10) << other << " keeps clear";
  }
  ASSERT_TRUE(zrk::UndoHistory::Undo(scene_));
  EXPECT_EQ(States(), before);
  ASSERT_TRUE(zrk::UndoHistory::Redo(scene_));
  EXPECT_EQ(States(), arranged);
}

TEST_F(ArrangeLabelsTest, NothingMovesWithoutEngineCameraOrLabels) {
  const auto before = States();
  EXPECT_FALSE(ArrangeLabels({}, view_, labels_, {}));
  EXPECT_FALSE(ArrangeLabels(engine_, {}, labels_, {}));
  EXPECT_FALSE(ArrangeLabels(engine_, view_, {zrtest::CalloutPtr()}, {}));
  SetCamera(zrtest::CameraOf({3, 4, 0}, {3, 4, 0}, {5, 0, 1}, {7, 9, 11}));
  EXPECT_FALSE(ArrangeLabels(engine_, view_, labels_, {}));
  EXPECT_EQ(States(), before);
}

}  // namespace
