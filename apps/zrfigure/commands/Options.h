#pragma once
// The command line of `zrfigure MODEL` as plain values.

#include <optional>
#include <string>
#include <vector>

#include "drawing/Figure.h"
#include "visibility/View.h"

namespace zrfigure {

/// How many callouts the parts of one item get.
enum class CalloutMode {
  OnePerItem,   ///< One callout an item, one leader shown.
  Combine,      ///< One callout an item, a leader shown to each part.
  PerInstance,  ///< A callout for each part.
};

struct Options {
  std::string model;
  std::string figure;  ///< Never empty after parsing: the model's base name with .svg when not given.
  std::string parts;   ///< Empty: no parts-list file.
  ViewDirection direction;
  Page page;
  std::string templateName = "number";  ///< A built-in name or the path of a .json file.
  CalloutMode mode = CalloutMode::OnePerItem;
  std::vector<std::string> select;  ///< Globs; empty selects everything.
  std::optional<unsigned> level;    ///< Depth of the selected instances, the root being 0; none: leaf parts.
  bool hierarchical = false;
  std::vector<std::string> weld;  ///< Globs of product or instance names that are weldments.
  std::string language = "en";
  bool quiet = false;
  bool json = false;
  bool strict = false;
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
