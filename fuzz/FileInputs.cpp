#include "FileInputs.h"

#include <algorithm>
#include <vector>

#include "commands/Options.h"
#include "commands/TemplateFile.h"

namespace zrfuzz {

namespace {

std::string TextOf(Bytes bytes) {
  return {bytes.begin(), bytes.end()};
}

bool IsOneLine(const std::string& message) {
  return !message.empty() && message.find('\n') == std::string::npos;
}

}  // namespace

std::optional<std::string> ReadTemplateInput(Bytes text) {
  std::string error;
  const auto definition = zrfigure::ParseTemplate(TextOf(text), error);
  if (!definition && !IsOneLine(error)) return "refused with '" + error + "'";
  if (!definition) return std::nullopt;
  if (!error.empty()) return "taken, but with '" + error + "'";
  if (definition->id.empty() || definition->contents.empty()) return "taken without id or contents";
  static_cast<void>(zrfigure::SourcePattern(*definition));
  return std::nullopt;
}

std::optional<std::string> ReadOptionsInput(Bytes lines) {
  std::vector<std::string> arguments;
  for (std::size_t at = 0; at < lines.size();) {
    const auto rest = lines.subspan(at);
    const auto end = std::find(rest.begin(), rest.end(), static_cast<std::uint8_t>('\n'));
    arguments.emplace_back(rest.begin(), end);
    at += arguments.back().size() + 1;
  }
  const zrfigure::ParsedOptions parsed = zrfigure::ParseOptions(arguments);
  const int answers = (parsed.options ? 1 : 0) + (parsed.output.empty() ? 0 : 1) + (parsed.error.empty() ? 0 : 1);
  if (answers != 1) return std::to_string(answers) + " answers instead of one";
  if (!parsed.error.empty() && !IsOneLine(parsed.error)) return "refused with '" + parsed.error + "'";
  if (!parsed.options) return std::nullopt;
  if (parsed.options->figure.empty() || parsed.options->directions.empty()) return "taken without figure or view";
  const zrfigure::Page& page = parsed.options->page;
  if (!(page.widthMm > 0 && page.heightMm > 0)) return "taken with an empty page";
  return std::nullopt;
}

}  // namespace zrfuzz
