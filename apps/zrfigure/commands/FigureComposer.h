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

/// Parts with their lines and areas, balloons with their shown leaders, and the pictures' boxes. Neither page, title
/// nor table. Ids of parts of the second picture begin with "2/", of the third with "3/" and so on.
[[nodiscard]] Figure ComposeFigure(const std::vector<FigureInput>& pictures);
[[nodiscard]] Figure ComposeFigure(const FigureInput& input);

/// Stable ids of all occurrences: the instance names from the root on, as far as ids allow them. An occurrence's id
/// begins with its parent's.
[[nodiscard]] std::vector<std::string> MakePartIds(const OccurrenceTree& tree);

/// The list of all items, in order. A product's `material` comes first among the properties.
[[nodiscard]] PartsList ComposePartsList(const OccurrenceTree& tree, const std::vector<ItemState>& items);

/// The list as a table with headings in a language: number, quantity, name, and, when asked for and a part has one,
/// material.
[[nodiscard]] PartsTable ComposeTable(const PartsList& list, const std::string& language, bool withMaterial);

/// The list as a table of all that is known: number, quantity, tag when any item has one, name, properties.
[[nodiscard]] PartsTable ComposeFullTable(const PartsList& list, const std::string& language);

/// An item without a part that can be seen in any picture: "item-not-visible", a fault where it is called out.
struct HiddenItem {
  Finding finding;
  bool isCalledOut = false;
};
/// In the order of the items of the last picture.
[[nodiscard]] std::vector<HiddenItem> FindHiddenItems(const std::vector<FigureInput>& pictures);

}  // namespace zrfigure
