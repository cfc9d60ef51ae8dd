#pragma once
// What a callout or leader of a pass is anchored on: one shape of a part, or all shapes of an assembly.

#include <set>

#include <du/SmartPtr.h>
#include <zrk/ShapeInstance.h>
#include <zrk/ShapeScene.h>

#include "zrcallouts/CalloutGenerator.h"

namespace zrcallouts {

struct CalloutGenerator::PassTarget {
  du::SmartPtr<zrk::ShapeScene> scene;
  bool isAssembly = false;
  du::SmartPtr<zrk::ShapeInstance> shape;             // a part's
  std::set<du::SmartPtr<zrk::ShapeInstance>> shapes;  // an assembly's
};

}  // namespace zrcallouts
