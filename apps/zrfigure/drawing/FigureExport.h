#pragma once
// Figures as bytes: SVG as it is, PNG and PDF rendered from that SVG.

#include <filesystem>
#include <string>
#include <vector>

namespace zrfigure {

enum class FigureFormat { Svg, Pdf, Png };

/// By the extension of the path, upper or lower case. \return false with `error` set for any other extension.
[[nodiscard]] bool FormatOfPath(const std::filesystem::path& path, FigureFormat& format, std::string& error);

struct ExportOptions {
  double pngDpi = 200;
};

/// Renders an SVG document. PDF pages have the document's size in millimetres; the creation date is SOURCE_DATE_EPOCH,
/// or fixed when that is not set, so that equal pages give equal bytes. `pages` of a PNG must be one.
[[nodiscard]] bool RenderFigure(const std::vector<std::string>& svgPages, FigureFormat format,
                                const ExportOptions& options, std::string& bytes, std::string& error);

}  // namespace zrfigure
