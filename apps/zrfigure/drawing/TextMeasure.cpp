#include "drawing/TextMeasure.h"

#include <cairo/cairo.h>

#include <utility>

#include "drawing/Utf8.h"

namespace zrfigure {
namespace {

// One name: cairo takes a list for the name of a single font. Fontconfig answers an unknown name with its sans-serif,
// as the list in kFontFamily does.
constexpr const char* kMeasuredFamily = "osifont";
// Measured large and without hinting, so that widths scale as an SVG renderer's do.
constexpr double kReferenceSize = 1000;

struct SurfaceRelease {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct ContextRelease {
  void operator()(cairo_t* context) const { cairo_destroy(context); }
};

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

// Cairo refuses text with a bad byte and stays refused; what is measured is what will be drawn, with the bad byte
// replaced.
double TextMeasure::Width(std::string_view text) const {
  return text.empty() ? 0 : impl_->Extents(XmlSafeText(text)).x_advance * fontSize_ / kReferenceSize;
}

std::string TextMeasure::Shortened(std::string_view text, double maxWidth) const {
  if (Width(text) <= maxWidth) return std::string(text);
  static const std::string kEllipsis = "\xE2\x80\xA6";
  std::string shortened;
  while (true) {
    const std::string_view rest = text.substr(shortened.size());
    const std::size_t length = std::max<std::size_t>(1, Utf8CharacterLength(rest));
    const std::string longer = shortened + std::string(rest.substr(0, length));
    if (rest.empty() || Width(longer + kEllipsis) > maxWidth) return shortened + kEllipsis;
    shortened = longer;
  }
}

}  // namespace zrfigure
