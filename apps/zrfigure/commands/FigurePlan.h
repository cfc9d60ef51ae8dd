#pragma once
// Divides the page before there is a callout: place of the parts list, room for labels, scale and position of the
// model.

#include <optional>
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

/// A view for each direction, all at one scale, each in a cell of its own of `room`.
struct PlannedViews {
  std::vector<View> views;
  std::vector<Box2> rooms;
};
/// Divides the room into rows of equal cells, in as many columns as give the largest scale. The labels are thought to
/// spread evenly over the views.
[[nodiscard]] PlannedViews PlanViews(const OccurrenceTree& tree, const std::vector<ViewDirection>& directions,
                                     const Page& page, const Box2& room, const LabelStock& labels);

/// Places the parts list; without a place beside the drawing on a lying page, under it on a standing one. Materials are
/// left out when names would have to be shortened for them.
[[nodiscard]] PagePlan PlanPageWithList(const Page& page, const PartsList& list, const std::string& language,
                                        const TextMeasure& text, std::optional<TablePlace> wanted = std::nullopt);

}  // namespace zrfigure
