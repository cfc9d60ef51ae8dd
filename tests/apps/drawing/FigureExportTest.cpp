#include "drawing/FigureExport.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "drawing/AtomicFile.h"
#include "drawing/PartsList.h"
#include "drawing/SvgWriter.h"

namespace zrfigure {
namespace {

namespace fs = std::filesystem;

class FigureExportTest : public testing::Test {
protected:
  void SetUp() override {
    std::string name = (fs::temp_directory_path() / "zrfigure-test-XXXXXX").string();
    ASSERT_NE(::mkdtemp(name.data()), nullptr);
    folder_ = name;
  }
  void TearDown() override { fs::remove_all(folder_); }

  [[nodiscard]] std::size_t Files() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()));
  }
  static std::string Read(const fs::path& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
  }
  static std::string Page(double widthMm, double heightMm) {
    Figure figure;
    figure.page.widthMm = widthMm;
    figure.page.heightMm = heightMm;
    figure.balloons = {{"1", "1", {"1"}, BalloonShape::Circle, {100, 100, 180, 180}, {}}};
    return WriteSvg(figure);
  }
  static unsigned BigEndian(const std::string& bytes, std::size_t at) {
    unsigned value = 0;
    for (std::size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(bytes.at(at + i));
    return value;
  }

  fs::path folder_;
  std::vector<fs::path> written_;
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
  std::string first, second, dated;
  ::unsetenv("SOURCE_DATE_EPOCH");
  ASSERT_TRUE(RenderFigure({Page(297, 210), Page(210, 297)}, FigureFormat::Pdf, {}, first, error_)) << error_;
  ::sleep(1);
  ASSERT_TRUE(RenderFigure({Page(297, 210), Page(210, 297)}, FigureFormat::Pdf, {}, second, error_)) << error_;
  EXPECT_EQ(first, second);
  EXPECT_NE(first.find("841.88"), std::string::npos) << "297 mm in points";
  ::setenv("SOURCE_DATE_EPOCH", "86400", 1);
  ASSERT_TRUE(RenderFigure({Page(297, 210)}, FigureFormat::Pdf, {}, dated, error_)) << error_;
  ::unsetenv("SOURCE_DATE_EPOCH");
  EXPECT_NE(dated.find("19700102"), std::string::npos);
}

TEST_F(FigureExportTest, PdfLinksRowsAndBalloonsOverPages) {
  Figure figure, list;
  for (const char* item : {"1", "2", "3"}) {
    figure.balloons.push_back({item, item, {item}, BalloonShape::Circle, {100, 100, 180, 180}, {}});
  }
  figure.table = list.table = PartsTable{{1000, 100}, 20, 40, {{"Item", TextAlign::Left, 80}}, {}};
  figure.table->rows = {{"1", {"1"}}};
  list.table->rows = {{"2", {"2"}}, {"9", {"9"}}};  // No row for balloon 3, no balloon for row 9.
  std::string pdf;
  ASSERT_TRUE(RenderFigure({WriteSvg(figure), WriteSvg(list)}, FigureFormat::Pdf, {}, pdf, error_)) << error_;
  for (const auto& [target, links] :
       {std::pair{"row-1", 1}, {"row-2", 1}, {"callout-1", 1}, {"callout-2", 1}, {"callout-3", 0}, {"row-9", 0}}) {
    int found = 0;
    const std::string dest = std::string("/Dest (") + target + ")";
    for (std::size_t at = pdf.find(dest); at != std::string::npos; at = pdf.find(dest, at + 1)) ++found;
    EXPECT_EQ(found, links) << target;
  }
}

TEST_F(FigureExportTest, FurtherPagesOfSvgGetNumberedNames) {
  ASSERT_TRUE(WriteFigure(folder_ / "fig.SVG", {Page(297, 210), Page(210, 297)}, {}, written_, error_)) << error_;
  ASSERT_EQ(written_.size(), 2U);
  EXPECT_EQ(written_[1].filename(), "fig-2.SVG");
  EXPECT_EQ(Read(written_[1]), Page(210, 297));
  EXPECT_EQ(Files(), 2U);
}

struct BadExport {
  std::string name, file;
  std::vector<std::string> pages;
  double dpi;
  std::string message;
};

class BadFigureExportTest : public FigureExportTest, public testing::WithParamInterface<BadExport> {};

TEST_P(BadFigureExportTest, LeavesNothingBehindAndSaysWhy) {
  EXPECT_FALSE(WriteFigure(folder_ / GetParam().file, GetParam().pages, {GetParam().dpi}, written_, error_));
  EXPECT_NE(error_.find(GetParam().message), std::string::npos) << error_;
  EXPECT_EQ(error_.find('\n'), std::string::npos);
  EXPECT_EQ(Files(), 0U);
}

constexpr const char* kNoSize = "<svg xmlns=\"http://www.w3.org/2000/svg\"/>";
constexpr const char* kPage = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"10mm\" height=\"10mm\"/>";
INSTANTIATE_TEST_SUITE_P(Cases, BadFigureExportTest,
                         testing::Values(BadExport{"Extension", "a.jpg", {kPage}, 100, ".svg, .pdf or .png"},
                                         BadExport{"NoExtension", "a", {kPage}, 100, ".svg, .pdf or .png"},
                                         BadExport{"NoPages", "a.pdf", {}, 100, "no page"},
                                         BadExport{"BrokenSvg", "a.png", {"<svg"}, 100, "cannot render"},
                                         BadExport{"SecondPageBroken", "a.png", {kPage, "<svg"}, 100, "cannot render"},
                                         BadExport{"NoSize", "a.pdf", {kNoSize}, 100, "no size"},
                                         BadExport{"HugeResolution", "a.png", {kPage}, 1e6, "resolution"},
                                         BadExport{"NoResolution", "a.png", {kPage}, 0, "resolution"},
                                         BadExport{"MissingFolder", "no/such/a.svg", {kPage}, 100, "no/such/a.svg"}),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(FigureExportTest, FailedWriteKeepsTheOldFile) {
  const fs::path occupied = folder_ / "figure.svg";
  fs::create_directories(occupied / "full");  // A folder in the way: the rename fails after the data was written.
  EXPECT_FALSE(WriteFileAtomically(occupied, "new", error_));
  EXPECT_NE(error_.find(occupied.string()), std::string::npos);
  EXPECT_EQ(Files(), 1U);
  const fs::path file = folder_ / "list.csv";
  ASSERT_TRUE(WriteFileAtomically(file, "old", error_));
  ASSERT_TRUE(WriteFileAtomically(file, std::string_view("n\0w", 3), error_));
  EXPECT_EQ(Read(file).size(), 3U);
  EXPECT_EQ(Files(), 2U);
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

TEST_F(FigureExportTest, PartsListGoesByExtension) {
  ASSERT_TRUE(WritePartsList(folder_ / "a.CSV", SampleList(), error_)) << error_;
  ASSERT_TRUE(WritePartsList(folder_ / "a.json", SampleList(), error_)) << error_;
  EXPECT_EQ(Read(folder_ / "a.CSV"), PartsListToCsv(SampleList()));
  EXPECT_FALSE(WritePartsList(folder_ / "a.txt", SampleList(), error_));
  EXPECT_NE(error_.find(".csv or .json"), std::string::npos);
  EXPECT_EQ(Files(), 2U);
}

}  // namespace
}  // namespace zrfigure
