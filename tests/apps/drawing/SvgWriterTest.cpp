#include "drawing/SvgWriter.h"

#include <gtest/gtest.h>

#include <pugixml.hpp>
#include <set>
#include <tuple>

#include "drawing/SvgReader.h"

namespace zrfigure {
namespace {

Figure SampleFigure() {
  const std::vector<Point2> outline{{300, 300}, {500, 300}, {500, 400}, {300, 300}};
  Figure figure;
  figure.title = "Pump <1> & motor";
  figure.parts = {
      {"7", "2", "Housing \"A\"", {{7, LineClass::Outline, outline}, {7, LineClass::Edge, outline}}, {outline}},
      {"9", "1", "", {}, {}}};
  figure.drawings = {{300, 300, 500, 400}};
  figure.balloons = {{"a", "2", {"2"}, BalloonShape::Circle, {800, 100, 880, 180}, {}},
                     {"b", "1", {"1", "(4x)"}, BalloonShape::Stadium, {800, 400, 900, 520}, {}}};
  figure.balloons[0].leaders = {{{{400, 320}, {810, 160}}, LeaderEnd::Dot, false, "pump/7"},
                                {{{450, 350}, {820, 170}}, LeaderEnd::Arrow, false, ""}};
  figure.balloons[1].leaders = {{{{400, 320}, {800, 460}}, LeaderEnd::Dot, true, ""}};
  figure.table = PartsTable{{1500, 100}, 20, 40, {{"Item", {}, 80}, {"Name", {}, 200}}, {}};
  figure.table->rows = {{"1", {"1", "R&D < part"}}, {"2", {"2"}, false}};
  return figure;
}

pugi::xml_document Parsed(const std::string& svg) {
  pugi::xml_document document;
  EXPECT_TRUE(document.load_string(svg.c_str()));
  return document;
}

pugi::xml_node ById(const pugi::xml_document& document, const std::string& id) {
  return document.find_node([&](pugi::xml_node node) { return node.attribute("id").value() == id; });
}

TEST(SvgWriterTest, ElementsHaveUniqueIdsAndTheirItems) {
  const pugi::xml_document document = Parsed(WriteSvg(SampleFigure()));
  const std::pair<const char*, const char*> expected[] = {
      {"part-7", "2"}, {"callout-b", "1"}, {"leader-a-2", "2"}, {"leader-b-1", "1"}, {"row-1", "1"}};
  for (const auto& [id, item] : expected) EXPECT_STREQ(ById(document, id).attribute("data-item").value(), item) << id;
  std::set<std::string> ids;
  for (const auto& found : document.select_nodes("//@id")) {
    EXPECT_TRUE(ids.insert(found.attribute().value()).second) << found.attribute().value() << " twice";
  }
}

TEST(SvgWriterTest, StylesSayWhatIsWhat) {
  Figure figure = SampleFigure();
  figure.page.widthMm = 420;
  figure.lineWidths = {0.7, 0.35, 0.25};
  figure.balloons[0].lines = {"<b>&\xFF\x02"};
  const std::string svg = WriteSvg(figure);
  const pugi::xml_document document = Parsed(svg);
  EXPECT_STREQ(document.child("svg").attribute("width").value(), "420.00mm");
  const std::tuple<const char*, const char*, const char*> attributes[] = {
      {"//*[@id='part-7']/path[@class='outline']", "stroke-width", "5.60"},
      {"//*[@id='part-7']/path[@class='edge']", "stroke-width", "2.80"},
      {"//*[@id='leader-a-1']/path", "stroke-width", "2.00"},
      {"//*[@id='leader-a-1']/path", "stroke-dasharray", ""},
      {"//*[@id='leader-a-1']/circle", "cx", "400.00"},
      {"//*[@id='leader-a-2']/circle", "cx", ""},
      {"//*[@id='callout-b']", "fill", "#808080"},
      {"//*[@id='callout-b']/rect", "stroke", "#808080"}};
  for (const auto& [path, attribute, value] : attributes) {
    EXPECT_STREQ(document.select_node(path).node().attribute(attribute).value(), value) << path;
  }
  EXPECT_EQ(std::string(ById(document, "leader-a-2").last_child().attribute("d").value()).rfind("M450.00 350.00", 0),
            0U);
  EXPECT_TRUE(ById(document, "leader-b-1").child("path").attribute("stroke-dasharray"));
  EXPECT_STRNE(ById(document, "callout-a").attribute("fill").value(), "#808080");
  EXPECT_STREQ(ById(document, "callout-a").child("text").text().get(), "<b>&\xEF\xBF\xBD\xEF\xBF\xBD");
  EXPECT_STREQ(ById(document, "part-7").child("title").text().get(), "Housing \"A\"");
  const std::size_t halos = svg.find("id=\"leader-halos\"");
  EXPECT_TRUE(svg.find("id=\"part-9\"") < halos && halos < svg.find("id=\"leader-a-1\"")) << "over the drawing only";
  EXPECT_EQ(document.select_nodes("//*[@id='leader-halos']/path").size(), 3U);
}

TEST(SvgWriterTest, EmptyAndDegenerateFiguresAreStillDocuments) {
  EXPECT_TRUE(Parsed(WriteSvg(Figure{})).child("svg"));
  Figure figure = SampleFigure();
  figure.balloons[0].leaders = {{{}, LeaderEnd::Dot, false, ""}, {{{1, 1}, {1, 1}}, LeaderEnd::Arrow, false, ""}};
  figure.table->columns.clear();
  EXPECT_EQ(WriteSvg(figure).find("nan"), std::string::npos);
}

/// Compares what ReadSvg() promises to read.
void ExpectReadBack(const Figure& figure) {
  std::string error;
  const auto read = ReadSvg(WriteSvg(figure), error);
  ASSERT_TRUE(read && read->table && read->balloons.size() == 2 && read->parts.size() == 2) << error;
  EXPECT_EQ(read->page.widthMm, figure.page.widthMm);
  EXPECT_EQ(read->drawings.at(0).maxX, figure.drawings[0].maxX);
  EXPECT_EQ(read->parts[0].area.at(0).size(), 4u);
  for (std::size_t i = 0; i < 2; ++i) {
    const Balloon &back = read->balloons[i], &sent = figure.balloons[i];
    EXPECT_EQ(std::tie(back.id, back.itemId, back.lines), std::tie(sent.id, sent.itemId, sent.lines));
    EXPECT_NEAR(back.box.minX + back.box.maxY, sent.box.minX + sent.box.maxY, 0.02);
    for (std::size_t k = 0; k < sent.leaders.size(); ++k) {
      const Leader &got = back.leaders.at(k), &want = sent.leaders[k];
      EXPECT_EQ(std::tie(got.hidden, got.partId, got.points.front().y),
                std::tie(want.hidden, want.partId, want.points.front().y));
      EXPECT_EQ(got.end, want.hidden ? LeaderEnd::None : want.end);
    }
    const TableRow &row = read->table->rows.at(i), &sentRow = figure.table->rows[i];
    EXPECT_EQ(std::tie(row.cells, row.shown), std::tie(sentRow.cells, sentRow.shown));
    EXPECT_EQ(read->table->RowTop(i), figure.table->RowTop(i));
  }
}

TEST(SvgWriterTest, WhatWasWrittenReadsBack) {
  Figure figure = SampleFigure();
  ExpectReadBack(figure);
  figure.table->rising = true;
  ExpectReadBack(figure);
  std::string error;
  for (const char* other : {"", "<svg", "<html/>", "<svg><g id=\"drawing\"/></svg>"}) {
    EXPECT_FALSE(ReadSvg(other, error)) << other;
    EXPECT_FALSE(error.empty());
  }
}

}  // namespace
}  // namespace zrfigure
