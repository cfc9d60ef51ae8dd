#pragma once
// A scene with its engine as checks look at it, and how callouts are taken apart there.

#include <string>
#include <vector>

#include <du/SmartPtr.h>
#include <zrannotations/Callout.h>
#include <zrcallouts/Callouts.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/ItemsList.h>
#include <zrk/illustration/SbomTree.h>

#include "support/StructureBuilder.h"

namespace zrtest {

using CalloutPtr = du::SmartPtr<zrannotations::Callout>;
using EnginePtr = du::SmartPtr<zrcallouts::Callouts>;

struct WatchedScene {
  du::SmartPtr<zrk::illustration::Illustration3dScene> scene;
  du::SmartPtr<zrk::illustration::SbomTree> tree;
  du::SmartPtr<zrk::illustration::ItemsList> items;
  EnginePtr engine;  ///< Bound to the scene, or destroyed.

  /// Those shown in the scene, in its order.
  [[nodiscard]] std::vector<CalloutPtr> Callouts() const;
  /// Everything that undo restores, bit by bit: the given parts, items, callouts with their leaders, insets, symbols.
  [[nodiscard]] std::string State(const std::vector<Part>& parts) const;
};

/// What carries item numbers of its own: the callout, or the members of a combined one.
[[nodiscard]] std::vector<CalloutPtr> SinglesOf(const CalloutPtr& callout);
/// The callout's id, item and text, for messages; 0 for no item.
[[nodiscard]] std::string NameOf(const zrannotations::Callout& callout);

}  // namespace zrtest
