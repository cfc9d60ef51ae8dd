#pragma once
// Callout templates as plain values: the built-in ones and those read from JSON files.

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zrfigure {

/// One piece of a label: a literal text, or the value of a property.
struct TemplateContent {
  bool isProperty = false;
  std::string text;               ///< The literal text; of a property its group, empty for the part's default group.
  std::string name;               ///< Name of the property.
  std::string display = "Value";  ///< "Value" or "Name".
  std::string level;              ///< "" for the part itself, "Parent" or "Root".
};

struct TemplatePen {
  double weight = 0.18;
  std::string unit = "mm";  ///< mm, cm, m, in or pt.
};

struct TemplateDefinition {
  std::string id;
  std::string name;
  bool markdown = false;      ///< The literal texts are markdown.
  bool itemTemplate = false;  ///< Its callouts stand for rows of the item list.
  std::vector<TemplateContent> contents;
  std::optional<TemplatePen> leaderPen;
  std::map<std::string, std::string> translations;  ///< Language to pattern; "{0}" is the first property.
};

[[nodiscard]] bool IsBuiltInTemplate(std::string_view name);

/// A built-in template by name: number, number-quantity, number-tag or number-name. Nothing for any other name.
[[nodiscard]] std::optional<TemplateDefinition> BuiltInTemplate(std::string_view name);

/// Reads the JSON text of a template. Every field is checked; unknown ones are refused, so that a slip of the pen does
/// not pass unseen. \return nothing with one line in `error` that says where, e.g. `contents[2].name is missing`.
[[nodiscard]] std::optional<TemplateDefinition> ParseTemplate(std::string_view json, std::string& error);

/// A built-in template or the one in a file; `error` is one line that begins with the file's path.
[[nodiscard]] std::optional<TemplateDefinition> LoadTemplate(const std::string& nameOrPath, std::string& error);

/// The pattern that the template's own contents stand for: literal texts, and "{n}" for the n-th property.
[[nodiscard]] std::string SourcePattern(const TemplateDefinition& definition);

}  // namespace zrfigure
