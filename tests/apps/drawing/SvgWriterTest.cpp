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
  figure.parts = {{"7",
                   "2",
                   "Housing \"A\"",
                   {{7, LineClass::Outline, outline}, {7, LineClass::Edge, {{310, 310}, {320, 330}}}},
                   {outline}},
                  {"9", "1", "", {}, {}}};
  const Leader dot{{{400, 320}, {810, 160}}, LeaderEnd::Dot, false, ""},
      arrow{{{450, 350}, {820, 170}}, LeaderEnd::Arrow, false, ""},
      hidden{{{400, 320}, {800, 460}}, LeaderEnd::Dot, true, ""};
  figure.balloons = {{"a", "2", {"2"}, BalloonShape::Circle, {800, 100, 880, 180}, {dot, arrow}},
                     {"b", "1", {"1", "(4x)"}, BalloonShape::Stadium, {800, 400, 900, 520}, {hidden}}};
  figure.table = PartsTable{{1500, 100},
                            20,
                            40,
                            {{"Item", TextAlign::Centre, 80}, {"Name", TextAlign::Left, 200}},
                            {{"1", {"1", "R&D < part"}}, {"2", {"2"}}}};
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

TEST(SvgWriterTest, EverythingHasItsIdAndItem) {
  const pugi::xml_document document = Parsed(WriteSvg(SampleFigure()));
  const std::pair<const char*, const char*> expected[] = {{"part-7", "2"},     {"part-9", "1"},     {"callout-a", "2"},
                                                          {"callout-b", "1"},  {"leader-a-1", "2"}, {"leader-a-2", "2"},
                                                          {"leader-b-1", "1"}, {"row-1", "1"},      {"row-2", "2"}};
  for (const auto& [id, item] : expected) EXPECT_STREQ(ById(document, id).attribute("data-item").value(), item) << id;
  std::set<std::string> ids;
  for (const auto& found : document.select_nodes("//@id")) {
    EXPECT_TRUE(ids.insert(found.attribute().value()).second) << found.attribute().value() << " twice";
  }
}

TEST(SvgWriterTest, PageIsMillimetresAndLinesHaveTheWidthsOfTheirClassInPixels) {
  Figure figure = SampleFigure();
  figure.page.widthMm = 420;
  figure.page.heightMm = 297;
  figure.lineWidths = {0.7, 0.35, 0.25};
  const pugi::xml_document document = Parsed(WriteSvg(figure));
  EXPECT_STREQ(document.child("svg").attribute("width").value(), "420.00mm");
  EXPECT_STREQ(document.child("svg").attribute("viewBox").value(), "0 0 3360.00 2376.00");
  const auto width = [](pugi::xml_node path) { return std::string(path.attribute("stroke-width").value()); };
  const pugi::xml_node part = ById(document, "part-7");
  EXPECT_EQ(width(part.find_child_by_attribute("path", "class", "outline")), "5.60");
  EXPECT_EQ(width(part.find_child_by_attribute("path", "class", "edge")), "2.80");
  EXPECT_EQ(width(ById(document, "leader-a-1").child("path")), "2.00");
}

TEST(SvgWriterTest, LeadersEndInDotOrArrowAndHiddenOnesAreDashedAndGrey) {
  const pugi::xml_document document = Parsed(WriteSvg(SampleFigure()));
  const pugi::xml_node dot = ById(document, "leader-a-1"), arrow = ById(document, "leader-a-2"),
                       hidden = ById(document, "leader-b-1");
  EXPECT_STREQ(dot.child("circle").attribute("cx").value(), "400.00");
  EXPECT_FALSE(arrow.child("circle") || hidden.child("circle"));
  EXPECT_EQ(std::string(arrow.last_child().attribute("d").value()).rfind("M450.00 350.00", 0), 0U);
  EXPECT_TRUE(hidden.child("path").attribute("stroke-dasharray"));
  EXPECT_FALSE(dot.child("path").attribute("stroke-dasharray"));
  for (const auto& [id, grey] : {std::pair{"callout-a", false}, {"callout-b", true}}) {
    EXPECT_EQ(std::string(ById(document, id).attribute("fill").value()) == "#808080", grey) << id;
    EXPECT_EQ(std::string(ById(document, id).child("rect").attribute("stroke").value()) == "#808080", grey) << id;
  }
}

TEST(SvgWriterTest, HalosLieOverTheDrawingAndUnderEveryLeader) {
  const std::string svg = WriteSvg(SampleFigure());
  const std::size_t halos = svg.find("id=\"leader-halos\"");
  EXPECT_LT(svg.find("id=\"part-9\""), halos);
  EXPECT_GT(svg.find("id=\"leader-a-1\""), halos);
  EXPECT_EQ(Parsed(svg).select_nodes("//*[@id='leader-halos']/path").size(), 3U);
}

TEST(SvgWriterTest, TextSurvivesMarkupAndBadBytes) {
  Figure figure = SampleFigure();
  figure.balloons[0].lines = {"<b>&\xFF\x02"};
  figure.parts[0].name = "\xC3\x84hre";
  const pugi::xml_document document = Parsed(WriteSvg(figure));
  EXPECT_STREQ(ById(document, "callout-a").child("text").text().get(), "<b>&\xEF\xBF\xBD\xEF\xBF\xBD");
  EXPECT_STREQ(ById(document, "part-7").child("title").text().get(), "\xC3\x84hre");
  EXPECT_STREQ(ById(document, "row-1").last_child().text().get(), "R&D < part");
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
  ASSERT_TRUE(read && read->table) << error;
  EXPECT_EQ(read->page.widthMm, figure.page.widthMm);
  ASSERT_EQ(std::tuple(read->drawings.size(), read->parts.size(), read->balloons.size()),
            std::tuple(figure.drawings.size(), figure.parts.size(), figure.balloons.size()));
  EXPECT_EQ(read->drawings[0].maxX, figure.drawings[0].maxX);
  EXPECT_EQ(read->parts[0].area.at(0).size(), 4u);
  for (std::size_t i = 0; i < figure.balloons.size(); ++i) {
    const Balloon &back = read->balloons[i], &sent = figure.balloons[i];
    EXPECT_EQ(std::tie(back.id, back.itemId, back.lines), std::tie(sent.id, sent.itemId, sent.lines));
    EXPECT_NEAR(back.box.minX, sent.box.minX, 0.02);
    EXPECT_NEAR(back.box.maxY, sent.box.maxY, 0.02);
    ASSERT_EQ(back.leaders.size(), sent.leaders.size());
    for (std::size_t k = 0; k < sent.leaders.size(); ++k) {
      const Leader &got = back.leaders[k], &want = sent.leaders[k];
      EXPECT_EQ(std::tie(got.hidden, got.partId, got.points.front().y),
                std::tie(want.hidden, want.partId, want.points.front().y));
      EXPECT_EQ(got.end, want.hidden ? LeaderEnd::None : want.end);
    }
  }
  for (std::size_t i = 0; i < figure.table->rows.size(); ++i) {
    const TableRow &back = read->table->rows.at(i), &sent = figure.table->rows[i];
    EXPECT_EQ(std::tie(back.cells, back.shown), std::tie(sent.cells, sent.shown));
    EXPECT_EQ(read->table->RowTop(i), figure.table->RowTop(i));
  }
}

TEST(SvgWriterTest, WhatWasWrittenReadsBack) {
  Figure figure = SampleFigure();
  figure.drawings = {{300, 300, 500, 400}};
  figure.balloons[0].leaders[0].partId = "pump/7";
  figure.table->rows[1].shown = false;
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
