#include "drawing/FigureExport.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <nlohmann/json.hpp>
#include <tuple>

#include "drawing/PartsList.h"
#include "drawing/SvgWriter.h"

namespace zrfigure {
namespace {

unsigned BigEndian(const std::string& bytes, std::size_t at) {
  unsigned value = 0;
  for (std::size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(bytes.at(at + i));
  return value;
}

TEST(FigureExportTest, PngHasThePagesSizeAndResolution) {
  std::string png, error;
  ASSERT_TRUE(RenderFigure({WriteSvg(Figure())}, FigureFormat::Png, {200}, png, error)) << error;
  EXPECT_EQ(BigEndian(png, 16), 2339U);  // 297 mm at 200 dots an inch.
  EXPECT_EQ(BigEndian(png, 20), 1654U);
  const std::size_t physical = png.find("pHYs");
  ASSERT_NE(physical, std::string::npos);
  EXPECT_EQ(BigEndian(png, physical + 4), 7874U);  // Dots a metre.
}

TEST(FigureExportTest, PdfLinksRowsAndBalloonsOverPages) {
  Figure figure, list;
  for (const char* item : {"1", "2", "3"})
    figure.balloons.push_back({item, item, {item}, {}, {100, 100, 180, 180}, {}});
  figure.table = list.table = PartsTable{{1000, 100}, 20, 40, {{"Item", TextAlign::Left, 80}}, {}};
  figure.table->rows = {{"1", {"1"}}};
  list.table->rows = {{"2", {"2"}}, {"9", {"9"}}};  // No row for balloon 3, no balloon for row 9.
  ::setenv("SOURCE_DATE_EPOCH", "86400", 1);
  std::string pdf, error;
  ASSERT_TRUE(RenderFigure({WriteSvg(figure), WriteSvg(list)}, FigureFormat::Pdf, {}, pdf, error)) << error;
  ::unsetenv("SOURCE_DATE_EPOCH");
  EXPECT_NE(pdf.find("19700102"), std::string::npos);
  EXPECT_NE(pdf.find("841.88"), std::string::npos) << "297 mm in points";
  for (const auto& [target, links] :
       {std::pair{"row-1", 1}, {"row-2", 1}, {"callout-1", 1}, {"callout-2", 1}, {"callout-3", 0}, {"row-9", 0}}) {
    int found = 0;
    const std::string dest = std::string("/Dest (") + target + ")";
    for (std::size_t at = pdf.find(dest); at != std::string::npos; at = pdf.find(dest, at + 1)) ++found;
    EXPECT_EQ(found, links) << target;
  }
}

TEST(FigureExportTest, WhatCannotBeRenderedSaysWhy) {
  const std::string noSize = "<svg xmlns=\"http://www.w3.org/2000/svg\"/>", page = WriteSvg(Figure());
  using enum FigureFormat;
  const std::tuple<FigureFormat, std::vector<std::string>, double, const char*> exports[] = {
      {Pdf, {}, 100, "no page"},       {Svg, {page, page}, 100, "only PDF"}, {Png, {"<svg"}, 100, "cannot render"},
      {Pdf, {noSize}, 100, "no size"}, {Png, {page}, 1e6, "resolution"},     {Png, {page}, 0, "resolution"}};
  for (const auto& [format, pages, dpi, message] : exports) {
    std::string bytes, error;
    EXPECT_FALSE(RenderFigure(pages, format, {dpi}, bytes, error)) << message;
    EXPECT_NE(error.find(message), std::string::npos) << error;
    EXPECT_EQ(error.find('\n'), std::string::npos);
  }
}

TEST(FigureExportTest, PartsListsKeepEveryText) {
  PartsList list{
      "pump.stp",
      {{"1", "1", 2, "A", "Bolt, M8 \"long\"", {"/pump/bolt:1", "/pump/bolt:2"}, {{"material", "steel\nzinc"}}},
       {"2", "1.1", 1, "", "Nut", {}, {{"mass", "3,5"}, {"material", "A2"}}}}};
  EXPECT_EQ(PartsListToCsv(list),
            "item,quantity,tag,name,material,mass\r\n"
            "1,2,A,\"Bolt, M8 \"\"long\"\"\",\"steel\nzinc\",\r\n"
            "1.1,1,,Nut,A2,\"3,5\"\r\n");
  EXPECT_EQ(PartsListToCsv({}), "item,quantity,tag,name\r\n");
  list.items[0].name = "Bol\xFF";
  const auto json = nlohmann::json::parse(PartsListToJson(list));
  EXPECT_EQ(json["items"][0]["name"], "Bol\xEF\xBF\xBD");
  EXPECT_EQ(json["items"][0]["occurrences"].size(), 2U);
  EXPECT_EQ(json["items"][1]["properties"]["mass"], "3,5");
}

}  // namespace
}  // namespace zrfigure
