#include "commands/TemplateFile.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <system_error>

#include <nlohmann/json.hpp>

namespace zrfigure {
namespace {

using Json = nlohmann::json;

constexpr std::array<std::string_view, 4> kBuiltIn{"number", "number-quantity", "number-tag", "number-name"};
constexpr std::size_t kMaxFileBytes = 1 << 20;

/// What is wrong with a template and where.
struct TemplateError {
  std::string text;
};

[[noreturn]] void Fail(const std::string& where, const std::string& what) {
  throw TemplateError{where + " " + what};
}

std::string Member(const std::string& where, const std::string& key) {
  return where.empty() ? key : where + "." + key;
}

void RefuseUnknown(const Json& object, const std::string& where, std::initializer_list<std::string_view> known) {
  for (const auto& [key, value] : object.items()) {
    if (std::find(known.begin(), known.end(), key) == known.end()) Fail(Member(where, key), "is not a known field");
  }
}

std::string ReadString(const Json& object, const std::string& where, const char* key, bool required) {
  if (!object.contains(key)) {
    if (required) Fail(Member(where, key), "is missing");
    return {};
  }
  if (!object[key].is_string()) Fail(Member(where, key), "is not a text");
  return object[key].get<std::string>();
}

bool ReadBool(const Json& object, const char* key, bool byDefault) {
  if (!object.contains(key)) return byDefault;
  if (!object[key].is_boolean()) Fail(key, "is neither true nor false");
  return object[key].get<bool>();
}

std::string ReadChoice(const Json& object, const std::string& where, const char* key,
                       std::initializer_list<std::string_view> choices) {
  const std::string value = ReadString(object, where, key, false);
  if (!object.contains(key) || std::find(choices.begin(), choices.end(), value) != choices.end()) return value;
  std::string list;
  for (std::string_view choice : choices) list += (list.empty() ? "\"" : ", \"") + std::string(choice) + "\"";
  Fail(Member(where, key), "is \"" + value + "\" but must be one of " + list);
}

TemplateContent ReadContent(const Json& entry, const std::string& where) {
  if (!entry.is_object()) Fail(where, "is not an object");
  TemplateContent content;
  if (entry.contains("text")) {
    RefuseUnknown(entry, where, {"text"});
    content.text = ReadString(entry, where, "text", true);
    return content;
  }
  RefuseUnknown(entry, where, {"group", "name", "display", "level"});
  if (entry.empty()) Fail(where, "has neither a text nor a property name");
  content.isProperty = true;
  content.text = ReadString(entry, where, "group", false);
  content.name = ReadString(entry, where, "name", true);
  if (content.name.empty()) Fail(Member(where, "name"), "is empty");
  if (entry.contains("display")) content.display = ReadChoice(entry, where, "display", {"Value", "Name"});
  content.level = ReadChoice(entry, where, "level", {"", "Parent", "Root"});
  return content;
}

std::vector<TemplateContent> ReadContents(const Json& root) {
  if (!root.contains("contents")) Fail("contents", "is missing");
  const Json& entries = root["contents"];
  if (!entries.is_array()) Fail("contents", "is not a list");
  if (entries.empty()) Fail("contents", "is empty");
  std::vector<TemplateContent> contents;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    contents.push_back(ReadContent(entries[i], "contents[" + std::to_string(i) + "]"));
  }
  return contents;
}

std::optional<TemplatePen> ReadPen(const Json& root) {
  if (!root.contains("leaderPen")) return std::nullopt;
  const Json& entry = root["leaderPen"];
  if (!entry.is_object()) Fail("leaderPen", "is not an object");
  RefuseUnknown(entry, "leaderPen", {"weight", "unit"});
  TemplatePen pen;
  if (!entry.contains("weight")) Fail("leaderPen.weight", "is missing");
  if (!entry["weight"].is_number()) Fail("leaderPen.weight", "is not a number");
  pen.weight = entry["weight"].get<double>();
  if (!(pen.weight > 0 && pen.weight <= 100)) Fail("leaderPen.weight", "is not above 0 and at most 100");
  if (entry.contains("unit")) pen.unit = ReadChoice(entry, "leaderPen", "unit", {"mm", "cm", "m", "in", "pt"});
  return pen;
}

/// Refuses a placeholder that stands for no property: it would silently print nothing.
void CheckPattern(const std::string& pattern, std::size_t properties, const std::string& where) {
  for (std::size_t open = pattern.find('{'); open != std::string::npos; open = pattern.find('{', open + 1)) {
    const std::size_t close = pattern.find('}', open);
    if (close == std::string::npos) Fail(where, "has a '{' without '}'");
    const std::string number = pattern.substr(open + 1, close - open - 1);
    const bool digits = !number.empty() && number.size() < 4 &&
                        std::all_of(number.begin(), number.end(), [](unsigned char c) { return std::isdigit(c); });
    if (!digits || std::stoul(number) >= properties) {
      Fail(where, "has {" + number + "} but the template has " + std::to_string(properties) + " properties");
    }
  }
}

std::map<std::string, std::string> ReadTranslations(const Json& root, std::size_t properties) {
  std::map<std::string, std::string> translations;
  if (!root.contains("translations")) return translations;
  if (!root["translations"].is_object()) Fail("translations", "is not an object");
  RefuseUnknown(root["translations"], "translations", {"en", "de", "fr", "ja"});
  for (const auto& [language, pattern] : root["translations"].items()) {
    translations[language] = ReadString(root["translations"], "translations", language.c_str(), true);
    CheckPattern(translations[language], properties, Member("translations", language));
  }
  return translations;
}

std::size_t CountProperties(const std::vector<TemplateContent>& contents) {
  return static_cast<std::size_t>(
      std::count_if(contents.begin(), contents.end(), [](const TemplateContent& c) { return c.isProperty; }));
}

TemplateDefinition ReadTemplate(const Json& root) {
  if (!root.is_object()) throw TemplateError{"the template is not an object"};
  RefuseUnknown(root, "", {"id", "name", "markdown", "itemTemplate", "contents", "leaderPen", "translations"});
  TemplateDefinition definition;
  definition.id = ReadString(root, "", "id", true);
  if (definition.id.empty()) Fail("id", "is empty");
  definition.name = ReadString(root, "", "name", true);
  definition.markdown = ReadBool(root, "markdown", false);
  definition.itemTemplate = ReadBool(root, "itemTemplate", false);
  definition.contents = ReadContents(root);
  definition.leaderPen = ReadPen(root);
  definition.translations = ReadTranslations(root, CountProperties(definition.contents));
  return definition;
}

TemplateContent Literal(const std::string& text) {
  TemplateContent content;
  content.text = text;
  return content;
}

TemplateContent Property(const std::string& group, const std::string& name) {
  TemplateContent content;
  content.isProperty = true;
  content.text = group;
  content.name = name;
  return content;
}

bool ReadFile(const std::string& path, std::string& text, std::string& error) {
  std::error_code code;
  // A folder can be opened as a file; reading it throws.
  std::ifstream file;
  if (!std::filesystem::is_directory(path, code)) file.open(path, std::ios::binary);
  text.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  if (!file.is_open() || file.bad()) {
    error = path + ": cannot be read";
  } else if (text.size() > kMaxFileBytes) {
    error = path + ": is larger than any template";
  } else {
    return true;
  }
  return false;
}

/// The parser's own message holds a source id and a line feed; what helps is the position.
std::string DescribeSyntaxError(std::string_view json, std::size_t byte) {
  const std::string_view before = json.substr(0, std::min(byte > 0 ? byte - 1 : 0, json.size()));
  const auto line = 1 + std::count(before.begin(), before.end(), '\n');
  return "is not JSON: unexpected text in line " + std::to_string(line);
}

}  // namespace

bool IsBuiltInTemplate(std::string_view name) {
  return std::find(kBuiltIn.begin(), kBuiltIn.end(), name) != kBuiltIn.end();
}

std::optional<TemplateDefinition> BuiltInTemplate(std::string_view name) {
  if (!IsBuiltInTemplate(name)) return std::nullopt;
  TemplateDefinition definition;
  definition.id = definition.name = std::string(name);
  definition.itemTemplate = true;
  definition.contents.push_back(Property("System", "zrITM"));
  if (name == "number-quantity") {
    definition.contents.push_back(Literal(" ("));
    definition.contents.push_back(Property("System", "zrQTY"));
    definition.contents.push_back(Literal("x)"));
  } else if (name == "number-tag") {
    definition.contents.push_back(Literal(" "));
    definition.contents.push_back(Property("System", "zrTAG"));
  } else if (name == "number-name") {
    definition.contents.push_back(Literal(" "));
    definition.contents.push_back(Property("", "name"));
  }
  return definition;
}

std::optional<TemplateDefinition> ParseTemplate(std::string_view json, std::string& error) {
  try {
    return ReadTemplate(Json::parse(json));
  } catch (const Json::parse_error& parseError) {
    error = DescribeSyntaxError(json, parseError.byte);
  } catch (const Json::exception&) {
    error = "has a number that is too large";
  } catch (const TemplateError& templateError) {
    error = templateError.text;
  }
  return std::nullopt;
}

std::optional<TemplateDefinition> LoadTemplate(const std::string& nameOrPath, std::string& error) {
  if (auto builtIn = BuiltInTemplate(nameOrPath)) return builtIn;
  std::string text;
  if (!ReadFile(nameOrPath, text, error)) return std::nullopt;
  auto definition = ParseTemplate(text, error);
  if (!definition) error = nameOrPath + ": " + error;
  return definition;
}

std::string SourcePattern(const TemplateDefinition& definition) {
  std::string pattern;
  int property = 0;
  for (const TemplateContent& content : definition.contents) {
    pattern += content.isProperty ? "{" + std::to_string(property++) + "}" : content.text;
  }
  return pattern;
}

}  // namespace zrfigure
