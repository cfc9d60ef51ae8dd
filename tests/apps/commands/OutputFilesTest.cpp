#include "commands/OutputFiles.h"

#include <gtest/gtest.h>

#include "apps/import/TemporaryFolder.h"

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

TEST_F(OutputFilesTest, CheckFindsMissingFoldersAndFoldersInTheWay) {
  EXPECT_TRUE(CheckOutputPath(path_ / "new.svg", error_));
  EXPECT_FALSE(CheckOutputPath(path_ / "missing" / "new.svg", error_));
  EXPECT_NE(error_.find("does not exist"), std::string::npos);
  EXPECT_FALSE(CheckOutputPath(path_, error_));
  EXPECT_NE(error_.find("is a folder"), std::string::npos);
}

}  // namespace
}  // namespace zrfigure
