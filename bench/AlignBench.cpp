// Aligning labels, beside one matrix product a label there and back.
#include <benchmark/benchmark.h>

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
void AlignFloor(benchmark::State& state) {
  BenchScene scene;
  scene.AddParts(static_cast<std::size_t>(state.range(0)));
  const auto callouts = scene.MakeCallouts(zrtest::TextTemplate("A"), false);
  const dg::DMat44 toPixel = ObjectToPixel();
  dg::DMat44 toModel = toPixel;
  toModel.Invert();
  std::vector<dg::DPoint3D> places(callouts.size());
  for (auto _ : state) {
    for (std::size_t i = 0; i < callouts.size(); ++i) {
      places[i] = (callouts[i]->GetMarkupLabelPosition() * toPixel) * toModel;
    }
    benchmark::DoNotOptimize(places.data());
  }
  state.SetComplexityN(state.range(0));
}

void Align(benchmark::State& state) {
  BenchScene scene;
  scene.AddParts(static_cast<std::size_t>(state.range(0)));
  const auto callouts = scene.MakeCallouts(zrtest::TextTemplate("A"), false);
  dg::Camera3D camera;
  camera.SetObjectToPixel(ObjectToPixel());
  scene.view->SetCamera(camera);
  zrcallouts::Align::Annotations annotations(callouts.begin(), callouts.end());
  const auto mode = static_cast<zrcallouts::Align_Mode>(state.range(1));
  for (auto _ : state) {
    const du::SmartPtr<zrcallouts::Align> align(
        new zrcallouts::Align(annotations, mode, false, scene.view, du::SmartPtr<zrk::Operation>()));
    if (!align->Execute({})) state.SkipWithError("nothing was aligned");
  }
  state.SetComplexityN(state.range(0));
}

BENCHMARK(AlignFloor)->RangeMultiplier(10)->Range(1000, 100000)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(Align)
    ->ArgNames({"n", "mode"})
    ->ArgsProduct({{1000, 10000, 100000}, {zrcallouts::MinX, zrcallouts::SpreadX, zrcallouts::AlongAxisX}})
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zrbench
