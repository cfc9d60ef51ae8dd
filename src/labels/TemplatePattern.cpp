#include "labels/TemplatePattern.h"

#include <algorithm>
#include <cstdlib>

#include <zrk/illustration/LabelContent.h>

using zrk::illustration::LabelContent;

namespace zrcallouts {

namespace {

constexpr std::uint32_t kProperty = 1;

LabelContents PropertiesOf(const LabelContents& contents) {
  LabelContents properties;
  for (const auto& content : contents) {
    if (content && content->type == kProperty) properties.push_back(content);
  }
  return properties;
}

// Display and level go along, otherwise a field that shows a name would show a value after a change of language.
du::SmartPtr<LabelContent> CopyOfProperty(const LabelContent& property) {
  du::SmartPtr<LabelContent> copy(new LabelContent(property.text, property.name, property.textProperties));
  copy->display = property.display;
  copy->level = property.level;
  return copy;
}

}  // namespace

bool MakePattern(const LabelContents& contents, std::string& pattern) {
  pattern.clear();
  bool hasLiteral = false;
  int placeholder = 0;
  for (const auto& content : contents) {
    if (!content) continue;
    if (content->type == kProperty) {
      pattern += '{' + std::to_string(placeholder++) + '}';
    } else {
      pattern += content->text;
      hasLiteral = true;
    }
  }
  return hasLiteral;
}

void ReadPattern(const std::string& pattern, const LabelContents& contents, LabelContents& localized) {
  if (contents.empty()) return;
  const auto textProperties = contents.front() ? contents.front()->textProperties : zrk::illustration::TextProperties();
  const LabelContents properties = PropertiesOf(contents);
  std::size_t position = 0;
  while (position < pattern.size()) {
    const std::size_t brace = std::min(pattern.find('{', position), pattern.size());
    if (brace > position) {
      const std::string literal = pattern.substr(position, brace - position);
      localized.push_back(du::SmartPtr<LabelContent>(new LabelContent(literal, textProperties)));
    }
    if (brace + 1 >= pattern.size()) return;  // the end, or a brace as the last character, which is dropped
    // Leading digits count and anything else reads as 0, as the standard conversion has it.
    const long number = std::strtol(pattern.c_str() + brace + 1, nullptr, 10);
    if (number >= 0 && static_cast<std::size_t>(number) < properties.size()) {
      localized.push_back(CopyOfProperty(*properties[static_cast<std::size_t>(number)]));
    }
    const std::size_t close = pattern.find('}', brace);
    position = close == std::string::npos ? pattern.size() - 1 : close + 1;
  }
}

}  // namespace zrcallouts
