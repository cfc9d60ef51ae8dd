// Callouts in the order of their items.
#include <algorithm>
#include <random>

#include <zrk/MakeObject.h>

#include "support/SceneFixture.h"

namespace {

using zrtest::CalloutPtr;
using Path = std::vector<std::uint32_t>;
using List = std::vector<CalloutPtr>;

struct CalloutsSortTest : zrtest::SceneFixture {
  std::uint32_t NewItem(unsigned index, const Path& path) {
    const auto item = AddItem(structure_->AddPart(structure_->Root(), "part " + std::to_string(itemCount_++)));
    items_->SetIndex(item, index);
    items_->SetHierarchyIndex(item, path);
    return item;
  }
  [[nodiscard]] CalloutPtr On(std::uint32_t item) const {
    auto callout = zrk::MakeObject<zrannotations::Callout>();
    callout->SetItemId(item);
    return callout;
  }
  void Number(bool hierarchically) { items_->SetNumberingSettings({hierarchically}); }

  /// The rule, word for word.
  [[nodiscard]] bool IsOutOfOrder(std::uint32_t first, std::uint32_t second, bool hierarchical) const {
    if (!hierarchical) return items_->GetIndex(first) > items_->GetIndex(second);
    const Path p = items_->GetHierarchyIndex(first);
    const Path q = items_->GetHierarchyIndex(second);
    for (std::size_t k = 0; k < p.size() && k < q.size(); ++k) {
      if (p[k] > q[k]) return true;
      if (p[k] == q[k] && p.size() > q.size()) return true;
    }
    return false;
  }
  void ExchangeByRule(List& list, bool hierarchical) const {
    for (std::size_t i = 0; i + 1 < list.size(); ++i) {
      for (std::size_t j = i + 1; j < list.size(); ++j) {
        std::uint32_t first = 0;
        std::uint32_t second = 0;
        if (!list[i]->GetItemId(first) || !list[j]->GetItemId(second)) continue;
        if (IsOutOfOrder(first, second, hierarchical)) std::swap(list[i], list[j]);
      }
    }
  }

  int itemCount_ = 0;
};

TEST_F(CalloutsSortTest, PairsAreExchangedByTheNumberingInForce) {
  struct Case {
    const char* what;
    unsigned firstIndex, secondIndex;
    Path firstPath, secondPath;
    bool flatExchanges, hierarchyExchanges;
  };
  const Case cases[] = {{"equal", 3, 3, {1}, {1}, false, false},
                        {"opposite numberings", 2, 1, {1}, {2}, true, false},
                        {"longer path first", 1, 2, {1, 2}, {1}, false, true},
                        {"longer path last", 1, 2, {1}, {1, 2}, false, false},
                        {"later step larger", 1, 2, {1, 5}, {2, 3}, false, true},
                        {"empty path", 2, 1, {}, {1}, true, false}};
  for (const Case& example : cases) {
    SCOPED_TRACE(example.what);
    const auto first = On(NewItem(example.firstIndex, example.firstPath));
    const auto second = On(NewItem(example.secondIndex, example.secondPath));
    for (const bool hierarchical : {false, true}) {
      Number(hierarchical);
      List list{first, second};
      engine_->Sort(list);
      const bool exchanged = hierarchical ? example.hierarchyExchanges : example.flatExchanges;
      EXPECT_EQ(list, exchanged ? (List{second, first}) : (List{first, second}));
    }
  }
}

TEST_F(CalloutsSortTest, CalloutsWithoutItemKeepTheirPlace) {
  const auto note = On(0);
  const auto high = On(NewItem(2, {}));
  const auto low = On(NewItem(1, {}));
  List list{high, note, low};
  engine_->Sort(list);
  EXPECT_EQ(list, (List{low, note, high}));
  for (List unsorted : {List{}, List{note}, List{note, note}}) {
    List sorted = unsorted;
    engine_->Sort(sorted);
    EXPECT_EQ(sorted, unsorted);
  }
}

TEST_F(CalloutsSortTest, RandomListsTakeTheExchangesOfTheRule) {
  std::mt19937 random(11);
  std::vector<std::uint32_t> items{0};
  for (int i = 0; i < 15; ++i) {
    Path path(random() % 4);
    for (auto& step : path) step = random() % 3;
    items.push_back(NewItem(random() % 8, path));
  }
  for (int round = 0; round < 200; ++round) {
    const bool hierarchical = round % 2 == 1;
    Number(hierarchical);
    List list(2 + random() % 20);
    for (auto& callout : list) callout = On(items[random() % items.size()]);
    List expected = list;
    ExchangeByRule(expected, hierarchical);
    engine_->Sort(list);
    ASSERT_EQ(list, expected) << "round " << round;
  }
}

TEST_F(CalloutsSortTest, TwoThousandCalloutsComeIntoOrder) {
  std::vector<std::uint32_t> items;
  for (unsigned i = 0; i < 40; ++i) items.push_back(NewItem(i * 7 % 40, {}));
  List list;
  for (unsigned i = 0; i < 2000; ++i) list.push_back(On(items[i * 13 % 40]));
  const std::set<CalloutPtr> before(list.begin(), list.end());
  engine_->Sort(list);
  const auto indexOf = [&](const CalloutPtr& callout) {
    std::uint32_t item = 0;
    EXPECT_TRUE(callout->GetItemId(item));
    return items_->GetIndex(item);
  };
  EXPECT_TRUE(std::is_sorted(list.begin(), list.end(),
                             [&](const auto& left, const auto& right) { return indexOf(left) < indexOf(right); }));
  EXPECT_EQ(std::set<CalloutPtr>(list.begin(), list.end()), before);
}

struct CalloutsSortWithoutItemListTest : zrtest::SceneFixture {
  CalloutsSortWithoutItemListTest() : SceneFixture({.withItemList = false}) {}
};

TEST_F(CalloutsSortWithoutItemListTest, TheListStaysAsItIs) {
  List list(2);
  for (std::uint32_t item = 2; auto& callout : list) {
    callout = zrk::MakeObject<zrannotations::Callout>();
    callout->SetItemId(item--);
  }
  const List before = list;
  engine_->Sort(list);
  EXPECT_EQ(list, before);
}

}  // namespace
