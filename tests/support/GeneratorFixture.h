#pragma once
// A scene with a small product, and automatic runs on it that are described in one line a callout.

#include <string>
#include <vector>

#include <zrcallouts/CalloutGenerator.h>
#include <zrk/AsyncEvent.h>
#include <zrk/MakeObject.h>
#include <zrk/UndoHistory.h>
#include <zrk/illustration/SbomInstanceSelectionItem.h>

#include "support/SceneFixture.h"

namespace zrtest {

using Names = std::vector<std::string>;
using EventPtr = du::SmartPtr<zrk::AsyncEvent>;
using GeneratorPtr = du::SmartPtr<zrcallouts::CalloutGenerator>;

/// The product: bolt (twice), nut, washer; assembly frame with two beams; weld with plate and rib; stub without shape.
/// Parts are named by their path below the root ("bolt#2", "frame/beam").
class GeneratorFixture : public SceneFixture {
protected:
  explicit GeneratorFixture(const SceneOptions& options = {});
  ~GeneratorFixture() override;

  [[nodiscard]] Part PartOf(const std::string& name) const;
  std::uint32_t AddItemOf(const std::string& name) { return AddItem(PartOf(name)); }
  [[nodiscard]] zrcallouts::CalloutGenerator::Selection Select(const Names& names) const;
  [[nodiscard]] GeneratorPtr MakeGenerator() const { return zrk::MakeObject<zrcallouts::CalloutGenerator>(engine_); }
  void SetProperty(const std::string& name, const std::string& group, const std::string& property,
                   const std::string& value);
  /// An automatic run through the task pool, up to its end.
  void Run(const Names& names, const EventPtr& event = {});

  [[nodiscard]] std::vector<CalloutPtr> Shown() const {
    return WatchedScene{scene_, tree_, items_, engine_}.Callouts();
  }
  /// The shown callouts in order, as "label: part part*", hidden leaders with a star.
  [[nodiscard]] Names Describe() const;
  [[nodiscard]] static std::string Describe(const zrannotations::Callout& callout);
  [[nodiscard]] std::size_t RecordedCount() const { return zrk::UndoHistory::GetCount(scene_); }
  [[nodiscard]] du::SmartPtr<zrk::Operation> MakeOperation() const {
    return zrk::MakeObject<zrk::Operation>("test", scene_, true);
  }
};

}  // namespace zrtest
