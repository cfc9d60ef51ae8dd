#pragma once
// What a callout or a leader is anchored on: one shape of a part, or all shapes of an assembly.

#include <set>

#include <du/SmartPtr.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CalloutLeader.h>
#include <zrk/ShapeInstance.h>
#include <zrk/ShapeScene.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/TAnnotation.h>

namespace zrcallouts {

struct LeaderTarget {
  du::SmartPtr<zrk::ShapeScene> scene;
  du::SmartPtr<zrk::illustration::SbomInstance> instance;
  bool isAssembly = false;
  du::SmartPtr<zrk::ShapeInstance> shape;             ///< A part's.
  std::set<du::SmartPtr<zrk::ShapeInstance>> shapes;  ///< An assembly's.
};

/// Finds what `instance` shows in `scene`. False when it has nothing there to stand on. An assembly that carries a
/// callout's first leader (`isFirst`) must have a valid engineering instance as a part must, although it stands on its
/// shapes.
[[nodiscard]] bool FindLeaderTarget(const du::SmartPtr<zrk::ShapeScene>& scene,
                                    const du::SmartPtr<zrk::illustration::SbomInstance>& instance, bool isFirst,
                                    LeaderTarget& target);

/// The first instance of the set that the scene shows; empty when it shows none.
[[nodiscard]] du::SmartPtr<zrk::Instance> FirstShownInstance(const du::SmartPtr<zrk::ShapeScene>& scene,
                                                             const std::set<du::SmartPtr<zrk::Instance>>& instances);

/// Starts a new callout on the target.
void InitializeOn(const LeaderTarget& target, const du::SmartPtr<zrk::illustration::TAnnotation>& callouttemplate,
                  zrannotations::Callout& callout);

/// Adds a leader on the target, at a provisional anchor; empty when the host makes none.
du::SmartPtr<zrannotations::CalloutLeader> AddLeaderOn(const LeaderTarget& target, bool hidden,
                                                       zrannotations::Callout& callout);

}  // namespace zrcallouts
