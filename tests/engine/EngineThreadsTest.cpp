// The engine under several threads: no deadlock, and with the thread sanitizer no race.
#include <atomic>
#include <chrono>
#include <thread>

#include <dg/FMat33.h>
#include <dg/Location.h>
#include <dp/ReadWriteLock.h>

#include "support/SceneFixture.h"

namespace {

using zrtest::CalloutPtr;
using zrtest::Part;
using zrtest::SceneFixture;
using zrtest::TemplateBuilder;

class EngineThreadsTest : public SceneFixture {
protected:
  EngineThreadsTest() : SceneFixture({.manualTasks = false}) {}

  const Part bolt_ = structure_->AddPart(structure_->Root(), "bolt");
  const Part nut_ = structure_->AddPart(structure_->Root(), "nut");
};

TEST_F(EngineThreadsTest, RegenerationGetsItsNestedReadsWhileAWriterWaits) {
  const auto callout = AddCallout(TemplateBuilder().Property("Data", "Mass").Literal("kg").Build(), bolt_);
  callout->SetText("old", false);
  std::atomic<bool> stored{false};
  std::thread writer;
  {
    const dp::ReadWriteLock::ReadGuard outer(engine_->GetReadWriteLock());
    writer = std::thread([&] {
      engine_->SetDrawOneForSamePart(true);
      stored = true;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_FALSE(stored);
    engine_->RegenerateCalloutLabels();
    EXPECT_EQ(TextOf(callout), "kg");
  }
  writer.join();
  EXPECT_TRUE(engine_->GetDrawOneForSamePart());
}

TEST_F(EngineThreadsTest, ArrivalsMovesItemChangesAndQueriesRunSideBySide) {
  constexpr int kRounds = 150;
  const std::uint32_t boltItem = AddItem(bolt_);
  const std::uint32_t nutItem = AddItem(nut_);
  const auto number = zrtest::NumberTemplate();
  const auto resident = AddCallout(number, bolt_, boltItem);
  const auto repeat = [](auto body) {
    return std::thread([body] {
      for (int round = 0; round < kRounds; ++round) body(round);
    });
  };
  std::thread threads[] = {repeat([&](int) { Remove(AddCallout(number, bolt_, boltItem)); }), repeat([&](int) {
                             AddCallout(number, nut_, nutItem);
                             engine_->OnItemRemoved(nutItem, nullptr);
                           }),
                           repeat([&](int round) {
                             bolt_.shape->SetLocation(dg::Location(dg::FMat33::IDENTITY, dg::DPoint3D(round, 0, 0)));
                             nut_.shape->SetVisible(round % 2 == 0);
                           }),
                           repeat([&](int round) { items_->SetItemLabel(boltItem, std::to_string(round)); }),
                           repeat([&](int round) {
                             engine_->RegenerateCalloutLabels();
                             engine_->SetForce2DArrowheads(round % 2 == 0);
                             static_cast<void>(engine_->IsAllowed(resident));
                             static_cast<void>(engine_->Exists(bolt_.Id(), "1"));
                             engine_->OnPaletteColorChanged();
                           })};
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(CalloutsOn(bolt_), std::set<CalloutPtr>{resident});
  EXPECT_TRUE(CalloutsOn(nut_).empty());
  EXPECT_EQ(TextOf(resident), std::to_string(kRounds - 1));
  EXPECT_TRUE(items_->IsIndicated(boltItem));
}

}  // namespace
