#include "commands/FigureComposer.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <utility>

#include "commands/BalloonComposer.h"
#include "drawing/VisibleArea.h"

namespace zrfigure {
namespace {

struct Headings {
  const char* language;
  const char* number;
  const char* quantity;
  const char* name;
  const char* material;
  const char* tag;
};

constexpr Headings kHeadings[] = {{"en", "Item", "Qty", "Name", "Material", "Tag"},
                                  {"de", "Pos.", "Menge", "Benennung", "Werkstoff", "Kennzeichen"},
                                  {"fr", "Rep.", "Qté", "Désignation", "Matière", "Étiquette"},
                                  {"ja", "番号", "数量", "名称", "材質", "タグ"}};

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

std::string WithoutOddLetters(std::string name) {
  for (char& c : name) {
    const bool fits = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-' ||
                      c == '_' || c == '.' || c == '/';
    if (!fits) c = '_';
  }
  return name;
}

std::vector<FigurePart> ComposeParts(const FigureInput& input, const std::vector<std::string>& ids) {
  const std::map<int, unsigned> rows = RowsByOccurrence(input.items);
  std::map<int, std::vector<std::vector<Point2>>> areas = TraceVisibleAreas(input.ids);
  std::vector<FigurePart> parts;
  std::map<int, std::size_t> indexOf;
  for (int leaf : input.tree.Leaves()) {
    indexOf[leaf] = parts.size();
    FigurePart part;
    part.id = ids[leaf];
    part.itemId = RowOf(input.tree, rows, leaf);
    part.name = input.tree.ProductOf(leaf).name;
    part.area = std::move(areas[leaf]);
    parts.push_back(std::move(part));
  }
  for (const ArtLine& line : input.lines) {
    const auto found = indexOf.find(line.occurrence);
    if (found != indexOf.end()) parts[found->second].lines.push_back(line);
  }
  std::erase_if(parts, [](const FigurePart& part) { return part.lines.empty() && part.area.empty(); });
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
  std::set<int> visible;
  int previous = IdBuffer::kBackground;
  for (const int occurrence : input.ids.ids) {
    if (occurrence == std::exchange(previous, occurrence)) continue;  // neighbouring pixels mostly show the same part
    for (int at = occurrence; at >= 0 && visible.insert(at).second;) at = input.tree.GetModel().occurrences[at].parent;
  }
  return visible;
}

}  // namespace

std::vector<std::string> MakePartIds(const OccurrenceTree& tree) {
  std::vector<std::string> ids;
  std::set<std::string> used;
  for (const Occurrence& occurrence : tree.GetModel().occurrences) {
    std::string path = occurrence.parent < 0 ? std::string() : ids[occurrence.parent] + "/";
    path += WithoutOddLetters(occurrence.name);
    std::string id = path;
    for (int number = 2; !used.insert(id).second; ++number) id = path + "." + std::to_string(number);
    ids.push_back(std::move(id));
  }
  return ids;
}

Figure ComposeFigure(const std::vector<FigureInput>& pictures) {
  Figure figure;
  std::vector<std::string> ids = pictures.empty() ? std::vector<std::string>() : MakePartIds(pictures.front().tree);
  const std::vector<std::string> plainIds = ids;
  for (std::size_t i = 0; i < pictures.size(); ++i) {
    const FigureInput& input = pictures[i];
    if (i > 0) {
      for (std::size_t k = 0; k < ids.size(); ++k) ids[k] = std::to_string(i + 1) + "/" + plainIds[k];
    }
    figure.drawings.push_back(ProjectedBox(input.tree.GetModel(), input.tree.Leaves(), input.view));
    std::ranges::move(ComposeParts(input, ids), std::back_inserter(figure.parts));
    std::ranges::move(ComposeBalloons(input, ids), std::back_inserter(figure.balloons));
  }
  NameBalloons(figure.balloons);
  return figure;
}

Figure ComposeFigure(const FigureInput& input) {
  return ComposeFigure(std::vector<FigureInput>{input});
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
    TableRow row{item.itemId, {item.number, std::to_string(item.quantity), item.name}, item.shown};
    if (materials) row.cells.push_back(MaterialOf(item));
    table.rows.push_back(std::move(row));
  }
  return table;
}

PartsTable ComposeFullTable(const PartsList& list, const std::string& language) {
  const Headings& headings = HeadingsIn(language);
  const bool tags = std::ranges::any_of(list.items, [](const PartsListItem& item) { return !item.tag.empty(); });
  const std::vector<std::string> properties = PropertyNames(list);
  PartsTable table;
  table.columns = {{headings.number, TextAlign::Right}, {headings.quantity, TextAlign::Right}};
  if (tags) table.columns.push_back({headings.tag});
  table.columns.push_back({headings.name});
  for (const std::string& name : properties) table.columns.push_back({name == "material" ? headings.material : name});
  for (const PartsListItem& item : list.items) {
    TableRow row{item.itemId, {item.number, std::to_string(item.quantity)}, item.shown};
    if (tags) row.cells.push_back(item.tag);
    row.cells.push_back(item.name);
    for (const std::string& name : properties) row.cells.push_back(PropertyOf(item, name));
    table.rows.push_back(std::move(row));
  }
  return table;
}

std::vector<HiddenItem> FindHiddenItems(const std::vector<FigureInput>& pictures) {
  std::vector<HiddenItem> hidden;
  std::set<unsigned> called;
  std::set<int> visible;
  for (const FigureInput& picture : pictures) {
    for (const CalloutState& callout : picture.callouts) called.insert(callout.item);
    visible.merge(VisibleOccurrences(picture));
  }
  for (const ItemState& item : pictures.back().items) {
    const bool seen = std::any_of(item.occurrences.begin(), item.occurrences.end(),
                                  [&](int occurrence) { return visible.count(occurrence) > 0; });
    if (seen) continue;
    const OccurrenceTree& tree = pictures.back().tree;
    const std::string name = item.occurrences.empty() ? "" : tree.ProductOf(item.occurrences.front()).name;
    hidden.push_back({{"item-not-visible", static_cast<int>(item.id),
                       "item " + item.number + " (" + name + "): no part of it can be seen in this figure"},
                      called.count(item.id) > 0});
  }
  return hidden;
}

}  // namespace zrfigure
