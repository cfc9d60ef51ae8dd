#include "drawing/PartsList.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace zrfigure {
namespace {

std::string Quoted(const std::string& field) {
  if (field.find_first_of(",\"\r\n") == std::string::npos) return field;
  std::string quoted = "\"";
  for (const char c : field) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + '"';
}

std::string CsvLine(const std::vector<std::string>& fields) {
  std::string line;
  for (const std::string& field : fields) {
    if (&field != &fields.front()) line += ',';
    line += Quoted(field);
  }
  return line + "\r\n";
}

}  // namespace

std::vector<std::string> PropertyNames(const PartsList& list) {
  std::vector<std::string> names;
  for (const PartsListItem& item : list.items) {
    for (const auto& [name, value] : item.properties) {
      if (std::ranges::find(names, name) == names.end()) names.push_back(name);
    }
  }
  return names;
}

std::string PropertyOf(const PartsListItem& item, const std::string& wanted) {
  const auto found = std::ranges::find(item.properties, wanted, &std::pair<std::string, std::string>::first);
  return found == item.properties.end() ? std::string() : found->second;
}

std::string PartsListToCsv(const PartsList& list) {
  const std::vector<std::string> properties = PropertyNames(list);
  std::vector<std::string> header{"item", "quantity", "tag", "name"};
  header.insert(header.end(), properties.begin(), properties.end());
  std::string csv = CsvLine(header);
  for (const PartsListItem& item : list.items) {
    std::vector<std::string> fields{item.number, std::to_string(item.quantity), item.tag, item.name};
    for (const std::string& name : properties) fields.push_back(PropertyOf(item, name));
    csv += CsvLine(fields);
  }
  return csv;
}

std::string PartsListToJson(const PartsList& list) {
  using Json = nlohmann::ordered_json;
  Json items = Json::array();
  for (const PartsListItem& item : list.items) {
    Json properties = Json::object();
    for (const auto& [name, value] : item.properties) properties[name] = value;
    items.push_back({{"id", item.itemId},
                     {"item", item.number},
                     {"quantity", item.quantity},
                     {"tag", item.tag},
                     {"name", item.name},
                     {"shown", item.shown},
                     {"properties", properties},
                     {"occurrences", item.occurrences}});
  }
  const Json document{{"source", list.source}, {"items", items}};
  return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace zrfigure
