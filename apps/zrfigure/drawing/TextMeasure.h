#pragma once
// Sizes of text as it will be drawn, so that balloons and table cells can be made to fit. One thread at a time;
// remembers what it measured.

#include <memory>
#include <string>
#include <string_view>

namespace zrfigure {

/// Lettering of figures: ISO 3098 when the font is installed, else the system's sans-serif.
constexpr const char* kFontFamily = "osifont, sans-serif";
/// Height of capital letters in millimetres.
constexpr double kLetteringHeightMm = 3.5;

class TextMeasure {
public:
  /// \param letteringHeightPx height of capital letters in page pixels.
  explicit TextMeasure(double letteringHeightPx);
  ~TextMeasure();
  TextMeasure(TextMeasure&&) noexcept;
  TextMeasure& operator=(TextMeasure&&) noexcept;

  /// Advance width of a line of UTF-8 text in pixels; 0 for empty text, invalid UTF-8 is measured up to the first bad
  /// byte.
  [[nodiscard]] double Width(std::string_view text) const;
  /// Height of capital letters in pixels.
  [[nodiscard]] double CapHeight() const { return capHeight_; }
  /// Distance of two baselines in pixels.
  [[nodiscard]] double LineHeight() const { return 1.6 * capHeight_; }
  /// The value for `font-size` that gives capitals of CapHeight().
  [[nodiscard]] double FontSize() const { return fontSize_; }
  /// `text`, shortened with three dots when it is wider than `maxWidth` pixels.
  [[nodiscard]] std::string Shortened(std::string_view text, double maxWidth) const;

private:
  struct Cache;
  std::unique_ptr<Cache> cache_;
  double capHeight_;
  double fontSize_;
};

}  // namespace zrfigure
