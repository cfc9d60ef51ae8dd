#pragma once
// A host with one scene, its engine and a flat product, for the benches.

#include <benchmark/benchmark.h>

#include <vector>

#include <zrannotations/Callout.h>
#include <zrcallouts/Callouts.h>
#include <zritemlist/ItemList.h>
#include <zrk/Kernel.h>
#include <zrk/ShapeView.h>
#include <zrk/World.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/SbomTree.h>

#include "support/StructureBuilder.h"
#include "support/TemplateBuilder.h"

namespace zrbench {

using CalloutPtr = du::SmartPtr<zrannotations::Callout>;

/// A thousand to a hundred thousand, in milliseconds, with the growth reported.
void LargeSizes(benchmark::internal::Benchmark* bench);

/// Tasks run when they are waited for. Everything ends in order with the object. [host-thread]
class BenchScene {
public:
  BenchScene();
  ~BenchScene();
  BenchScene(const BenchScene&) = delete;
  BenchScene& operator=(const BenchScene&) = delete;

  /// Adds parts; every tenth has a name, and so a component, of its own.
  const std::vector<zrtest::Part>& AddParts(std::size_t count);
  /// One callout a part, on it, in no set yet; with an item each when `withItems`.
  [[nodiscard]] std::vector<CalloutPtr> MakeCallouts(const zrtest::TemplatePtr& callouttemplate, bool withItems);
  void AddToScene(const std::vector<CalloutPtr>& callouts) const;
  void RunTasks() const;

  zrk::Kernel kernel;
  du::SmartPtr<zrk::World> world;
  du::SmartPtr<zrk::illustration::Illustration3dScene> scene;
  du::SmartPtr<zrk::ShapeView> view;
  du::SmartPtr<zrk::illustration::SbomTree> tree;
  du::SmartPtr<zritemlist::ItemList> itemList;
  du::SmartPtr<zrcallouts::Callouts> engine;

private:
  std::unique_ptr<zrtest::StructureBuilder> structure_;
  std::vector<zrtest::Part> parts_;
};

}  // namespace zrbench
