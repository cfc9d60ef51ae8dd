#include "commands/OutputFiles.h"

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
  OutputFiles files_;
  std::string error_;
};

TEST_F(OutputFilesTest, NothingAppearsBeforeCommit) {
  files_.Add(path_ / "a.svg", "one");
  files_.Add(path_ / "b.csv", "two");
  EXPECT_EQ(folder_.Files(), Names());
  ASSERT_TRUE(files_.Commit(error_)) << error_;
  EXPECT_EQ(Read("a.svg") + Read("b.csv"), "onetwo");
  EXPECT_EQ(folder_.Files(), (Names{"a.svg", "b.csv"}));
}

TEST_F(OutputFilesTest, OneFileThatCannotBeStagedKeepsAllBack) {
  folder_.Write("a.svg", "old");
  files_.Add(path_ / "a.svg", "new");
  files_.Add(path_ / "missing" / "b.csv", "two");
  EXPECT_FALSE(files_.Commit(error_));
  EXPECT_NE(error_.find("b.csv: cannot be written"), std::string::npos) << error_;
  EXPECT_EQ(Read("a.svg"), "old");
  EXPECT_EQ(folder_.Files(), Names{"a.svg"});
}

TEST_F(OutputFilesTest, FolderInTheWayLeavesNothingBehind) {
  folder_.Write("b.csv", "old");
  create_directories(path_ / "a.svg" / "full");  // The move fails after the bytes were written.
  files_.Add(path_ / "a.svg", "one");
  files_.Add(path_ / "b.csv", "two");
  EXPECT_FALSE(files_.Commit(error_));
  EXPECT_NE(error_.find("a.svg"), std::string::npos) << error_;
  EXPECT_EQ(Read("b.csv"), "old");
  EXPECT_EQ(folder_.Files(), (Names{"a.svg", "b.csv"}));
}

TEST_F(OutputFilesTest, FiguresAndListsGoByTheExtension) {
  const std::vector<Figure> pages(2);
  for (const char* name : {"a.SVG", "b.png", "c.pdf", "d.html"}) {
    EXPECT_TRUE(AddFigureFiles(path_ / name, pages, files_, error_)) << error_;
  }
  PartsList list;
  list.source = "pump & co";
  list.items = {{"1", "1.1", 2, "A<1", "Bolt", {}, {{"material", "C45"}, {"mass", "3"}}}, {"2", "2", 1, "", "Nut", {}, {}}};
  list.items[1].shown = false;
  for (const char* name : {"e.csv", "f.JSON", "g.html"}) AddPartsListFile(path_ / name, list, "de", files_);
  ASSERT_TRUE(files_.Commit(error_)) << error_;
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
  EXPECT_FALSE(AddFigureFiles("a.jpg", pages, files_, error_));
  EXPECT_NE(error_.find(".svg, .pdf or .png"), std::string::npos) << error_;
}

TEST_F(OutputFilesTest, CheckFindsMissingFoldersAndFoldersInTheWay) {
  EXPECT_TRUE(CheckOutputPath(path_ / "new.svg", error_));
  EXPECT_FALSE(CheckOutputPath(path_ / "missing" / "new.svg", error_));
  EXPECT_NE(error_.find("does not exist"), std::string::npos);
  EXPECT_FALSE(CheckOutputPath(path_, error_));
  EXPECT_NE(error_.find("is a folder"), std::string::npos);
}

}  // namespace
}  // namespace zrfigure
