#include "commands/FigureComposer.h"

#include <algorithm>
#include <map>
#include <set>

#include "commands/BalloonComposer.h"

namespace zrfigure {
namespace {

struct Headings {
  const char* language;
  const char* number;
  const char* quantity;
  const char* name;
  const char* material;
};

constexpr Headings kHeadings[] = {{"en", "Item", "Qty", "Name", "Material"},
                                  {"de", "Pos.", "Menge", "Benennung", "Werkstoff"},
                                  {"fr", "Rep.", "Qté", "Désignation", "Matière"},
                                  {"ja", "番号", "数量", "名称", "材質"}};

const Headings& HeadingsIn(const std::string& language) {
  for (const Headings& headings : kHeadings) {
    if (headings.language == language) return headings;
  }
  return kHeadings[0];
}

/// Id of the row that an occurrence belongs to: its own, else that of the nearest ancestor; empty for none.
std::string RowOf(const OccurrenceTree& tree, const std::map<int, unsigned>& rows, int occurrence) {
  for (; occurrence >= 0; occurrence = tree.GetModel().occurrences[occurrence].parent) {
    const auto found = rows.find(occurrence);
    if (found != rows.end()) return std::to_string(found->second);
  }
  return {};
}

std::map<int, unsigned> RowsByOccurrence(const std::vector<ItemState>& items) {
  std::map<int, unsigned> rows;
  for (const ItemState& item : items) {
    for (int occurrence : item.occurrences) rows.emplace(occurrence, item.id);
  }
  return rows;
}

/// Turns paths into ids: letters, digits, '-', '_', '.', '/', unique.
class IdMaker {
public:
  std::string Make(std::string path) {
    for (char& c : path) {
      const bool fits = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-' ||
                        c == '_' || c == '.' || c == '/';
      if (!fits) c = '_';
    }
    std::string id = path;
    for (int number = 2; !used_.insert(id).second; ++number) id = path + "." + std::to_string(number);
    return id;
  }

private:
  std::set<std::string> used_;
};

std::vector<FigurePart> ComposeParts(const FigureInput& input) {
  const std::map<int, unsigned> rows = RowsByOccurrence(input.items);
  IdMaker ids;
  std::vector<FigurePart> parts;
  std::map<int, std::size_t> indexOf;
  for (int leaf : input.tree.Leaves()) {
    indexOf[leaf] = parts.size();
    FigurePart part;
    part.id = ids.Make(input.tree.InstancePath(leaf));
    part.itemId = RowOf(input.tree, rows, leaf);
    part.name = input.tree.ProductOf(leaf).name;
    parts.push_back(std::move(part));
  }
  for (const ArtLine& line : input.lines) {
    const auto found = indexOf.find(line.occurrence);
    if (found != indexOf.end()) parts[found->second].lines.push_back(line);
  }
  parts.erase(std::remove_if(parts.begin(), parts.end(), [](const FigurePart& part) { return part.lines.empty(); }),
              parts.end());
  return parts;
}

std::vector<std::pair<std::string, std::string>> PropertiesOf(const Product& product) {
  std::vector<std::pair<std::string, std::string>> properties(product.properties.begin(), product.properties.end());
  std::stable_partition(properties.begin(), properties.end(),
                        [](const auto& property) { return property.first == "material"; });
  return properties;
}

std::string MaterialOf(const PartsListItem& item) {
  const bool has = !item.properties.empty() && item.properties.front().first == "material";
  return has ? item.properties.front().second : std::string();
}

/// All occurrences that have a visible pixel, with their ancestors.
std::set<int> VisibleOccurrences(const FigureInput& input) {
  const std::set<int> seen(input.ids.ids.begin(), input.ids.ids.end());
  std::set<int> visible;
  for (int occurrence : seen) {
    for (int at = occurrence; at >= 0 && visible.insert(at).second;) at = input.tree.GetModel().occurrences[at].parent;
  }
  return visible;
}

}  // namespace

Figure ComposeFigure(const FigureInput& input) {
  Figure figure;
  figure.parts = ComposeParts(input);
  figure.balloons = ComposeBalloons(input);
  return figure;
}

PartsList ComposePartsList(const OccurrenceTree& tree, const std::vector<ItemState>& items) {
  PartsList list;
  list.source = tree.GetModel().sourceName;
  for (const ItemState& state : items) {
    PartsListItem item;
    item.itemId = std::to_string(state.id);
    item.number = state.number;
    item.quantity = static_cast<int>(state.quantity);
    item.tag = state.tag;
    if (!state.occurrences.empty()) {
      const Product& product = tree.ProductOf(state.occurrences.front());
      item.name = product.name;
      item.properties = PropertiesOf(product);
    }
    for (int occurrence : state.occurrences) item.occurrences.push_back(tree.InstancePath(occurrence));
    list.items.push_back(std::move(item));
  }
  return list;
}

PartsTable ComposeTable(const PartsList& list, const std::string& language, bool withMaterial) {
  const Headings& headings = HeadingsIn(language);
  const bool materials =
      withMaterial && std::any_of(list.items.begin(), list.items.end(),
                                  [](const PartsListItem& item) { return !MaterialOf(item).empty(); });
  PartsTable table;
  table.columns = {
      {headings.number, TextAlign::Right}, {headings.quantity, TextAlign::Right}, {headings.name, TextAlign::Left}};
  if (materials) table.columns.push_back({headings.material, TextAlign::Left});
  for (const PartsListItem& item : list.items) {
    TableRow row{item.itemId, {item.number, std::to_string(item.quantity), item.name}};
    if (materials) row.cells.push_back(MaterialOf(item));
    table.rows.push_back(std::move(row));
  }
  return table;
}

std::vector<Finding> FindHiddenItems(const FigureInput& input) {
  std::set<unsigned> called;
  for (const CalloutState& callout : input.callouts) called.insert(callout.item);
  const std::set<int> visible = VisibleOccurrences(input);
  std::vector<Finding> findings;
  for (const ItemState& item : input.items) {
    const bool seen = std::any_of(item.occurrences.begin(), item.occurrences.end(),
                                  [&](int occurrence) { return visible.count(occurrence) > 0; });
    if (seen || called.count(item.id) == 0) continue;
    const std::string name = item.occurrences.empty() ? "" : input.tree.ProductOf(item.occurrences.front()).name;
    findings.push_back({"item-not-visible", static_cast<int>(item.id),
                        "item " + item.number + " (" + name + "): no part of it can be seen in this view"});
  }
  return findings;
}

}  // namespace zrfigure
