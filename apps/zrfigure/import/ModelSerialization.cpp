#include "import/ModelSerialization.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

namespace zrfigure {
namespace {

constexpr std::uint32_t kMark = 0x4D465A52;
constexpr std::uint32_t kVersion = 1;

class Writer {
public:
  template <typename T>
  void Value(const T& value) {
    static_assert(std::is_trivially_copyable_v<T>);
    bytes_.append(reinterpret_cast<const char*>(&value), sizeof value);
  }

  void Text(const std::string& text) {
    Value(static_cast<std::uint64_t>(text.size()));
    bytes_ += text;
  }

  /// Elements as one block of memory.
  template <typename T>
  void Block(const std::vector<T>& elements) {
    static_assert(std::is_trivially_copyable_v<T>);
    Value(static_cast<std::uint64_t>(elements.size()));
    bytes_.append(reinterpret_cast<const char*>(elements.data()), elements.size() * sizeof(T));
  }

  template <typename Range, typename Write>
  void Each(const Range& elements, const Write& write) {
    Value(static_cast<std::uint64_t>(elements.size()));
    for (const auto& element : elements) write(element);
  }

  std::string Take() { return std::move(bytes_); }

private:
  std::string bytes_;
};

/// Reads what Writer wrote. After the first value that does not fit, everything reads as empty and IsGood() is false.
class Reader {
public:
  explicit Reader(std::string_view bytes) : rest_(bytes) {}

  [[nodiscard]] bool IsGood() const { return isGood_; }
  [[nodiscard]] bool IsAtEnd() const { return rest_.empty(); }

  template <typename T>
  void Value(T& value) {
    static_assert(std::is_trivially_copyable_v<T>);
    const std::string_view bytes = Bytes(sizeof value);
    if (isGood_) std::memcpy(&value, bytes.data(), sizeof value);
  }

  void Flag(bool& flag) {
    std::uint8_t value = 0;
    Value(value);
    flag = value == 1;
    isGood_ = isGood_ && value <= 1;
  }

  void Text(std::string& text) { text = Bytes(Count(1)); }

  template <typename T>
  void Block(std::vector<T>& elements) {
    static_assert(std::is_trivially_copyable_v<T>);
    const std::size_t count = Count(sizeof(T));
    const std::string_view bytes = Bytes(count * sizeof(T));
    if (!isGood_) return;
    elements.resize(count);
    if (count > 0) std::memcpy(elements.data(), bytes.data(), bytes.size());
  }

  template <typename T, typename Read>
  void Each(std::vector<T>& elements, const Read& read) {
    for (std::size_t count = Count(1); isGood_ && count > 0; --count) read(elements.emplace_back());
  }

  /// A count of elements that take `bytesEach` at least; no count can exceed what is left, so none makes memory
  /// overflow.
  std::size_t Count(std::size_t bytesEach) {
    std::uint64_t count = 0;
    Value(count);
    isGood_ = isGood_ && count <= rest_.size() / bytesEach;
    return isGood_ ? static_cast<std::size_t>(count) : 0;
  }

private:
  std::string_view Bytes(std::size_t count) {
    isGood_ = isGood_ && count <= rest_.size();
    if (!isGood_) return {};
    const std::string_view bytes = rest_.substr(0, count);
    rest_.remove_prefix(count);
    return bytes;
  }

  std::string_view rest_;
  bool isGood_ = true;
};

void WriteProduct(Writer& out, const Product& product) {
  out.Text(product.name);
  out.Value(static_cast<std::uint8_t>(product.isAssembly));
  out.Each(product.properties, [&out](const auto& property) {
    out.Text(property.first);
    out.Text(property.second);
  });
  out.Block(product.mesh.positions);
  out.Block(product.mesh.normals);
  out.Block(product.mesh.triangles);
  out.Each(product.mesh.sharpEdges, [&out](const Polyline& line) { out.Block(line); });
}

void ReadProduct(Reader& in, Product& product) {
  in.Text(product.name);
  in.Flag(product.isAssembly);
  for (std::size_t count = in.Count(1); in.IsGood() && count > 0; --count) {
    std::string key;
    in.Text(key);
    in.Text(product.properties[key]);
  }
  in.Block(product.mesh.positions);
  in.Block(product.mesh.normals);
  in.Block(product.mesh.triangles);
  in.Each(product.mesh.sharpEdges, [&in](Polyline& line) { in.Block(line); });
}

void WriteOccurrence(Writer& out, const Occurrence& occurrence) {
  out.Value(occurrence.parent);
  out.Value(occurrence.product);
  out.Text(occurrence.name);
  out.Value(occurrence.toWorld);
}

void ReadOccurrence(Reader& in, Occurrence& occurrence) {
  in.Value(occurrence.parent);
  in.Value(occurrence.product);
  in.Text(occurrence.name);
  in.Value(occurrence.toWorld);
}

bool IsSound(const Mesh& mesh) {
  const std::size_t count = mesh.positions.size();
  return mesh.normals.size() == count &&
         std::all_of(mesh.triangles.begin(), mesh.triangles.end(),
                     [count](const auto& t) { return t[0] < count && t[1] < count && t[2] < count; });
}

bool IsSound(const Model& model) {
  for (const Product& product : model.products) {
    if (!IsSound(product.mesh)) return false;
  }
  for (std::size_t i = 0; i < model.occurrences.size(); ++i) {
    const Occurrence& occurrence = model.occurrences[i];
    const bool hasParent = i == 0 ? occurrence.parent == -1 : occurrence.parent >= 0;
    if (!hasParent || occurrence.parent >= static_cast<int>(i)) return false;
    if (occurrence.product < 0 || static_cast<std::size_t>(occurrence.product) >= model.products.size()) return false;
  }
  return true;
}

}  // namespace

std::string SerializeModel(const Model& model) {
  Writer out;
  out.Value(kMark);
  out.Value(kVersion);
  out.Text(model.sourceName);
  out.Each(model.products, [&out](const Product& product) { WriteProduct(out, product); });
  out.Each(model.occurrences, [&out](const Occurrence& occurrence) { WriteOccurrence(out, occurrence); });
  out.Each(model.warnings, [&out](const std::string& warning) { out.Text(warning); });
  return out.Take();
}

std::optional<Model> DeserializeModel(std::string_view bytes) {
  Reader in(bytes);
  std::uint32_t mark = 0;
  std::uint32_t version = 0;
  in.Value(mark);
  in.Value(version);
  if (mark != kMark || version != kVersion) return std::nullopt;
  Model model;
  in.Text(model.sourceName);
  in.Each(model.products, [&in](Product& product) { ReadProduct(in, product); });
  in.Each(model.occurrences, [&in](Occurrence& occurrence) { ReadOccurrence(in, occurrence); });
  in.Each(model.warnings, [&in](std::string& warning) { in.Text(warning); });
  if (!in.IsGood() || !in.IsAtEnd() || !IsSound(model)) return std::nullopt;
  return model;
}

}  // namespace zrfigure
