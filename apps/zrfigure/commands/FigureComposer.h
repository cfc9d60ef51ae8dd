#pragma once
// From callouts and items as they stand after a run to the figure, its parts list and what there is to say about it.

#include <string>
#include <vector>

#include "commands/HostSession.h"
#include "commands/Report.h"
#include "drawing/Figure.h"
#include "drawing/PartsList.h"

namespace zrfigure {

/// What a figure is composed of; all for the same model and view.
struct FigureInput {
  const OccurrenceTree& tree;
  const View& view;
  const IdBuffer& ids;
  const std::vector<ArtLine>& lines;
  const std::vector<CalloutState>& callouts;
  const std::vector<ItemState>& items;
  const TextMeasure& text;
};

/// Parts with their lines, and balloons with their shown leaders. Neither page, title nor table.
[[nodiscard]] Figure ComposeFigure(const FigureInput& input);

/// The list of all items, in order. A product's `material` comes first among the properties.
[[nodiscard]] PartsList ComposePartsList(const OccurrenceTree& tree, const std::vector<ItemState>& items);

/// The list as a table with headings in a language: number, quantity, name, and, when asked for and a part has one,
/// material.
[[nodiscard]] PartsTable ComposeTable(const PartsList& list, const std::string& language, bool withMaterial);

/// An "item-not-visible" for each item that has a callout and no part that can be seen in the view.
[[nodiscard]] std::vector<Finding> FindHiddenItems(const FigureInput& input);

}  // namespace zrfigure
