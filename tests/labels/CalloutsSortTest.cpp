// Callouts in the order of their items.
#include <algorithm>

#include <zrk/MakeObject.h>

#include "support/SceneFixture.h"

namespace {

using zrtest::CalloutPtr;
using Path = std::vector<std::uint32_t>;
using Order = std::vector<int>;

/// A callout's item; without index there is none.
struct Place {
  unsigned index;
  Path path;
};

struct CalloutsSortTest : zrtest::SceneFixture {
  explicit CalloutsSortTest(const zrtest::SceneOptions& options = {}) : SceneFixture(options) {}

  [[nodiscard]] std::vector<CalloutPtr> CalloutsAt(const std::vector<Place>& places) {
    std::vector<CalloutPtr> callouts;
    for (const Place& place : places) {
      std::uint32_t item = static_cast<std::uint32_t>(callouts.size()) + 1;
      if (items_ && place.index != 0) {
        item = AddItem(structure_->AddPart(structure_->Root(), "part " + std::to_string(items_->GetItemIds().size())));
        items_->SetIndex(item, place.index);
        items_->SetHierarchyIndex(item, place.path);
      }
      callouts.push_back(zrk::MakeObject<zrannotations::Callout>());
      callouts.back()->SetItemId(place.index != 0 ? item : 0);
    }
    return callouts;
  }
  [[nodiscard]] Order SortedOrder(const std::vector<CalloutPtr>& callouts) const {
    auto sorted = callouts;
    engine_->Sort(sorted);
    Order order;
    for (const auto& callout : sorted)
      order.push_back(static_cast<int>(std::find(callouts.begin(), callouts.end(), callout) - callouts.begin()));
    return order;
  }
};

// The order is that of the exchanges, which are part of what figures rely on.
TEST_F(CalloutsSortTest, PairsAreExchangedByTheNumberingInForce) {
  const struct {
    const char* what;
    std::vector<Place> places;
    Order flat, hierarchical;
  } cases[] = {{"nothing", {}, {}, {}},
               {"one", {{1, {1}}}, {0}, {0}},
               {"equal", {{3, {1}}, {3, {1}}}, {0, 1}, {0, 1}},
               {"opposite numberings", {{2, {1}}, {1, {2}}}, {1, 0}, {0, 1}},
               {"longer path first", {{1, {1, 2}}, {2, {1}}}, {0, 1}, {1, 0}},
               {"longer path last", {{1, {1}}, {2, {1, 2}}}, {0, 1}, {0, 1}},
               {"later step larger", {{1, {1, 5}}, {2, {2, 3}}}, {0, 1}, {1, 0}},
               {"empty path", {{2, {}}, {1, {1}}}, {1, 0}, {0, 1}},
               {"equal ones change places", {{2, {2}}, {2, {2}}, {1, {1}}}, {2, 1, 0}, {2, 1, 0}},
               {"a rule that is no ordering", {{1, {1, 5}}, {2, {2, 3}}, {3, {1, 9}}}, {0, 1, 2}, {2, 1, 0}},
               {"without item in between", {{2, {2}}, {0, {}}, {1, {1}}}, {2, 1, 0}, {2, 1, 0}},
               {"without items", {{0, {}}, {0, {}}}, {0, 1}, {0, 1}}};
  for (const auto& tested : cases) {
    SCOPED_TRACE(tested.what);
    const auto callouts = CalloutsAt(tested.places);
    for (const bool hierarchical : {false, true}) {
      items_->SetNumberingSettings({hierarchical});
      EXPECT_EQ(SortedOrder(callouts), hierarchical ? tested.hierarchical : tested.flat);
    }
  }
}

struct CalloutsSortWithoutItemListTest : CalloutsSortTest {
  CalloutsSortWithoutItemListTest() : CalloutsSortTest({.withItemList = false}) {}
};

TEST_F(CalloutsSortWithoutItemListTest, TheListStaysAsItIs) {
  EXPECT_EQ(SortedOrder(CalloutsAt({{2, {}}, {1, {}}})), (Order{0, 1}));
}

}  // namespace
