// The automatic run over parts in a tenth as many categories.
#include <benchmark/benchmark.h>

#include <zrcallouts/CalloutGenerator.h>
#include <zrk/AsyncEvent.h>
#include <zrk/MakeObject.h>
#include <zrk/UndoHistory.h>
#include <zrk/illustration/SbomInstanceSelectionItem.h>

#include "BenchScene.h"

namespace zrbench {
namespace {

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

BENCHMARK(AutomaticRun)
    ->RangeMultiplier(10)
    ->Range(100, 100000)
    ->Complexity()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zrbench
