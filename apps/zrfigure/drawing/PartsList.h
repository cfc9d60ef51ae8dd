#pragma once
// The figure's parts list as plain values, and its CSV and JSON forms.

#include <string>
#include <utility>
#include <vector>

namespace zrfigure {

/// One row of the list.
struct PartsListItem {
  std::string itemId;  ///< Ties the row to balloons and parts of the figure.
  std::string number;  ///< As printed, e.g. "3" or "1.2".
  int quantity = 0;
  std::string tag;
  std::string name;
  std::vector<std::string> occurrences;                         ///< Paths of the occurrences the item stands for.
  std::vector<std::pair<std::string, std::string>> properties;  ///< In the order to print them.
  bool shown = true;                                            ///< False when the figure shows nothing of it.
};

struct PartsList {
  std::string source;  ///< The model's file name.
  std::vector<PartsListItem> items;
};

/// The names of all properties, in order of first appearance.
[[nodiscard]] std::vector<std::string> PropertyNames(const PartsList& list);

/// The value of an item's property, or an empty text.
[[nodiscard]] std::string PropertyOf(const PartsListItem& item, const std::string& name);

/// Header line, then a line an item, by RFC 4180 (CRLF, fields quoted where needed). Property columns follow the fixed
/// ones, in order of first appearance.
[[nodiscard]] std::string PartsListToCsv(const PartsList& list);

/// An object with `source` and `items`; UTF-8, keys in fixed order, invalid UTF-8 replaced by U+FFFD.
[[nodiscard]] std::string PartsListToJson(const PartsList& list);

}  // namespace zrfigure
