// The pictures are the SVG pages as they are; style and script are files of their own beside this one, built in as
// text.
#include "drawing/HtmlWriter.h"

#include <sstream>

#include <pugixml.hpp>

#include "drawing/HtmlTexts.h"
#include "drawing/SvgPath.h"
#include "drawing/SvgWriter.h"
#include "drawing/WebAssets.h"

namespace zrfigure {

namespace {

constexpr double kMargin = 3 * kPxPerMm;

void Extend(Box2& area, const Box2& box) {
  area.Add({box.minX, box.minY});
  area.Add({box.maxX, box.maxY});
}

/// What is drawn on the page apart from the list; empty when there is nothing.
Box2 DrawnArea(const Figure& page) {
  Box2 area;
  for (const Box2& drawing : page.drawings) Extend(area, drawing);
  for (const Balloon& balloon : page.balloons) Extend(area, balloon.box);
  return area;
}

/// Empty elements get an end tag: HTML does not know the short form.
std::string Markup(const pugi::xml_node& node) {
  std::ostringstream stream;
  node.print(stream, "", pugi::format_raw | pugi::format_no_empty_element_tags);
  return stream.str();
}

std::string Picture(Figure page, const Box2& area) {
  page.table.reset();
  page.page.frame = false;
  pugi::xml_document document;
  const std::string svg = WriteSvg(page);
  static_cast<void>(document.load_string(svg.c_str()));
  pugi::xml_node root = document.child("svg");
  root.remove_attribute("width");
  root.remove_attribute("height");
  const std::string view = SvgNumber(area.minX - kMargin) + ' ' + SvgNumber(area.minY - kMargin) + ' ' +
                           SvgNumber(area.Width() + 2 * kMargin) + ' ' + SvgNumber(area.Height() + 2 * kMargin);
  root.attribute("viewBox").set_value(view.c_str());
  return Markup(root);
}

const char* ClassOf(TextAlign align) {
  switch (align) {
    case TextAlign::Right:
      return "right";
    case TextAlign::Centre:
      return "centre";
    case TextAlign::Left:
      break;
  }
  return "left";
}

void AddCell(pugi::xml_node row, const char* kind, const TableColumn& column, const std::string& text) {
  pugi::xml_node cell = row.append_child(kind);
  cell.append_attribute("class") = ClassOf(column.align);
  cell.text() = text.c_str();
}

void AddRows(pugi::xml_node body, const PartsTable& list) {
  for (const TableRow& row : list.rows) {
    pugi::xml_node node = body.append_child("tr");
    node.append_attribute("data-item") = row.itemId.c_str();
    node.append_attribute("tabindex") = "0";
    node.append_attribute("aria-selected") = "false";
    if (!row.shown) node.append_attribute("class") = "unseen";
    for (std::size_t i = 0; i < list.columns.size(); ++i) {
      AddCell(node, "td", list.columns[i], i < row.cells.size() ? row.cells[i] : std::string());
    }
  }
}

/// One table of the lists of all pages.
std::string ListOf(const std::vector<const PartsTable*>& lists) {
  pugi::xml_document document;
  pugi::xml_node table = document.append_child("table");
  table.append_attribute("role") = "grid";
  pugi::xml_node body;
  for (const PartsTable* list : lists) {
    if (!body) {
      pugi::xml_node head = table.append_child("thead").append_child("tr");
      for (const TableColumn& column : list->columns) AddCell(head, "th", column, column.title);
      body = table.append_child("tbody");
    }
    AddRows(body, *list);
  }
  return Markup(table);
}

std::string Escaped(const std::string& text) {
  pugi::xml_document document;
  document.append_child(pugi::node_pcdata).set_value(text.c_str());
  return Markup(document);
}

/// `pictures` may be empty.
std::string PageOf(const std::string& title, const HtmlTexts& texts, const std::string& pictures,
                   const std::vector<const PartsTable*>& lists) {
  const std::string search = texts.search, heading = Escaped(title);
  std::string html =
      std::string("<!DOCTYPE html>\n<html lang=\"") + texts.language + "\">\n<head>\n<meta charset=\"utf-8\">\n";
  html += "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>" + heading +
          "</title>\n<style>\n";
  html += kFigureStyle;
  html += "</style>\n</head>\n<body>\n<main>\n";
  if (!pictures.empty()) html += "<section class=\"sheets\">\n" + pictures + "</section>\n";
  html += "<aside>\n<h1>" + heading + "</h1>\n";
  html += "<input type=\"search\" placeholder=\"" + search + "\" aria-label=\"" + search + "\">\n";
  html += std::string("<output data-count=\"") + texts.count + "\"></output>\n" + ListOf(lists) + '\n';
  html += std::string("<p class=\"help\">") + (pictures.empty() ? texts.listHelp : texts.help) + "</p>\n";
  html += "</aside>\n</main>\n<script>\n";
  html += kFigureScript;
  html += "</script>\n</body>\n</html>\n";
  return html;
}

}  // namespace

std::string WriteHtml(const std::vector<Figure>& pages) {
  std::string pictures;
  std::vector<const PartsTable*> lists;
  for (const Figure& page : pages) {
    const Box2 area = DrawnArea(page);
    if (!area.Empty()) pictures += Picture(page, area) + '\n';
    if (page.table) lists.push_back(&*page.table);
  }
  static const Figure kNone;
  const Figure& first = pages.empty() ? kNone : pages.front();
  return PageOf(first.title, HtmlTextsIn(first.language), pictures, lists);
}

std::string WriteHtmlList(const std::string& title, const std::string& language, const PartsTable& list) {
  return PageOf(title, HtmlTextsIn(language), {}, {&list});
}

}  // namespace zrfigure
