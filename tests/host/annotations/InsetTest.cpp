#include <zrannotations/Inset.h>

#include <zrannotations/InsetObserver.h>

#include "../HostFixture.h"

namespace zrtest {

using zrannotations::Inset;
using InsetPtr = du::SmartPtr<Inset>;

struct RecordingObserver final : zrannotations::InsetObserver {
  void OnInsetBoundsChanged(const InsetPtr& inset) override {
    events.push_back("bounds");
    // Leaving during a notification must neither wait nor disturb the walk.
    if (leaves) inset->UnregisterObserver(du::SmartPtr<InsetObserver>(this));
  }
  void OnInsetCaptionChanged(const InsetPtr&) override { events.push_back("caption"); }
  void OnInsetVisibilityChanged(const InsetPtr&, bool visible) override {
    events.push_back(visible ? "shown" : "hidden");
  }
  Log events;
  bool leaves = false;
};

TEST(InsetTest, TellsItsObserversUntilTheyLeave) {
  const auto inset = MakeObject<Inset>();
  const auto first = MakeObject<RecordingObserver>(), second = MakeObject<RecordingObserver>();
  first->leaves = true;
  for (const auto& observer : {first, second, first}) inset->RegisterObserver(observer);
  for (const bool visible : {true, false}) inset->SetVisible(visible);
  inset->SetBounds(dg::DBox({0, 0, 0}, {1, 1, 1}));
  inset->SetCaptionText("Detail A", false, true);
  EXPECT_EQ(first->events, Log({"hidden", "bounds"}));
  EXPECT_EQ(second->events, Log({"hidden", "bounds", "caption"}));
}

}  // namespace zrtest
