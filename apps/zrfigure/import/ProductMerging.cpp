#include "import/ProductMerging.h"

#include <algorithm>
#include <numeric>
#include <tuple>
#include <utility>

namespace zrfigure {
namespace {

bool IsLess(const Mesh& a, const Mesh& b) {
  return std::tie(a.positions, a.triangles, a.sharpEdges) < std::tie(b.positions, b.triangles, b.sharpEdges);
}

std::size_t ToIndex(int value) {
  return static_cast<std::size_t>(value);
}

/// Products of the first occurrence's children, by product; equal lists mean equal assemblies once their parts are
/// merged.
std::vector<std::vector<int>> ChildrenByProduct(const Model& model) {
  std::vector<int> firstOccurrence(model.products.size(), -1);
  std::vector<std::vector<int>> children(model.products.size());
  for (std::size_t i = 0; i < model.occurrences.size(); ++i) {
    const Occurrence& occurrence = model.occurrences[i];
    int& first = firstOccurrence[ToIndex(occurrence.product)];
    if (first < 0) first = static_cast<int>(i);
    if (occurrence.parent < 0) continue;
    const int owner = model.occurrences[ToIndex(occurrence.parent)].product;
    if (firstOccurrence[ToIndex(owner)] == occurrence.parent) children[ToIndex(owner)].push_back(occurrence.product);
  }
  return children;
}

/// Replaces product numbers everywhere and drops products no occurrence has, keeping their order.
void Renumber(Model& model, const std::vector<int>& replacement) {
  std::vector<bool> isUsed(model.products.size(), false);
  for (Occurrence& occurrence : model.occurrences) {
    occurrence.product = replacement[ToIndex(occurrence.product)];
    isUsed[ToIndex(occurrence.product)] = true;
  }
  std::vector<int> number(model.products.size(), -1);
  std::vector<Product> kept;
  for (std::size_t i = 0; i < model.products.size(); ++i) {
    if (!isUsed[i]) continue;
    number[i] = static_cast<int>(kept.size());
    kept.push_back(std::move(model.products[i]));
  }
  for (Occurrence& occurrence : model.occurrences) occurrence.product = number[ToIndex(occurrence.product)];
  model.products = std::move(kept);
}

std::vector<int> Identity(std::size_t count) {
  std::vector<int> numbers(count);
  std::iota(numbers.begin(), numbers.end(), 0);
  return numbers;
}

void MergeParts(Model& model) {
  std::vector<int> order = Identity(model.products.size());
  const auto isLess = [&model](int a, int b) {
    const Product& first = model.products[ToIndex(a)];
    const Product& second = model.products[ToIndex(b)];
    if (first.isAssembly != second.isAssembly) return first.isAssembly < second.isAssembly;
    if (first.name != second.name) return first.name < second.name;
    return IsLess(first.mesh, second.mesh);
  };
  std::stable_sort(order.begin(), order.end(), isLess);
  std::vector<int> replacement = Identity(model.products.size());
  for (std::size_t i = 1; i < order.size(); ++i) {
    const bool isEqual = !model.products[ToIndex(order[i])].isAssembly && !isLess(order[i - 1], order[i]);
    if (isEqual) replacement[ToIndex(order[i])] = replacement[ToIndex(order[i - 1])];
  }
  Renumber(model, replacement);
}

/// One level of equal assemblies. True when something was merged: then their parents may have become equal.
bool MergeAssembliesOnce(Model& model) {
  const std::vector<std::vector<int>> children = ChildrenByProduct(model);
  std::vector<int> order = Identity(model.products.size());
  const auto key = [&](int i) { return std::tie(model.products[ToIndex(i)].name, children[ToIndex(i)]); };
  order.erase(std::remove_if(order.begin(), order.end(), [&](int i) { return !model.products[ToIndex(i)].isAssembly; }),
              order.end());
  std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return key(a) < key(b); });
  std::vector<int> replacement = Identity(model.products.size());
  bool isMerged = false;
  for (std::size_t i = 1; i < order.size(); ++i) {
    if (key(order[i - 1]) != key(order[i])) continue;
    replacement[ToIndex(order[i])] = replacement[ToIndex(order[i - 1])];
    isMerged = true;
  }
  if (isMerged) Renumber(model, replacement);
  return isMerged;
}

/// For every occurrence whether a part with triangles is in it. Parents stand before children, so one pass from behind.
std::vector<bool> OccurrencesWithTriangles(const Model& model) {
  std::vector<bool> isFilled(model.occurrences.size(), false);
  for (std::size_t i = model.occurrences.size(); i-- > 0;) {
    const Occurrence& occurrence = model.occurrences[i];
    if (!model.products[ToIndex(occurrence.product)].mesh.triangles.empty()) isFilled[i] = true;
    if (isFilled[i] && occurrence.parent >= 0) isFilled[ToIndex(occurrence.parent)] = true;
  }
  return isFilled;
}

void WarnOfEmptyProducts(Model& model) {
  std::vector<int> count(model.products.size(), 0);
  for (const Occurrence& occurrence : model.occurrences) ++count[ToIndex(occurrence.product)];
  for (std::size_t i = 0; i < model.products.size(); ++i) {
    const Product& product = model.products[i];
    if (product.isAssembly || !product.mesh.triangles.empty()) continue;
    model.warnings.push_back("part '" + product.name + "' has no faces and is left out" +
                             (count[i] == 1 ? "" : " (" + std::to_string(count[i]) + " occurrences)"));
  }
}

}  // namespace

void MergeEqualProducts(Model& model) {
  MergeParts(model);
  while (MergeAssembliesOnce(model)) {
  }
}

void DropEmptyParts(Model& model) {
  WarnOfEmptyProducts(model);
  const std::vector<bool> isFilled = OccurrencesWithTriangles(model);
  std::vector<int> number(model.occurrences.size(), -1);
  std::vector<Occurrence> kept;
  for (std::size_t i = 0; i < model.occurrences.size(); ++i) {
    if (!isFilled[i]) continue;
    Occurrence& occurrence = model.occurrences[i];
    if (occurrence.parent >= 0) occurrence.parent = number[ToIndex(occurrence.parent)];
    number[i] = static_cast<int>(kept.size());
    kept.push_back(std::move(occurrence));
  }
  model.occurrences = std::move(kept);
  Renumber(model, Identity(model.products.size()));
}

}  // namespace zrfigure
