#pragma once
// A figure as plain values, ready to be written: page, line art, balloons, parts table. All positions and sizes in page
// pixels, kPxPerMm to the millimetre, origin in the page's top left corner, y down.

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "drawing/LineArt.h"

namespace zrfigure {

constexpr double kPxPerMm = 8;

/// Line widths in millimetres: one line group of the drawing standards.
struct LineWidths {
  double outline = 0.5;
  double edge = 0.25;
  double leader = 0.18;
};

struct Page {
  double widthMm = 297;
  double heightMm = 210;
  double marginMm = 10;
  bool frame = false;  ///< A rectangle along the margin.

  [[nodiscard]] int WidthPx() const { return static_cast<int>(std::lround(widthMm * kPxPerMm)); }
  [[nodiscard]] int HeightPx() const { return static_cast<int>(std::lround(heightMm * kPxPerMm)); }
  /// The page less its margins.
  [[nodiscard]] Box2 Inside() const {
    const double margin = marginMm * kPxPerMm;
    return {margin, margin, widthMm * kPxPerMm - margin, heightMm * kPxPerMm - margin};
  }
};

/// One occurrence of the picture with its lines.
struct FigurePart {
  std::string id;      ///< Stable name of the occurrence, unique in the figure; letters, digits, '-', '_', '.', '/'.
  std::string itemId;  ///< The parts-list row it belongs to; empty for none.
  std::string name;    ///< Shown as a tooltip; may be empty.
  std::vector<ArtLine> lines;
  /// Closed borders of the visible area, filled even-odd; lets a viewer point at the part. May be empty.
  std::vector<std::vector<Point2>> area;
};

enum class LeaderEnd { Dot, Arrow, None };

struct Leader {
  std::vector<Point2> points;  ///< From the anchor on the part to the edge of the balloon; at least two.
  LeaderEnd end = LeaderEnd::Dot;
  bool hidden = false;  ///< Points at something that cannot be seen: drawn dashed, without dot or arrow.
  std::string partId;   ///< FigurePart::id it points at, or what ids of the parts of an assembly begin with.
};

enum class BalloonShape {
  Circle,
  Stadium,  ///< A box with fully rounded ends when one line high, rounded corners when higher.
  Bare,     ///< Text without a border.
};

struct Balloon {
  std::string id;                  ///< Stable and unique in the figure; see FigurePart::id for the letters.
  std::string itemId;              ///< The parts-list row it refers to; empty for none.
  std::vector<std::string> lines;  ///< The label, a string a text line, UTF-8.
  BalloonShape shape = BalloonShape::Circle;
  Box2 box;  ///< Outer edge of the border.
  std::vector<Leader> leaders;

  /// Whether it points at nothing that can be seen; drawn in grey then.
  [[nodiscard]] bool IsDimmed() const {
    return !leaders.empty() && std::ranges::all_of(leaders, [](const Leader& leader) { return leader.hidden; });
  }
};

/// Free space either side of a cell's text, as a multiple of the lettering height.
constexpr double kCellPadding = 0.6;

enum class TextAlign { Left, Centre, Right };

struct TableColumn {
  std::string title;
  TextAlign align = TextAlign::Left;
  double width = 0;  ///< Pixels, filled by MeasureTable().
};

struct TableRow {
  std::string itemId;
  std::vector<std::string> cells;  ///< One a column; missing ones are empty.
  bool shown = true;               ///< False for an item of which the figure shows nothing.
};

/// The ruled parts list on a page.
struct PartsTable {
  Point2 origin;               ///< Top left corner.
  double letteringHeight = 0;  ///< Of capitals, pixels, filled by MeasureTable().
  double rowHeight = 0;        ///< Pixels, filled by MeasureTable().
  std::vector<TableColumn> columns;
  std::vector<TableRow> rows;
  bool rising = false;  ///< The headings stand at the bottom and the rows rise from them.

  [[nodiscard]] double Width() const;
  [[nodiscard]] double Height() const;  ///< Header and rows.
  [[nodiscard]] double HeaderTop() const { return origin.y + (rising ? Height() - rowHeight : 0); }
  [[nodiscard]] double RowTop(std::size_t row) const {
    return origin.y + rowHeight * static_cast<double>(rising ? rows.size() - 1 - row : row + 1);
  }
};

/// Everything on one page.
struct Figure {
  std::string title;            ///< The document's title; not drawn.
  std::string language = "en";  ///< Of what is written round the drawing.
  Page page;
  LineWidths lineWidths;
  std::vector<Box2> drawings;  ///< Boxes of the model, one a picture of it.
  std::vector<FigurePart> parts;
  std::vector<Balloon> balloons;
  std::optional<PartsTable> table;
};

}  // namespace zrfigure
