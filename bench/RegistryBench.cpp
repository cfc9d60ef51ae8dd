// Callouts arriving in a scene and leaving it, beside the same number of insertions into the same kind of map.
#include <benchmark/benchmark.h>

#include <zrk/AnnoSet.h>
#include <zrk/Operation.h>

#include "BenchScene.h"

namespace zrbench {
namespace {

using IdMap = std::map<std::string, std::set<CalloutPtr>>;

void RegistryFloor(benchmark::State& state) {
  BenchScene scene;
  const auto& parts = scene.AddParts(static_cast<std::size_t>(state.range(0)));
  const auto callouts = scene.MakeCallouts(zrtest::NumberTemplate(), false);
  for (auto _ : state) {
    IdMap map;
    for (std::size_t i = 0; i < callouts.size(); ++i) map[parts[i].Id()].insert(callouts[i]);
    for (std::size_t i = 0; i < callouts.size(); ++i) map.erase(parts[i].Id());
    benchmark::DoNotOptimize(map);
  }
  state.SetComplexityN(state.range(0));
}

void Registry(benchmark::State& state) {
  BenchScene scene;
  scene.AddParts(static_cast<std::size_t>(state.range(0)));
  const auto callouts = scene.MakeCallouts(zrtest::NumberTemplate(), true);
  for (auto _ : state) {
    for (const auto& callout : callouts) scene.engine->AddToMap(callout);
    for (const auto& callout : callouts) scene.engine->AddToSet(callout);
    for (const auto& callout : callouts) scene.engine->OnRemoveAnnotation(callout);
  }
  state.SetComplexityN(state.range(0));
}

// The whole way: annotation set, admission, label, localisation, registration, indication; and removal with all of it.
void ArrivalAndRemoval(benchmark::State& state) {
  BenchScene scene;
  scene.AddParts(static_cast<std::size_t>(state.range(0)));
  const auto callouts = scene.MakeCallouts(zrtest::NumberTemplate(), true);
  const auto annoSet = scene.scene->GetAnnoSet();
  for (auto _ : state) {
    scene.AddToScene(callouts);
    for (const auto& callout : callouts) annoSet->RemoveAnnotationFromSet(callout, nullptr);
  }
  state.SetComplexityN(state.range(0));
}

void AllSizes(benchmark::internal::Benchmark* bench) {
  bench->RangeMultiplier(10)->Range(1000, 100000)->Complexity()->Unit(benchmark::kMillisecond);
}

BENCHMARK(RegistryFloor)->Apply(AllSizes);
BENCHMARK(Registry)->Apply(AllSizes);
BENCHMARK(ArrivalAndRemoval)->RangeMultiplier(10)->Range(100, 10000)->Complexity()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zrbench
