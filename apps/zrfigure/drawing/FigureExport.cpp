#include "drawing/FigureExport.h"

#include <cairo/cairo-pdf.h>
#include <librsvg/rsvg.h>
#include <png.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <csetjmp>
#include <ctime>
#include <map>
#include <memory>
#include <set>

#include "drawing/SvgPath.h"
#include "drawing/SvgReader.h"

namespace zrfigure {
namespace {

constexpr double kMmPerInch = 25.4;
constexpr double kPointsPerInch = 72;

struct HandleRelease {
  void operator()(RsvgHandle* handle) const { g_object_unref(handle); }
};
struct SurfaceRelease {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct ContextRelease {
  void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using Handle = std::unique_ptr<RsvgHandle, HandleRelease>;
using Surface = std::unique_ptr<cairo_surface_t, SurfaceRelease>;
using Context = std::unique_ptr<cairo_t, ContextRelease>;

bool Fail(std::string& error, const std::string& what) {
  error = "cannot render the figure: " + what;
  while (!error.empty() && error.back() == '\n') error.pop_back();
  std::ranges::replace(error, '\n', ' ');
  return false;
}

[[nodiscard]] bool TakeError(GError* failure, std::string& error) {
  const std::string what = failure != nullptr ? failure->message : "unknown reason";
  g_clear_error(&failure);
  return Fail(error, what);
}

/// A parsed SVG page with its size in inches.
struct SvgPage {
  Handle handle;
  double width = 0, height = 0;

  bool Open(const std::string& svg, std::string& error) {
    GError* failure = nullptr;
    GInputStream* stream = g_memory_input_stream_new_from_data(svg.data(), static_cast<gssize>(svg.size()), nullptr);
    // A large assembly's paths exceed the parser's ordinary limits.
    handle.reset(rsvg_handle_new_from_stream_sync(stream, nullptr, RSVG_HANDLE_FLAG_UNLIMITED, nullptr, &failure));
    g_object_unref(stream);
    if (!handle) return TakeError(failure, error);
    gboolean hasWidth = FALSE, hasHeight = FALSE, hasBox = FALSE;
    RsvgLength pageWidth{}, pageHeight{};
    RsvgRectangle box{};
    rsvg_handle_get_intrinsic_dimensions(handle.get(), &hasWidth, &pageWidth, &hasHeight, &pageHeight, &hasBox, &box);
    const bool sized = hasWidth && hasHeight && pageWidth.unit == RSVG_UNIT_MM && pageHeight.unit == RSVG_UNIT_MM;
    if (!sized || pageWidth.length <= 0 || pageHeight.length <= 0) {
      return Fail(error, "the page has no size in millimetres");
    }
    width = pageWidth.length / kMmPerInch;
    height = pageHeight.length / kMmPerInch;
    return true;
  }

  bool Draw(cairo_t* context, double dpi, std::string& error) const {
    const RsvgRectangle viewport{0, 0, width * dpi, height * dpi};
    GError* failure = nullptr;
    if (!rsvg_handle_render_document(handle.get(), context, &viewport, &failure)) return TakeError(failure, error);
    return true;
  }
};

// Opaque pixels in the byte order PNG wants.
std::vector<unsigned char> RgbRows(cairo_surface_t* surface, int width, int height) {
  cairo_surface_flush(surface);
  const unsigned char* data = cairo_image_surface_get_data(surface);
  const std::size_t stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface));
  std::vector<unsigned char> rgb;
  rgb.reserve(static_cast<std::size_t>(width) * height * 3);
  for (int y = 0; y < height; ++y) {
    const auto* row = reinterpret_cast<const std::uint32_t*>(data + y * stride);
    for (int x = 0; x < width; ++x) {
      for (const int shift : {16, 8, 0}) rgb.push_back(static_cast<unsigned char>(row[x] >> shift));
    }
  }
  return rgb;
}

void AppendPng(png_structp png, png_bytep data, png_size_t size) {
  static_cast<std::string*>(png_get_io_ptr(png))->append(reinterpret_cast<const char*>(data), size);
}

struct PngImage {
  std::vector<unsigned char> rgb;
  int width = 0, height = 0;
  double dpi = 0;
};

// libpng reports errors by longjmp: nothing with a destructor may be created between setjmp and the last call.
bool EncodePng(PngImage& image, std::string& bytes) {
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  if (png == nullptr) return false;
  png_infop info = png_create_info_struct(png);
  if (info == nullptr || setjmp(png_jmpbuf(png)) != 0) {
    png_destroy_write_struct(&png, &info);
    return false;
  }
  png_set_write_fn(png, &bytes, AppendPng, nullptr);
  png_set_IHDR(png, info, static_cast<png_uint_32>(image.width), static_cast<png_uint_32>(image.height), 8,
               PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  const auto perMetre = static_cast<png_uint_32>(std::lround(image.dpi * 1000 / kMmPerInch));
  png_set_pHYs(png, info, perMetre, perMetre, PNG_RESOLUTION_METER);
  png_write_info(png, info);
  for (int y = 0; y < image.height; ++y) {
    png_write_row(png, image.rgb.data() + static_cast<std::size_t>(y) * image.width * 3);
  }
  png_write_end(png, info);
  png_destroy_write_struct(&png, &info);
  return true;
}

bool RenderPng(const std::string& svg, double dpi, std::string& bytes, std::string& error) {
  SvgPage page;
  if (!page.Open(svg, error)) return false;
  PngImage image;
  image.dpi = dpi;
  const double width = std::round(page.width * dpi), height = std::round(page.height * dpi);
  constexpr double kMost = 32767;  // Limit of the image surface.
  if (!(width >= 1 && height >= 1 && width <= kMost && height <= kMost)) {
    return Fail(error, "the image would not have between 1 and 32767 pixels a side; choose another resolution");
  }
  image.width = static_cast<int>(width);
  image.height = static_cast<int>(height);
  const Surface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, image.width, image.height));
  const Context context(cairo_create(surface.get()));
  cairo_set_source_rgb(context.get(), 1, 1, 1);
  cairo_paint(context.get());
  if (!page.Draw(context.get(), dpi, error)) return false;
  if (cairo_status(context.get()) != CAIRO_STATUS_SUCCESS) {
    return Fail(error, cairo_status_to_string(cairo_status(context.get())));
  }
  image.rgb = RgbRows(surface.get(), image.width, image.height);
  return EncodePng(image, bytes) || Fail(error, "the PNG library failed");
}

// ISO 8601 of SOURCE_DATE_EPOCH, or of a fixed day: the clock must not show in the bytes.
std::string CreationDate() {
  std::time_t seconds = 946684800;
  if (const char* epoch = std::getenv("SOURCE_DATE_EPOCH")) {
    long long value = 0;
    const char* end = epoch + std::char_traits<char>::length(epoch);
    const auto [stop, failure] = std::from_chars(epoch, end, value);
    if (failure == std::errc() && stop == end && value >= 0) seconds = static_cast<std::time_t>(value);
  }
  std::tm date{};
  gmtime_r(&seconds, &date);
  std::array<char, 32> text{};
  std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &date);
  return text.data();
}

cairo_status_t AppendPdf(void* bytes, const unsigned char* data, unsigned size) {
  static_cast<std::string*>(bytes)->append(reinterpret_cast<const char*>(data), size);
  return CAIRO_STATUS_SUCCESS;
}

/// Links between the rows of the parts list and the balloons, over all pages of a document.
class PageLinks {
public:
  void Add(const std::string& svg) {
    std::string ignored;
    pages_.push_back(ReadSvg(svg, ignored).value_or(Figure()));
    const Figure& page = pages_.back();
    for (const Balloon& balloon : page.balloons) balloonOf_.emplace(balloon.itemId, balloon.id);
    if (!page.table) return;
    for (const TableRow& row : page.table->rows) rows_.insert(row.itemId);
  }

  /// To be called while the page is the context's current one.
  void Draw(std::size_t page, cairo_t* context) const {
    const Figure& figure = pages_[page];
    for (const Balloon& balloon : figure.balloons) {
      Mark(context, "callout-" + balloon.id, balloon.box);
      if (rows_.count(balloon.itemId) > 0) Link(context, "row-" + balloon.itemId, balloon.box);
    }
    if (!figure.table) return;
    const PartsTable& table = *figure.table;
    for (std::size_t i = 0; i < table.rows.size(); ++i) {
      const double top = table.RowTop(i);
      const Box2 box{table.origin.x, top, table.origin.x + table.Width(), top + table.rowHeight};
      Mark(context, "row-" + table.rows[i].itemId, box);
      const auto balloon = balloonOf_.find(table.rows[i].itemId);
      if (balloon != balloonOf_.end()) Link(context, "callout-" + balloon->second, box);
    }
  }

private:
  static constexpr double kPointsPerPx = kPointsPerInch / (kMmPerInch * kPxPerMm);

  static void Mark(cairo_t* context, const std::string& name, const Box2& box) {
    const std::string attributes =
        "name='" + name + "' x=" + SvgNumber(box.minX * kPointsPerPx) + " y=" + SvgNumber(box.minY * kPointsPerPx);
    cairo_tag_begin(context, CAIRO_TAG_DEST, attributes.c_str());
    cairo_tag_end(context, CAIRO_TAG_DEST);
  }

  static void Link(cairo_t* context, const std::string& target, const Box2& box) {
    std::string attributes = "dest='" + target + "' rect=[";
    for (double value : {box.minX, box.minY, box.Width(), box.Height()}) {
      attributes.append(SvgNumber(value * kPointsPerPx)).append(" ");
    }
    cairo_tag_begin(context, CAIRO_TAG_LINK, (attributes + "]").c_str());
    cairo_tag_end(context, CAIRO_TAG_LINK);
  }

  std::vector<Figure> pages_;
  std::map<std::string, std::string> balloonOf_;  ///< First balloon by item.
  std::set<std::string> rows_;
};

bool RenderPdf(const std::vector<std::string>& svgPages, std::string& bytes, std::string& error) {
  PageLinks links;
  for (const std::string& svg : svgPages) links.Add(svg);
  const Surface surface(cairo_pdf_surface_create_for_stream(AppendPdf, &bytes, 1, 1));
  cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATE_DATE, CreationDate().c_str());
  const Context context(cairo_create(surface.get()));
  for (std::size_t i = 0; i < svgPages.size(); ++i) {
    SvgPage page;
    if (!page.Open(svgPages[i], error)) return false;
    cairo_pdf_surface_set_size(surface.get(), page.width * kPointsPerInch, page.height * kPointsPerInch);
    if (!page.Draw(context.get(), kPointsPerInch, error)) return false;
    links.Draw(i, context.get());
    cairo_show_page(context.get());
  }
  cairo_surface_finish(surface.get());
  const cairo_status_t status = cairo_surface_status(surface.get());
  return status == CAIRO_STATUS_SUCCESS || Fail(error, cairo_status_to_string(status));
}

}  // namespace

bool FormatOfPath(const std::filesystem::path& path, FigureFormat& format, std::string& error) {
  std::string extension = path.extension().string();
  std::ranges::transform(extension, extension.begin(), [](unsigned char c) { return std::tolower(c); });
  if (extension == ".svg") {
    format = FigureFormat::Svg;
  } else if (extension == ".pdf") {
    format = FigureFormat::Pdf;
  } else if (extension == ".png") {
    format = FigureFormat::Png;
  } else {
    error = "cannot tell the format of '" + path.string() + "': the name must end in .svg, .pdf or .png";
    return false;
  }
  return true;
}

bool RenderFigure(const std::vector<std::string>& svgPages, FigureFormat format, const ExportOptions& options,
                  std::string& bytes, std::string& error) {
  bytes.clear();
  if (svgPages.empty()) return Fail(error, "it has no page");
  if (format == FigureFormat::Pdf) return RenderPdf(svgPages, bytes, error);
  if (svgPages.size() > 1) return Fail(error, "only PDF holds several pages in a file");
  if (format == FigureFormat::Png) return RenderPng(svgPages.front(), options.pngDpi, bytes, error);
  bytes = svgPages.front();
  return true;
}

}  // namespace zrfigure
