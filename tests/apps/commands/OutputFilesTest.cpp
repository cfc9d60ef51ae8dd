#include "commands/OutputFiles.h"

#include <tuple>

#include <gtest/gtest.h>

#include "apps/import/TemporaryFolder.h"
#include "commands/FigureFiles.h"

namespace zrfigure {
namespace {

using Names = std::vector<std::string>;

class OutputFilesTest : public testing::Test {
protected:
  [[nodiscard]] std::string Read(const char* name) const { return ReadWholeFile(folder_.Path() / name); }

  TemporaryFolder folder_;
  const std::filesystem::path path_ = folder_.Path();
  std::string error_;
};

TEST_F(OutputFilesTest, OneFileThatCannotBeWrittenKeepsAllBack) {
  folder_.Write("a.csv", "old");
  create_directories(path_ / "taken.svg" / "full");  // The move fails after the bytes were written.
  const std::tuple<const char*, const char*, const char*> pairs[] = {
      {"a.csv", "missing/b.csv", "b.csv: cannot be written"}, {"taken.svg", "a.csv", "taken.svg"}};
  for (const auto& [first, second, message] : pairs) {
    OutputFiles files;
    files.Add(path_ / first, "new");
    files.Add(path_ / second, "new");
    EXPECT_FALSE(files.Commit(error_));
    EXPECT_NE(error_.find(message), std::string::npos) << error_;
    EXPECT_EQ(Read("a.csv"), "old");
    EXPECT_EQ(folder_.Files(), (Names{"a.csv", "taken.svg"}));
  }
}

TEST_F(OutputFilesTest, FiguresAndListsGoByTheExtension) {
  const std::vector<Figure> pages(2);
  OutputFiles files;
  for (const char* name : {"a.SVG", "b.png", "c.pdf", "d.html"}) {
    EXPECT_TRUE(AddFigureFiles(path_ / name, pages, files, error_)) << error_;
  }
  PartsList list;
  list.source = "pump & co";
  list.items = {{"1", "1.1", 2, "A<1", "Bolt", {}, {{"material", "C45"}, {"mass", "3"}}},
                {"2", "2", 1, "", "Nut", {}, {}}};
  list.items[1].shown = false;
  for (const char* name : {"e.csv", "f.JSON", "g.html"}) AddPartsListFile(path_ / name, list, "de", files);
  EXPECT_EQ(folder_.Files(), Names()) << "before the commit";
  ASSERT_TRUE(files.Commit(error_)) << error_;
  EXPECT_EQ(folder_.Files(),
            (Names{"a-2.SVG", "a.SVG", "b-2.png", "b.png", "c.pdf", "d.html", "e.csv", "f.JSON", "g.html"}));
  const char* const starts[][2] = {{"a-2.SVG", "<?xml"}, {"b-2.png", "\x89PNG"}, {"c.pdf", "%PDF"},
                                   {"f.JSON", "{"},      {"e.csv", "item,"},     {"d.html", "<!DOCTYPE"}};
  for (const auto& [name, start] : starts) EXPECT_EQ(Read(name).find(start), 0u) << name;
  const std::string page = Read("g.html");
  for (const char* part : {"<html lang=\"de\">", "<title>pump &amp; co</title>", "Werkstoff</th>", "mass</th>",
                           "Kennzeichen</th>", ">A&lt;1</td>", ">C45</td>", "class=\"unseen\""}) {
    EXPECT_NE(page.find(part), std::string::npos) << part;
  }
  EXPECT_FALSE(AddFigureFiles("a.jpg", pages, files, error_));
  EXPECT_NE(error_.find(".svg, .pdf or .png"), std::string::npos) << error_;
}

}  // namespace
}  // namespace zrfigure
