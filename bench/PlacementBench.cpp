// Placing labels round a model, beside sorting them by direction and handing out places along the border.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>

#include "layout/Requests.h"
#include "layout/placement/Placement.h"

namespace zrbench {
namespace {

using namespace zrcallouts::placement;

/// As many labels as asked for round a model on a page that grows with them.
PlacementRequest RequestOf(const benchmark::State& state) {
  testing::RequestShape shape;
  shape.labels = static_cast<int>(state.range(0));
  const double growth = std::max(1.0, std::sqrt(shape.labels / 50.0));
  shape.pageWidth *= growth;
  shape.pageHeight *= growth;
  return testing::RandomRequest(shape, 1);
}

void PlacementFloor(benchmark::State& state) {
  const PlacementRequest request = RequestOf(state);
  const Point middle{(request.model.left + request.model.right) / 2, (request.model.top + request.model.bottom) / 2};
  std::vector<std::pair<double, std::size_t>> order(request.labels.size());
  for (auto _ : state) {
    for (std::size_t i = 0; i < order.size(); ++i) {
      const Point anchor = request.labels[i].anchors.front();
      order[i] = {std::atan2(anchor.y - middle.y, anchor.x - middle.x), i};
    }
    std::sort(order.begin(), order.end());
    std::vector<PlacedLabel> labels(order.size());
    for (const auto& [angle, i] : order) {
      const Point place{middle.x + request.page.right * std::cos(angle),
                        middle.y + request.page.right * std::sin(angle)};
      labels[i].leaders = {{request.labels[i].anchors.front(), place}};
    }
    benchmark::DoNotOptimize(labels.data());
  }
  state.SetComplexityN(state.range(0));
}

void Placement(benchmark::State& state) {
  const PlacementRequest request = RequestOf(state);
  for (auto _ : state) benchmark::DoNotOptimize(PlaceLabels(request));
  state.SetComplexityN(state.range(0));
}

void PageSizes(benchmark::internal::Benchmark* bench) {
  for (const int labels : {10, 20, 50, 100, 200, 500, 1000}) bench->Arg(labels);
  bench->Complexity()->Unit(benchmark::kMillisecond);
}

BENCHMARK(PlacementFloor)->Apply(PageSizes);
BENCHMARK(Placement)->Apply(PageSizes);

}  // namespace
}  // namespace zrbench
