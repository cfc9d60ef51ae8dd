#pragma once
// Page sizes by name or in millimetres.

#include <optional>
#include <string>
#include <string_view>

namespace zrfigure {

enum class Orientation { Landscape, Portrait };

struct PageFormat {
  double widthMm = 297;
  double heightMm = 210;
};

/// Reads A4, A3, A2 (lying or, with Portrait, standing) or "WIDTHxHEIGHT" in millimetres, 50 to 2000 each. A size in
/// millimetres is turned only when an orientation is given. \return nothing with `error` set for anything else.
[[nodiscard]] std::optional<PageFormat> ParsePageFormat(std::string_view text, std::optional<Orientation> orientation,
                                                        std::string& error);

/// Reads a finite decimal number that takes up the whole text, in every locale with a point.
[[nodiscard]] std::optional<double> ParseNumber(std::string_view text);

}  // namespace zrfigure
