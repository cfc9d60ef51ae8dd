// The automatic run over parts in a tenth as many categories, beside one sort by category and one entry a category.
#include <benchmark/benchmark.h>

#include <algorithm>

#include <zrcallouts/CalloutGenerator.h>
#include <zrk/AsyncEvent.h>
#include <zrk/MakeObject.h>
#include <zrk/UndoHistory.h>
#include <zrk/illustration/SbomInstanceSelectionItem.h>

#include "BenchScene.h"

namespace zrbench {
namespace {

void AutomaticRunFloor(benchmark::State& state) {
  BenchScene scene;
  const auto& parts = scene.AddParts(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    std::vector<std::pair<std::string, std::size_t>> order;
    for (std::size_t i = 0; i < parts.size(); ++i) order.emplace_back("part " + std::to_string(i / 10), i);
    std::sort(order.begin(), order.end());
    std::map<std::string, CalloutPtr> callouts;
    for (const auto& [category, i] : order) {
      CalloutPtr& callout = callouts[category];
      if (!callout) callout = zrk::MakeObject<zrannotations::Callout>();
    }
    benchmark::DoNotOptimize(callouts);
  }
  state.SetComplexityN(state.range(0));
}

void AutomaticRun(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    {
      BenchScene scene;
      zrcallouts::CalloutGenerator::Selection selection;
      for (const auto& part : scene.AddParts(static_cast<std::size_t>(state.range(0)))) {
        selection.push_back(zrk::MakeObject<zrk::illustration::SbomInstanceSelectionItem>(part.sbom));
      }
      scene.engine->SetCombineForSamePart(true);
      state.ResumeTiming();
      zrcallouts::CalloutGenerator::CreateCallouts(scene.engine, std::move(selection), {});
      scene.RunTasks();
      state.PauseTiming();
    }
    state.ResumeTiming();
  }
  state.SetComplexityN(state.range(0));
}

BENCHMARK(AutomaticRunFloor)->Apply(LargeSizes);
BENCHMARK(AutomaticRun)->Apply(LargeSizes)->Iterations(1)->MeasureProcessCPUTime();

}  // namespace
}  // namespace zrbench
