#pragma once

#include <string>
#include <vector>

#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrservices/illustration2d/CalloutPosition.h>

namespace zrk::illustration2d {
class Scene2D;
}

namespace zrservices::illustration2d {

/// Edits of a sheet that are undoable at once.
class ZR_HOST_API OperationHandler {
public:
  /// Moves the labels, tells the scene once a callout, and records one operation. Elements without callout are skipped.
  /// False, with nothing changed, without a scene or when no element is left.
  static bool EditCalloutsPosition(const du::SmartPtr<zrk::illustration2d::Scene2D>& scene,
                                   const std::vector<CalloutPosition>& elements,
                                   const std::string& operationName = std::string());
};

}  // namespace zrservices::illustration2d
