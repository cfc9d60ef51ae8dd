#include "commands/PageFormat.h"

#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace zrfigure {
namespace {

constexpr double kMinSideMm = 50;
constexpr double kMaxSideMm = 2000;

struct NamedFormat {
  std::string_view name;
  PageFormat landscape;
};

constexpr std::array<NamedFormat, 3> kFormats{{{"A4", {297, 210}}, {"A3", {420, 297}}, {"A2", {594, 420}}}};

PageFormat Turned(PageFormat format, Orientation orientation) {
  const bool standing = format.heightMm > format.widthMm;
  if (standing != (orientation == Orientation::Portrait)) std::swap(format.widthMm, format.heightMm);
  return format;
}

bool IsUsableSide(const std::optional<double>& side) {
  return side && *side >= kMinSideMm && *side <= kMaxSideMm;
}

}  // namespace

std::optional<double> ParseNumber(std::string_view text) {
  double value = 0;
  const auto [end, code] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (code != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) return std::nullopt;
  return value;
}

std::optional<PageFormat> ParsePageFormat(std::string_view text, std::optional<Orientation> orientation,
                                          std::string& error) {
  for (const NamedFormat& format : kFormats) {
    if (format.name == text) return Turned(format.landscape, orientation.value_or(Orientation::Landscape));
  }
  const std::size_t separator = text.find('x');
  if (separator != std::string_view::npos) {
    const auto width = ParseNumber(text.substr(0, separator));
    const auto height = ParseNumber(text.substr(separator + 1));
    if (IsUsableSide(width) && IsUsableSide(height)) {
      const PageFormat format{*width, *height};
      return orientation ? Turned(format, *orientation) : format;
    }
  }
  error = "'" + std::string(text) + "' is not a page: use A4, A3, A2 or WIDTHxHEIGHT in mm, 50 to 2000 each";
  return std::nullopt;
}

}  // namespace zrfigure
