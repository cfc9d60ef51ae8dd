#include "drawing/TextMeasure.h"

#include <librsvg/rsvg.h>

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "drawing/Utf8.h"

namespace zrfigure {
namespace {

constexpr double kReferenceSize = 1000;

struct HandleRelease {
  void operator()(RsvgHandle* handle) const { g_object_unref(handle); }
};

std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '&') {
      escaped += "&amp;";
    } else if (c == '<') {
      escaped += "&lt;";
    } else {
      escaped += c;
    }
  }
  return escaped;
}

// Width and height of the ink of a line of text at kReferenceSize, from the renderer that will draw it: the one way to
// have its shaping and its choice of fonts for characters that the lettering font lacks.
std::pair<double, double> InkSize(const std::string& text) {
  std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"1000\" height=\"1000\">";
  svg.append("<text id=\"t\" font-family=\"").append(kFontFamily).append("\" font-size=\"1000\">");
  svg.append(Escaped(XmlSafeText(text))).append("</text></svg>");
  const std::unique_ptr<RsvgHandle, HandleRelease> handle(
      rsvg_handle_new_from_data(reinterpret_cast<const guint8*>(svg.data()), svg.size(), nullptr));
  RsvgRectangle ink{}, logical{};
  if (handle) rsvg_handle_get_geometry_for_element(handle.get(), "#t", &ink, &logical, nullptr);
  return {ink.width, ink.height};
}

}  // namespace

/// Advance widths at kReferenceSize, by text.
struct TextMeasure::Cache {
  std::map<std::string, double, std::less<>> widths;
  double brackets = InkSize("HH").first;
};

TextMeasure::TextMeasure(double letteringHeightPx) : cache_(std::make_unique<Cache>()), capHeight_(letteringHeightPx) {
  const double height = InkSize("H").second;
  fontSize_ = height > 0 ? capHeight_ * kReferenceSize / height : capHeight_;
}
TextMeasure::~TextMeasure() = default;
TextMeasure::TextMeasure(TextMeasure&&) noexcept = default;
TextMeasure& TextMeasure::operator=(TextMeasure&&) noexcept = default;

// Between two letters, so that spaces at the ends and the letters' side bearings count.
double TextMeasure::Width(std::string_view text) const {
  if (text.empty()) return 0;
  auto found = cache_->widths.find(text);
  if (found == cache_->widths.end()) {
    const double advance = InkSize("H" + std::string(text) + "H").first - cache_->brackets;
    found = cache_->widths.emplace(text, std::max(0.0, advance)).first;
  }
  return found->second * fontSize_ / kReferenceSize;
}

// Bisection over the characters: a longer text is wider.
std::string TextMeasure::Shortened(std::string_view text, double maxWidth) const {
  constexpr double kRounding = 1e-6;
  if (Width(text) <= maxWidth + kRounding) return std::string(text);
  static const std::string kDots = "...";
  std::vector<std::size_t> ends{0};
  while (ends.back() < text.size()) {
    ends.push_back(ends.back() + std::max<std::size_t>(1, Utf8CharacterLength(text.substr(ends.back()))));
  }
  const auto tooWide = [&](std::size_t end) { return Width(std::string(text.substr(0, end)) + kDots) > maxWidth; };
  const auto first = std::ranges::partition_point(ends, [&](std::size_t end) { return !tooWide(end); });
  return std::string(text.substr(0, first == ends.begin() ? 0 : *(first - 1))) + kDots;
}

}  // namespace zrfigure
