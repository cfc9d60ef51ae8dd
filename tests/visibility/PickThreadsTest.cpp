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

using zrcallouts::CalloutGenerator;
using zrtest::EnginePtr;
using zrtest::HeldPicks;
using zrtest::Part;
using zrtest::PickPtr;

/// Answers or drops what the services of all scenes have been given, in random order, until it is told to end.
class Answerer {
public:
  explicit Answerer(unsigned seed) : thread_([this, seed] { Run(seed); }) {}
  ~Answerer() {
    done_ = true;
    thread_.join();
  }
  void Feed(std::vector<PickPtr> events) {
    const std::lock_guard<std::mutex> lock(mutex_);
    std::move(events.begin(), events.end(), std::back_inserter(waiting_));
  }
  [[nodiscard]] long GetCount() const { return count_; }

private:
  void Run(unsigned seed) {
    std::mt19937 random(seed);
    for (bool last = false; !last;) {
      last = done_;
      std::vector<PickPtr> events;
      {
        const std::lock_guard<std::mutex> lock(mutex_);
        events.swap(waiting_);
      }
      std::shuffle(events.begin(), events.end(), random);
      count_ += static_cast<long>(events.size());
      for (PickPtr& event : events) {
        const unsigned kind = random() % 4;
        if (kind == 0) event->Answer({});
        if (kind > 1) event->Answer(zrtest::SeenAnswer(*event->GetShapeInstance(), 1));
        event.Reset();  // the rest is dropped
      }
      std::this_thread::yield();
    }
  }

  std::mutex mutex_;
  std::vector<PickPtr> waiting_;
  std::atomic<bool> done_{false};
  std::atomic<long> count_{0};
  std::thread thread_;
};

class PickThreadsTest : public zrtest::PickFixture {
protected:
  PickThreadsTest() : PickFixture({.manualTasks = false}) {}

  [[nodiscard]] static long WantedPicks() {
    const char* const wanted = std::getenv("ZR_PICKS");
    return wanted ? std::atol(wanted) : 100'000;
  }
};

TEST_F(PickThreadsTest, LateAnswersLeaveNothingBehindDuringRunsAndTeardown) {
  constexpr int kParts = 60;
  Answerer first(1), second(2);
  long scenes = 0;
  while (first.GetCount() + second.GetCount() < WantedPicks()) {
    const auto scene = AddScene(true);
    const EnginePtr engine = EngineOf(scene);
    engine->SetTemplate(zrtest::TextTemplate("text"));
    engine->SetDrawOneForSamePart(true);
    const auto view = du::DynamicCast<zrk::ShapeView>(scene->GetView(0));
    view->SetCamera(view_->GetCamera());
    const auto held = zrk::MakeObject<HeldPicks>();
    view->SetPickService(held);
    const auto tree = zrk::MakeObject<zrk::illustration::SbomTree>();
    scene->SetSbomTree(tree);
    zrtest::StructureBuilder structure(scene, tree);
    CalloutGenerator::Selection selection;
    for (int i = 0; i < kParts; ++i) {
      const Part part = structure.AddPart(structure.Root(), "part", {i * 0.5, 0, 0});
      selection.push_back(zrk::MakeObject<zrk::illustration::SbomInstanceSelectionItem>(part.sbom));
    }
    const auto event = zrk::MakeObject<zrk::AsyncEvent>();
    CalloutGenerator::CreateCallouts(engine, std::move(selection), event);
    const auto feed = [&] {
      auto events = held->Take();
      const auto middle = events.begin() + static_cast<std::ptrdiff_t>(events.size() / 2);
      first.Feed({events.begin(), middle});
      second.Feed({middle, events.end()});
    };
    while (!event->WaitComplete(0)) feed();
    for (int turn = 0; turn < 20; ++turn) {
      engine->OnDrawWhenHidden(view);
      feed();
    }
    if (++scenes % 4 != 0) {  // some scenes go with picks outstanding, the others wait for them
      const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
      while (engine->GetPickRequestCount() != 0 && std::chrono::steady_clock::now() < deadline)
        feed();  // an answer may lead to further picks
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
  RecordProperty("scenes", static_cast<int>(scenes));
}

}  // namespace
