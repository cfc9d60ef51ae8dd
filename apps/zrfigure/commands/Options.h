#pragma once
// The command line of `zrfigure MODEL` and `zrfigure check` as plain values.

#include <optional>
#include <string>
#include <vector>

#include "drawing/Figure.h"
#include "drawing/PageLayout.h"
#include "visibility/View.h"
#include "zrcallouts/Align.h"

namespace zrfigure {

/// How many callouts the parts of one item get.
enum class CalloutMode {
  OnePerItem,   ///< One callout an item, one leader shown.
  Combine,      ///< One callout an item, a leader shown to each part.
  PerInstance,  ///< A callout for each part.
};

/// In which order the items are numbered.
enum class ItemOrder {
  Item,       ///< As they come in the assembly.
  Clockwise,  ///< As their labels stand round the figure.
};

/// What the figure's balloons are in the host.
enum class CalloutKind {
  Scene,  ///< Callouts of the 3D scene.
  Sheet,  ///< 2D callouts of a page.
};

/// How `zrfigure check` prints its findings.
enum class FindingFormat { Text, Json, Sarif };

struct Options {
  std::string model;   ///< For `check` also a figure.
  std::string figure;  ///< Never empty after parsing: the model's base name with .svg when not given.
  std::string parts;   ///< Empty: no parts-list file.
  std::vector<ViewDirection> directions;  ///< A picture of the model each; at least one.
  Page page;
  TablePlace listPlace = TablePlace::Beside;
  std::string templateName = "number";  ///< A built-in name or the path of a .json file.
  CalloutMode mode = CalloutMode::OnePerItem;
  std::vector<std::string> select;  ///< Globs; empty selects everything.
  std::optional<unsigned> level;    ///< Depth of the selected instances, the root being 0; none: leaf parts.
  bool skipHidden = false;          ///< What cannot be seen gets a grey row and no callout.
  bool hierarchical = false;
  ItemOrder order = ItemOrder::Item;
  CalloutKind kind = CalloutKind::Scene;
  std::optional<zrcallouts::Align_Mode> align;  ///< For all labels of a picture.
  bool distribute = false;
  std::string pin;                ///< An earlier figure or report whose labels stay where they stand; empty for none.
  std::vector<std::string> weld;  ///< Globs of product or instance names that are weldments.
  std::string language = "en";
  bool quiet = false;
  bool json = false;
  bool strict = false;
  std::optional<FindingFormat> check;  ///< Set for `zrfigure check`.
};

/// What became of a command line.
struct ParsedOptions {
  std::optional<Options> options;  ///< Set when there is something to do.
  std::string output;              ///< For stdout: text of --help or --version.
  std::string error;               ///< For stderr: one line, without the program's name. Empty when all is well.
};

/// Reads the arguments after the program's name. Files are not looked at.
[[nodiscard]] ParsedOptions ParseOptions(const std::vector<std::string>& arguments);

}  // namespace zrfigure
