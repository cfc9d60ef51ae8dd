#include "drawing/TextMeasure.h"

#include <cairo/cairo.h>

#include <utility>

namespace zrfigure {
namespace {

// The families are tried by fontconfig in this order; the first name is what the SVG asks for first, too.
constexpr const char* kMeasuredFamily = "osifont,sans-serif";
// Measured large and without hinting, so that widths scale as an SVG renderer's do.
constexpr double kReferenceSize = 1000;

struct SurfaceRelease {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct ContextRelease {
  void operator()(cairo_t* context) const { cairo_destroy(context); }
};

// Length of the valid UTF-8 at the start of `text`. Cairo refuses a whole string for one bad byte, and stays refused.
std::size_t ValidPrefix(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size()) {
    const auto lead = static_cast<unsigned char>(text[at]);
    const std::size_t length = lead < 0x80                   ? 1
                               : lead >= 0xF0 && lead < 0xF5 ? 4
                               : lead >= 0xE0 && lead < 0xF0 ? 3
                               : lead >= 0xC2 && lead < 0xE0 ? 2
                                                             : 0;
    if (length == 0 || lead == 0 || at + length > text.size()) break;
    bool whole = true;
    for (std::size_t i = 1; i < length; ++i) whole = whole && (static_cast<unsigned char>(text[at + i]) & 0xC0) == 0x80;
    const auto second = static_cast<unsigned char>(length > 2 ? text[at + 1] : 0);
    const bool surrogateOrOverlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second >= 0xA0) ||
                                     (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second >= 0x90);
    if (!whole || surrogateOrOverlong) break;
    at += length;
  }
  return at;
}

}  // namespace

struct TextMeasure::Impl {
  std::unique_ptr<cairo_surface_t, SurfaceRelease> surface{cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1)};
  std::unique_ptr<cairo_t, ContextRelease> context{cairo_create(surface.get())};

  Impl() {
    cairo_select_font_face(context.get(), kMeasuredFamily, CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_set_font_options(context.get(), options);
    cairo_font_options_destroy(options);
    cairo_set_font_size(context.get(), kReferenceSize);
  }

  [[nodiscard]] cairo_text_extents_t Extents(const std::string& text) const {
    cairo_text_extents_t extents;
    cairo_text_extents(context.get(), text.c_str(), &extents);
    return extents;
  }
};

TextMeasure::TextMeasure(double letteringHeightPx) : impl_(std::make_unique<Impl>()), capHeight_(letteringHeightPx) {
  fontSize_ = capHeight_ * kReferenceSize / impl_->Extents("H").height;
}
TextMeasure::~TextMeasure() = default;
TextMeasure::TextMeasure(TextMeasure&&) noexcept = default;
TextMeasure& TextMeasure::operator=(TextMeasure&&) noexcept = default;

double TextMeasure::Width(std::string_view text) const {
  const std::string valid(text.substr(0, ValidPrefix(text)));
  return valid.empty() ? 0 : impl_->Extents(valid).x_advance * fontSize_ / kReferenceSize;
}

std::string TextMeasure::Shortened(std::string_view text, double maxWidth) const {
  if (Width(text) <= maxWidth) return std::string(text);
  static const std::string kEllipsis = "\u2026";
  std::size_t length = ValidPrefix(text);
  while (length > 0) {
    do --length;
    while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80);
    std::string shortened = std::string(text.substr(0, length)) + kEllipsis;
    if (Width(shortened) <= maxWidth) return shortened;
  }
  return kEllipsis;
}

}  // namespace zrfigure
