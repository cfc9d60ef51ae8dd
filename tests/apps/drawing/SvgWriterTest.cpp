#include "drawing/SvgWriter.h"

#include <gtest/gtest.h>

#include <pugixml.hpp>
#include <set>
#include <tuple>

#include "drawing/SvgReader.h"

namespace zrfigure {
namespace {

Figure SampleFigure() {
  Figure figure;
  figure.title = "Pump <1> & motor";
  figure.parts = {{"7",
                   "2",
                   "Housing \"A\"",
                   {{7, LineClass::Outline, {{300, 300}, {500, 300}, {500, 400}, {300, 300}}},
                    {7, LineClass::Edge, {{310, 310}, {320, 330}}}},
                   {{{300, 300}, {500, 300}, {500, 400}, {300, 300}}}},
                  {"9", "1", "", {}, {}}};
  Balloon dot{
      "a",
      "2",
      {"2"},
      BalloonShape::Circle,
      {800, 100, 880, 180},
      {{{{400, 320}, {810, 160}}, LeaderEnd::Dot, false, ""}, {{{450, 350}, {820, 170}}, LeaderEnd::Arrow, false, ""}}};
  Balloon hidden{"b",
                 "1",
                 {"1", "(4x)"},
                 BalloonShape::Stadium,
                 {800, 400, 900, 520},
                 {{{{400, 320}, {800, 460}}, LeaderEnd::Dot, true, ""}}};
  figure.balloons = {dot, hidden};
  PartsTable table{{1500, 100},
                   20,
                   40,
                   {{"Item", TextAlign::Centre, 80}, {"Name", TextAlign::Left, 200}},
                   {{"1", {"1", "R&D < part"}}, {"2", {"2"}}}};
  figure.table = table;
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
  std::multiset<std::string> ids;
  for (const auto& found : document.select_nodes("//@id")) ids.insert(found.attribute().value());
  EXPECT_EQ(ids.size(), std::set<std::string>(ids.begin(), ids.end()).size()) << "ids are unique";
}

TEST(SvgWriterTest, PageIsMillimetresAndUnitsArePixels) {
  Figure figure = SampleFigure();
  figure.page.widthMm = 420;
  figure.page.heightMm = 297;
  const pugi::xml_document document = Parsed(WriteSvg(figure));
  EXPECT_STREQ(document.child("svg").attribute("width").value(), "420.00mm");
  EXPECT_STREQ(document.child("svg").attribute("viewBox").value(), "0 0 3360.00 2376.00");
}

TEST(SvgWriterTest, LinesHaveTheWidthsOfTheirClass) {
  Figure figure = SampleFigure();
  figure.lineWidths = {0.7, 0.35, 0.25};
  const pugi::xml_document document = Parsed(WriteSvg(figure));
  const pugi::xml_node part = ById(document, "part-7");
  const auto width = [&](const char* kind) {
    return std::string(part.find_child_by_attribute("path", "class", kind).attribute("stroke-width").value());
  };
  EXPECT_EQ(width("outline"), "5.60");
  EXPECT_EQ(width("edge"), "2.80");
  EXPECT_STREQ(ById(document, "leader-a-1").child("path").attribute("stroke-width").value(), "2.00");
}

TEST(SvgWriterTest, LeadersEndInDotOrArrowAndHiddenOnesAreDashedOnly) {
  const pugi::xml_document document = Parsed(WriteSvg(SampleFigure()));
  const pugi::xml_node dot = ById(document, "leader-a-1"), arrow = ById(document, "leader-a-2");
  const pugi::xml_node hidden = ById(document, "leader-b-1");
  EXPECT_STREQ(dot.child("circle").attribute("cx").value(), "400.00");
  EXPECT_FALSE(arrow.child("circle"));
  EXPECT_EQ(std::string(arrow.last_child().attribute("d").value()).rfind("M450.00 350.00", 0), 0U);
  EXPECT_FALSE(hidden.child("circle"));
  EXPECT_TRUE(hidden.child("path").attribute("stroke-dasharray"));
  EXPECT_FALSE(dot.child("path").attribute("stroke-dasharray"));
}

TEST(SvgWriterTest, HalosLieOverTheDrawingAndUnderEveryLeader) {
  const std::string svg = WriteSvg(SampleFigure());
  const std::size_t halos = svg.find("id=\"leader-halos\"");
  EXPECT_LT(svg.find("id=\"part-9\""), halos);
  EXPECT_GT(svg.find("id=\"leader-a-1\""), halos);
  const pugi::xml_document document = Parsed(svg);
  const auto paths = ById(document, "leader-halos").children("path");
  EXPECT_EQ(std::distance(paths.begin(), paths.end()), 3);
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
  ASSERT_TRUE(read) << error;
  EXPECT_EQ(read->page.widthMm, figure.page.widthMm);
  ASSERT_EQ(read->drawings.size(), figure.drawings.size());
  EXPECT_EQ(read->drawings[0].maxX, figure.drawings[0].maxX);
  ASSERT_EQ(read->parts.size(), figure.parts.size());
  ASSERT_EQ(read->parts[0].area.size(), 1u);
  EXPECT_EQ(read->parts[0].area[0].size(), 4u);
  ASSERT_EQ(read->balloons.size(), figure.balloons.size());
  for (std::size_t i = 0; i < figure.balloons.size(); ++i) {
    const Balloon &back = read->balloons[i], &sent = figure.balloons[i];
    EXPECT_EQ(std::tuple(back.id, back.itemId, back.lines), std::tuple(sent.id, sent.itemId, sent.lines));
    EXPECT_NEAR(back.box.minX, sent.box.minX, 0.02);
    EXPECT_NEAR(back.box.maxY, sent.box.maxY, 0.02);
    ASSERT_EQ(back.leaders.size(), sent.leaders.size());
    for (std::size_t k = 0; k < sent.leaders.size(); ++k) {
      EXPECT_EQ(back.leaders[k].hidden, sent.leaders[k].hidden);
      EXPECT_EQ(back.leaders[k].partId, sent.leaders[k].partId);
      EXPECT_EQ(back.leaders[k].end, sent.leaders[k].hidden ? LeaderEnd::None : sent.leaders[k].end);
      EXPECT_EQ(back.leaders[k].points.front().y, sent.leaders[k].points.front().y);
    }
  }
  ASSERT_TRUE(read->table);
  for (std::size_t i = 0; i < figure.table->rows.size(); ++i) {
    EXPECT_EQ(read->table->rows[i].cells, figure.table->rows[i].cells);
    EXPECT_EQ(read->table->rows[i].shown, figure.table->rows[i].shown);
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

TEST(SvgWriterTest, WhollyHiddenCalloutIsGrey) {
  const pugi::xml_document document = Parsed(WriteSvg(SampleFigure()));
  for (const auto& [id, grey] : {std::pair{"callout-a", false}, std::pair{"callout-b", true}}) {
    EXPECT_EQ(std::string(ById(document, id).attribute("fill").value()) == "#808080", grey) << id;
    EXPECT_EQ(std::string(ById(document, id).child("rect").attribute("stroke").value()) == "#808080", grey) << id;
  }
}

TEST(SvgWriterTest, SameFigureGivesTheSameBytes) {
  EXPECT_EQ(WriteSvg(SampleFigure()), WriteSvg(SampleFigure()));
}

}  // namespace
}  // namespace zrfigure
