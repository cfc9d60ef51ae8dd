// Aligning labels, beside one matrix product a label there and back, for the spreading modes with a sort between.
#include <benchmark/benchmark.h>

#include <algorithm>

#include <dg/Camera3D.h>
#include <dg/DMat44.h>
#include <zrcallouts/Align.h>
#include <zrk/Operation.h>

#include "BenchScene.h"

namespace zrbench {
namespace {

dg::DMat44 ObjectToPixel() {
  dg::DMat44 matrix;
  const double rows[4][3] = {{3, 4, 0}, {0, -2, 0}, {5, 0, 1}, {7, 9, 11}};
  for (int i = 0; i < 12; ++i) matrix.m[i / 3][i % 3] = rows[i / 3][i % 3];
  return matrix;
}

// What an aligning command needs per label at the least, its position read from the label.
void AlignFloor(benchmark::State& state, bool inScreenOrder) {
  BenchScene scene;
  scene.AddParts(static_cast<std::size_t>(state.range(0)));
  const auto callouts = scene.MakeCallouts(zrtest::TextTemplate("A"), false);
  const dg::DMat44 toPixel = ObjectToPixel();
  dg::DMat44 toModel = toPixel;
  toModel.Invert();
  std::vector<std::pair<double, std::size_t>> order(callouts.size());
  std::vector<dg::DPoint3D> places(callouts.size());
  for (auto _ : state) {
    for (std::size_t i = 0; i < callouts.size(); ++i) {
      const dg::DPoint3D pixel = callouts[i]->GetMarkupLabelPosition() * toPixel;
      order[i] = {pixel.x, i};
      places[i] = pixel * toModel;
    }
    if (inScreenOrder) {
      std::sort(order.begin(), order.end());
      for (const auto& [x, i] : order) callouts[i]->SetLabelPosition(callouts[i]->GetPosition());
    }
    benchmark::DoNotOptimize(places.data());
  }
  state.SetComplexityN(state.range(0));
}

void Align(benchmark::State& state, zrcallouts::Align_Mode mode) {
  BenchScene scene;
  scene.AddParts(static_cast<std::size_t>(state.range(0)));
  const auto callouts = scene.MakeCallouts(zrtest::TextTemplate("A"), false);
  dg::Camera3D camera;
  camera.SetObjectToPixel(ObjectToPixel());
  scene.view->SetCamera(camera);
  zrcallouts::Align::Annotations annotations(callouts.begin(), callouts.end());
  for (auto _ : state) {
    const du::SmartPtr<zrcallouts::Align> align(
        new zrcallouts::Align(annotations, mode, false, scene.view, du::SmartPtr<zrk::Operation>()));
    if (!align->Execute({})) state.SkipWithError("nothing was aligned");
  }
  state.SetComplexityN(state.range(0));
}

BENCHMARK_CAPTURE(AlignFloor, Product, false)->Apply(LargeSizes);
BENCHMARK_CAPTURE(AlignFloor, ProductAndSort, true)->Apply(LargeSizes);
BENCHMARK_CAPTURE(Align, Line, zrcallouts::MinX)->Apply(LargeSizes);
BENCHMARK_CAPTURE(Align, Spread, zrcallouts::SpreadX)->Apply(LargeSizes);
BENCHMARK_CAPTURE(Align, Axis, zrcallouts::AlongAxisX)->Apply(LargeSizes);

}  // namespace
}  // namespace zrbench
