// 100,000 picks answered late, in random order and from other threads, while runs go on and scenes are torn down: the
// count comes back to nothing, nothing leaks, and with the sanitizers there is no race. ZR_PICKS sets another number.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <random>
#include <thread>

#include <zrcallouts/CalloutGenerator.h>
#include <zrk/AsyncEvent.h>
#include <zrk/illustration/SbomInstanceSelectionItem.h>

#include "visibility/PickFixture.h"

namespace {

using zrtest::Part;
using zrtest::PickPtr;

class PickThreadsTest : public zrtest::PickFixture {
protected:
  PickThreadsTest() : PickFixture({.manualTasks = false}) {}
  void TearDown() override {
    done_ = true;
    for (auto& thread : answerers_) thread.join();
  }

  /// Answers or drops in random order what the views of all scenes have asked for, until it is told to end.
  void AnswerPicks(unsigned seed) {
    std::mt19937 random(seed);
    for (bool last = false; !last; std::this_thread::yield()) {
      last = done_;
      std::vector<PickPtr> events = held_->Take();
      std::shuffle(events.begin(), events.end(), random);
      answered_ += static_cast<long>(events.size());
      for (PickPtr& event : events) {
        const unsigned kind = random() % 4;
        if (kind == 0) event->Answer({});
        if (kind > 1) event->Answer(zrtest::SeenAnswer(*event->GetShapeInstance(), 1));
        event.Reset();  // the rest is dropped
      }
    }
  }
  /// An automatic run on 60 equal parts in a row, of each of which one leader is to show.
  static void GenerateCallouts(const zrtest::EnginePtr& engine, zrtest::StructureBuilder& structure) {
    engine->SetTemplate(zrtest::TextTemplate("text"));
    engine->SetDrawOneForSamePart(true);
    zrcallouts::CalloutGenerator::Selection selection;
    for (int i = 0; i < 60; ++i) {
      const Part part = structure.AddPart(structure.Root(), "part", {i * 0.5, 0, 0});
      selection.push_back(zrk::MakeObject<zrk::illustration::SbomInstanceSelectionItem>(part.sbom));
    }
    const auto event = zrk::MakeObject<zrk::AsyncEvent>();
    zrcallouts::CalloutGenerator::CreateCallouts(engine, std::move(selection), event);
    ASSERT_TRUE(event->WaitComplete(60'000));
  }

  const du::SmartPtr<zrtest::HeldPicks> held_ = zrk::MakeObject<zrtest::HeldPicks>();
  std::atomic<bool> done_{false};
  std::atomic<long> answered_{0};
  std::thread answerers_[2] = {std::thread([this] { AnswerPicks(1); }), std::thread([this] { AnswerPicks(2); })};
};

TEST_F(PickThreadsTest, LateAnswersLeaveNothingBehindDuringRunsAndTeardown) {
  const char* const wanted = std::getenv("ZR_PICKS");
  for (long scenes = 1; answered_ < (wanted ? std::atol(wanted) : 100'000); ++scenes) {
    const auto scene = AddScene(true);
    const auto engine = EngineOf(scene);
    const auto view = du::DynamicCast<zrk::ShapeView>(scene->GetView(0));
    view->SetCamera(view_->GetCamera());
    view->SetPickService(held_);
    const auto tree = zrk::MakeObject<zrk::illustration::SbomTree>();
    scene->SetSbomTree(tree);
    zrtest::StructureBuilder structure(scene, tree);
    GenerateCallouts(engine, structure);
    for (int turn = 0; turn < 20; ++turn) engine->OnDrawWhenHidden(view);
    if (scenes % 4 != 0) {  // some scenes go with picks outstanding, the others wait for them
      const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
      while (engine->GetPickRequestCount() != 0 && std::chrono::steady_clock::now() < deadline)
        std::this_thread::yield();
      ASSERT_EQ(engine->GetPickRequestCount(), 0u);
      for (const auto& annotation : scene->GetAnnoSet()->GetAnnotations()) {
        const auto leaders = du::DynamicCast<zrannotations::Callout>(annotation)->GetLeaders();
        EXPECT_EQ(std::count_if(leaders.begin(), leaders.end(), [](const auto& l) { return !l->IsHidden(); }), 1);
      }
    }
    scene->Destroy();
    tree->DestroyTree();
    EXPECT_EQ(engine->GetPickRequestCount(), 0u);
  }
}

}  // namespace
