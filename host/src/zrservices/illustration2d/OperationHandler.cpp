#include <zrservices/illustration2d/OperationHandler.h>

#include <utility>

#include <zrk/MakeObject.h>
#include <zrk/Operation.h>
#include <zrk/RecordOperation.h>
#include <zrk/illustration/TAnnotation.h>
#include <zrk/illustration2d/Scene2D.h>
#include <zrk/illustration2d/Text2D.h>

#include "CalloutPositionStep.h"

namespace zrservices::illustration2d {

bool OperationHandler::EditCalloutsPosition(const du::SmartPtr<zrk::illustration2d::Scene2D>& scene,
                                            const std::vector<CalloutPosition>& elements,
                                            const std::string& operationName) {
  if (!scene) return false;
  const auto operation = zrk::MakeObject<zrk::Operation>(operationName, scene, true);
  for (const CalloutPosition& element : elements) {
    if (!element.callout) continue;
    const CalloutPosition before{element.callout, element.callout->GetPosition()};
    operation->AddStep(zrk::MakeObject<CalloutPositionStep>(scene, before, element));
  }
  if (operation->GetStepCount() == 0) return false;
  operation->Redo();
  zrk::RecordOperation(operation);
  return true;
}

}  // namespace zrservices::illustration2d
