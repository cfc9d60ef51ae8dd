// Labels made and made again, beside copying the same strings; and sorting beside one sort by key.
#include <algorithm>

#include <benchmark/benchmark.h>

#include "BenchScene.h"

namespace zrbench {
namespace {

zrtest::TemplatePtr NumberAndQuantity() {
  return zrtest::TemplateBuilder().Token("zrITM").Literal(" x ").Token("zrQTY").Build();
}

void LabelFloor(benchmark::State& state) {
  std::vector<std::string> texts(static_cast<std::size_t>(state.range(0)));
  for (std::size_t i = 0; i < texts.size(); ++i) texts[i] = std::to_string(i) + " x 1";
  for (auto _ : state) {
    std::vector<std::string> copies = texts;
    benchmark::DoNotOptimize(copies.data());
  }
  state.SetComplexityN(state.range(0));
}

void GenerateLabels(benchmark::State& state) {
  BenchScene scene;
  scene.AddParts(static_cast<std::size_t>(state.range(0)));
  const auto layout = NumberAndQuantity();
  zrtest::Contents contents;
  static_cast<void>(layout->GetTextContent(contents));
  const auto callouts = scene.MakeCallouts(layout, true);
  for (auto _ : state) {
    for (const auto& callout : callouts) {
      std::string label;
      scene.engine->GenerateLabelString(callout, contents, false, label);
      benchmark::DoNotOptimize(label.data());
    }
  }
  state.SetComplexityN(state.range(0));
}

// Nothing changed since: every label is built and compared, none is written.
void RegenerateLabels(benchmark::State& state) {
  BenchScene scene;
  scene.AddParts(static_cast<std::size_t>(state.range(0)));
  const auto callouts = scene.MakeCallouts(NumberAndQuantity(), true);
  scene.AddToScene(callouts);
  for (auto _ : state) {
    for (const auto& callout : callouts) benchmark::DoNotOptimize(scene.engine->RegenerateCalloutLabel(callout, true));
  }
  state.SetComplexityN(state.range(0));
}

void SortFloor(benchmark::State& state) {
  std::vector<std::pair<std::uint32_t, std::uint32_t>> keys(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    for (std::size_t i = 0; i < keys.size(); ++i) keys[i] = {static_cast<std::uint32_t>(i * 2654435761U), i};
    std::sort(keys.begin(), keys.end());
    benchmark::DoNotOptimize(keys.data());
  }
}

void Sort(benchmark::State& state) {
  BenchScene scene;
  scene.AddParts(static_cast<std::size_t>(state.range(0)));
  auto callouts = scene.MakeCallouts(zrtest::NumberTemplate(), true);
  for (auto _ : state) {
    std::reverse(callouts.begin(), callouts.end());
    scene.engine->Sort(callouts);
  }
}

BENCHMARK(LabelFloor)->RangeMultiplier(10)->Range(1000, 100000)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(GenerateLabels)->RangeMultiplier(10)->Range(1000, 100000)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(RegenerateLabels)->RangeMultiplier(10)->Range(100, 10000)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(SortFloor)->Arg(2000)->Unit(benchmark::kMillisecond);
BENCHMARK(Sort)->Arg(500)->Arg(2000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zrbench
