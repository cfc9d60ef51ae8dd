// Labels made and made again, beside asking for their values and copying these; and sorting beside one sort by key.
#include <benchmark/benchmark.h>

#include <algorithm>

#include <zrk/illustration/ItemsList.h>

#include "BenchScene.h"

namespace zrbench {
namespace {

zrtest::TemplatePtr NumberAndQuantity() {
  return zrtest::TemplateBuilder().Token("zrITM").Literal(" x ").Token("zrQTY").Build();
}

// The item list is asked for the values of every label, and their texts are copied.
void LabelFloor(benchmark::State& state) {
  BenchScene scene;
  scene.AddParts(static_cast<std::size_t>(state.range(0)));
  const auto callouts = scene.MakeCallouts(NumberAndQuantity(), true);
  const auto items = scene.itemList->GetZrkItemList();
  for (auto _ : state) {
    for (const auto& callout : callouts) {
      std::uint32_t itemId = 0;
      if (!callout->GetItemId(itemId)) state.SkipWithError("a callout has no item");
      std::string label = items->GetItemLabel(itemId);
      label += " x ";
      label += std::to_string(items->GetQuantity(itemId));
      benchmark::DoNotOptimize(label.data());
    }
  }
  state.SetComplexityN(state.range(0));
}

// Copying labels that are there already: what no label can be made for, but what memory allows.
void LabelCopyFloor(benchmark::State& state) {
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
  state.SetComplexityN(state.range(0));
}

void Sort(benchmark::State& state) {
  BenchScene scene;
  scene.AddParts(static_cast<std::size_t>(state.range(0)));
  auto callouts = scene.MakeCallouts(zrtest::NumberTemplate(), true);
  for (auto _ : state) {
    std::reverse(callouts.begin(), callouts.end());
    scene.engine->Sort(callouts);
  }
  state.SetComplexityN(state.range(0));
}

void SortSizes(benchmark::internal::Benchmark* bench) {
  for (const int callouts : {500, 1000, 2000, 4000}) bench->Arg(callouts);
  bench->Complexity()->Unit(benchmark::kMillisecond);
}

BENCHMARK(LabelFloor)->Apply(LargeSizes);
BENCHMARK(LabelCopyFloor)->Apply(LargeSizes);
BENCHMARK(GenerateLabels)->Apply(LargeSizes);
BENCHMARK(RegenerateLabels)->Apply(LargeSizes);
BENCHMARK(SortFloor)->Apply(SortSizes);
BENCHMARK(Sort)->Apply(SortSizes);

}  // namespace
}  // namespace zrbench
