#include "drawing/FigureExport.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <nlohmann/json.hpp>
#include <tuple>

#include "drawing/PartsList.h"
#include "drawing/SvgWriter.h"

namespace zrfigure {
namespace {

std::string Page(double widthMm, double heightMm) {
  Figure figure;
  figure.page.widthMm = widthMm;
  figure.page.heightMm = heightMm;
  figure.balloons = {{"1", "1", {"1"}, BalloonShape::Circle, {100, 100, 180, 180}, {}}};
  return WriteSvg(figure);
}

unsigned BigEndian(const std::string& bytes, std::size_t at) {
  unsigned value = 0;
  for (std::size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(bytes.at(at + i));
  return value;
}

class FigureExportTest : public testing::Test {
protected:
  std::string Pdf(const std::vector<std::string>& pages) {
    std::string pdf;
    EXPECT_TRUE(RenderFigure(pages, FigureFormat::Pdf, {}, pdf, error_)) << error_;
    return pdf;
  }

  std::string error_;
};

TEST_F(FigureExportTest, PngHasThePagesSizeAndResolution) {
  std::string png;
  ASSERT_TRUE(RenderFigure({Page(297, 210)}, FigureFormat::Png, {200}, png, error_)) << error_;
  EXPECT_EQ(BigEndian(png, 16), 2339U);  // 297 mm at 200 dots an inch.
  EXPECT_EQ(BigEndian(png, 20), 1654U);
  const std::size_t physical = png.find("pHYs");
  ASSERT_NE(physical, std::string::npos);
  EXPECT_EQ(BigEndian(png, physical + 4), 7874U);  // Dots a metre.
}

TEST_F(FigureExportTest, PdfHoldsAllPagesInMillimetreSizeAndEqualBytes) {
  ::unsetenv("SOURCE_DATE_EPOCH");
  const std::string first = Pdf({Page(297, 210), Page(210, 297)});
  ::sleep(1);
  EXPECT_EQ(first, Pdf({Page(297, 210), Page(210, 297)}));
  EXPECT_NE(first.find("841.88"), std::string::npos) << "297 mm in points";
  ::setenv("SOURCE_DATE_EPOCH", "86400", 1);
  EXPECT_NE(Pdf({Page(297, 210)}).find("19700102"), std::string::npos);
  ::unsetenv("SOURCE_DATE_EPOCH");
}

TEST_F(FigureExportTest, PdfLinksRowsAndBalloonsOverPages) {
  Figure figure, list;
  for (const char* item : {"1", "2", "3"}) {
    figure.balloons.push_back({item, item, {item}, BalloonShape::Circle, {100, 100, 180, 180}, {}});
  }
  figure.table = list.table = PartsTable{{1000, 100}, 20, 40, {{"Item", TextAlign::Left, 80}}, {}};
  figure.table->rows = {{"1", {"1"}}};
  list.table->rows = {{"2", {"2"}}, {"9", {"9"}}};  // No row for balloon 3, no balloon for row 9.
  const std::string pdf = Pdf({WriteSvg(figure), WriteSvg(list)});
  for (const auto& [target, links] :
       {std::pair{"row-1", 1}, {"row-2", 1}, {"callout-1", 1}, {"callout-2", 1}, {"callout-3", 0}, {"row-9", 0}}) {
    int found = 0;
    const std::string dest = std::string("/Dest (") + target + ")";
    for (std::size_t at = pdf.find(dest); at != std::string::npos; at = pdf.find(dest, at + 1)) ++found;
    EXPECT_EQ(found, links) << target;
  }
}

TEST_F(FigureExportTest, WhatCannotBeRenderedSaysWhy) {
  const char* const noSize = "<svg xmlns=\"http://www.w3.org/2000/svg\"/>";
  const char* const page = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"10mm\" height=\"10mm\"/>";
  using enum FigureFormat;
  const std::tuple<FigureFormat, std::vector<std::string>, double, const char*> exports[] = {
      {Pdf, {}, 100, "no page"},       {Svg, {page, page}, 100, "only PDF"}, {Png, {"<svg"}, 100, "cannot render"},
      {Pdf, {noSize}, 100, "no size"}, {Png, {page}, 1e6, "resolution"},     {Png, {page}, 0, "resolution"}};
  for (const auto& [format, pages, dpi, message] : exports) {
    std::string bytes;
    EXPECT_FALSE(RenderFigure(pages, format, {dpi}, bytes, error_)) << message;
    EXPECT_NE(error_.find(message), std::string::npos) << error_;
    EXPECT_EQ(error_.find('\n'), std::string::npos);
  }
}

PartsList SampleList() {
  return {"pump.stp",
          {{"1", "1", 2, "A", "Bolt, M8 \"long\"", {"/pump/bolt:1", "/pump/bolt:2"}, {{"material", "steel\nzinc"}}},
           {"2", "1.1", 1, "", "Nut", {}, {{"mass", "3,5"}, {"material", "A2"}}}}};
}

TEST_F(FigureExportTest, CsvQuotesWhatNeedsQuoting) {
  EXPECT_EQ(PartsListToCsv(SampleList()),
            "item,quantity,tag,name,material,mass\r\n"
            "1,2,A,\"Bolt, M8 \"\"long\"\"\",\"steel\nzinc\",\r\n"
            "1.1,1,,Nut,A2,\"3,5\"\r\n");
  EXPECT_EQ(PartsListToCsv({}), "item,quantity,tag,name\r\n");
}

TEST_F(FigureExportTest, JsonReadsBackAndSurvivesBadBytes) {
  PartsList list = SampleList();
  list.items[0].name = "Bol\xFF";
  const auto json = nlohmann::json::parse(PartsListToJson(list));
  EXPECT_EQ(json["source"], "pump.stp");
  EXPECT_EQ(json["items"][0]["name"], "Bol\xEF\xBF\xBD");
  EXPECT_EQ(json["items"][0]["occurrences"].size(), 2U);
  EXPECT_EQ(json["items"][1]["properties"]["mass"], "3,5");
  EXPECT_EQ(json["items"][1]["quantity"], 1);
}

}  // namespace
}  // namespace zrfigure
