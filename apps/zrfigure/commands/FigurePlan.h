#pragma once
// Divides the page before there is a callout: place of the parts list, room for labels, scale and position of the
// model.

#include <string>
#include <vector>

#include "commands/OccurrenceTree.h"
#include "commands/Options.h"
#include "commands/RowPlan.h"
#include "commands/TemplateFile.h"
#include "drawing/PageLayout.h"
#include "drawing/PartsList.h"
#include "drawing/TextMeasure.h"

namespace zrfigure {

/// Labels that will have to stand round the model.
struct LabelStock {
  std::size_t count = 0;
  double width = 0;  ///< Pixels, of the widest.
  double height = 0;
};

/// The labels that a template will yield for planned rows; in PerInstance mode a label an occurrence.
[[nodiscard]] LabelStock EstimateLabels(const Model& model, const std::vector<PlannedRow>& rows,
                                        const TemplateDefinition& definition, CalloutMode mode,
                                        const TextMeasure& text);

/// A view of the whole model in the middle of `room`, with a band round it that holds the labels in as many rows and
/// columns as they need, but never more than a third of the room on a side. Image size: the page.
[[nodiscard]] View PlanView(const OccurrenceTree& tree, const ViewDirection& direction, const Page& page,
                            const Box2& room, const LabelStock& labels);

/// The parts list beside the drawing on a lying page, under it on a standing one. Materials are left out when names
/// would have to be shortened for them.
[[nodiscard]] PagePlan PlanPageWithList(const Page& page, const PartsList& list, const std::string& language,
                                        const TextMeasure& text);

}  // namespace zrfigure
