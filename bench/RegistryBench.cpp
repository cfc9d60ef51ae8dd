// Callouts arriving in a scene and leaving it, beside as many insertions into the two containers of the registry.
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
    std::set<CalloutPtr> all(callouts.begin(), callouts.end());
    for (std::size_t i = 0; i < callouts.size(); ++i) map[parts[i].Id()].insert(callouts[i]);
    for (std::size_t i = 0; i < callouts.size(); ++i) {
      map.erase(parts[i].Id());
      all.erase(callouts[i]);
    }
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

BENCHMARK(RegistryFloor)->Apply(LargeSizes);
BENCHMARK(Registry)->Apply(LargeSizes);
BENCHMARK(ArrivalAndRemoval)->Apply(LargeSizes);

}  // namespace
}  // namespace zrbench
