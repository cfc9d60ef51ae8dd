#pragma once
// What a command did, for people and for programs.

#include <optional>
#include <string>
#include <vector>

#include "commands/LayoutCheck.h"

namespace zrfigure {

/// Something the author should look at.
struct Finding {
  std::string rule;  ///< Stable name, e.g. "item-not-visible".
  int item = 0;      ///< Id of the item; 0 when none is concerned.
  std::string message;
};

struct Seconds {
  double import = 0;
  double generate = 0;  ///< Items, callouts and their texts.
  double layout = 0;    ///< Placing the labels.
  double draw = 0;      ///< Visibility, lines, composition and files.
};

struct Report {
  std::string model;
  int occurrences = 0;
  int parts = 0;
  int items = 0;
  int callouts = 0;
  int leaders = 0;
  int visibleLeaders = 0;
  LayoutFaults layout;
  std::vector<Finding> findings;
  std::vector<std::string> outputs;
  Seconds seconds;
};

/// One JSON object with a line feed at the end: the report, then page, labels and rows of the figure with their places
/// in millimetres. Seconds to the millisecond, millimetres to the micrometre.
[[nodiscard]] std::string ReportToJson(const Report& report, const std::vector<Figure>& pages);

/// The figure of which ReportToJson() told: page, boxes of the pictures, balloons and rows, all rows on one page.
/// \return nothing with one line in `error` for anything else.
[[nodiscard]] std::optional<Figure> ReadReport(const std::string& json, std::string& error);

/// Two or three lines for a terminal: counts and files.
[[nodiscard]] std::string ReportToText(const Report& report);

}  // namespace zrfigure
