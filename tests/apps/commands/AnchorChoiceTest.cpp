#include "commands/AnchorChoice.h"

#include <gtest/gtest.h>

#include "SmallAssembly.h"

namespace zrfigure {
namespace {

VisibleRegion Region(int occurrence, int x, int y, double clearance, std::int64_t pixels = 1000) {
  return {occurrence, pixels, x, y, clearance, {}};
}

/// The press with its leaves 1 base, 3 and 6 jaws, 4, 7 and 8 bolts, 9 lid, and pictures made by hand.
class AnchorChoiceTest : public testing::Test {
protected:
  void Show(std::vector<VisibleRegion> regions) {
    pictures_.emplace_back().modelBox = {0, 0, 1000, 1000};
    pictures_.back().regions = std::move(regions);
  }

  /// "leaf leaf ..." with anchors, then "| selected ...", a text a picture.
  [[nodiscard]] std::vector<std::string> Choose(CalloutMode mode, const std::vector<int>& pinned = {},
                                                bool skipHidden = false) const {
    const std::vector<PlannedRow> rows = PlanFlatRows(tree_, tree_.Leaves());
    std::vector<std::string> texts;
    for (const PictureCallouts& chosen :
         ChooseAnchors({tree_, rows, tree_.Leaves(), mode, pinned, skipHidden}, pictures_)) {
      std::string text;
      for (const VisibleRegion& region : chosen.regions) text += std::to_string(region.occurrence) + " ";
      text += "|";
      for (int occurrence : chosen.selected) text += " " + std::to_string(occurrence);
      texts.push_back(text);
    }
    return texts;
  }

  const Model model_ = fixtures::MakePress();
  const OccurrenceTree tree_{model_, {}};
  std::vector<Picture> pictures_;
};

using Texts = std::vector<std::string>;

TEST_F(AnchorChoiceTest, ItemGoesToThePartSeenWellNearTheBorder) {
  // Jaw 3 is deep inside; bolt 4 near the border is tiny, bolt 7 mostly covered, bolt 8 neither.
  Show({Region(1, 500, 500, 90), Region(3, 500, 400, 20), Region(4, 20, 500, 1), Region(6, 100, 300, 20),
        Region(7, 30, 700, 12, 50), Region(8, 120, 800, 12), Region(9, 900, 500, 50)});
  EXPECT_EQ(Choose(CalloutMode::OnePerItem), (Texts{"1 6 8 9 | 1 3 4 6 7 8 9"}));
  EXPECT_EQ(Choose(CalloutMode::OnePerItem, {3, 4}), (Texts{"1 3 8 9 | 1 3 4 6 7 8 9"})) << "a tiny part is not kept";
  EXPECT_EQ(Choose(CalloutMode::Combine), (Texts{"1 3 4 6 7 8 9 | 1 3 4 6 7 8 9"}));
}

TEST_F(AnchorChoiceTest, AnchorsKeepApart) {
  Show({Region(1, 100, 500, 20), Region(3, 90, 500, 20), Region(6, 900, 480, 20), Region(9, 500, 500, 20)});
  EXPECT_EQ(Choose(CalloutMode::OnePerItem)[0].substr(0, 6), "1 6 9 ");
}

TEST_F(AnchorChoiceTest, HiddenItemIsCalledOutOnOnePartOrSkipped) {
  Show({Region(1, 500, 500, 90), Region(9, 900, 500, 50)});
  const std::string chosen = Choose(CalloutMode::OnePerItem)[0];
  EXPECT_EQ(std::count(chosen.begin(), chosen.end(), ' '), 2 + 4) << chosen;
  EXPECT_EQ(Choose(CalloutMode::PerInstance), (Texts{"1 9 | 1 3 4 6 7 8 9"}));
  for (const CalloutMode mode : {CalloutMode::OnePerItem, CalloutMode::PerInstance}) {
    EXPECT_EQ(Choose(mode, {}, true), (Texts{"1 9 | 1 9"}));
  }
}

TEST_F(AnchorChoiceTest, EachItemHasThePictureThatShowsItBest) {
  Show({Region(1, 500, 500, 90), Region(3, 500, 400, 20), Region(4, 20, 500, 9)});
  Show({Region(1, 500, 500, 90), Region(6, 500, 400, 30), Region(8, 20, 500, 7)});
  EXPECT_EQ(Choose(CalloutMode::OnePerItem), (Texts{"1 4 | 1 4 7 8 9", "6 | 3 6"}));
  EXPECT_EQ(Choose(CalloutMode::Combine), (Texts{"1 4 | 1 4 7 8 9", "6 | 3 6"}));
  EXPECT_EQ(Choose(CalloutMode::PerInstance), (Texts{"1 3 4 | 1 3 4 7 9", "6 8 | 6 8"}));
}

}  // namespace
}  // namespace zrfigure
