#include "commands/OutputFiles.h"

#include <fstream>
#include <iterator>

#include <gtest/gtest.h>
#include <unistd.h>

namespace zrfigure {
namespace {

namespace fs = std::filesystem;

class OutputFilesTest : public testing::Test {
protected:
  void SetUp() override {
    folder_ = fs::temp_directory_path() / ("zrfigure-outputs-" + std::to_string(getpid()));
    fs::create_directories(folder_);
  }
  void TearDown() override { fs::remove_all(folder_); }

  static std::string Read(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

  [[nodiscard]] std::size_t CountFiles() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()));
  }

  fs::path folder_;
};

TEST_F(OutputFilesTest, NothingAppearsBeforeCommit) {
  OutputFiles files;
  files.Add(folder_ / "a.svg", "one");
  files.Add(folder_ / "b.csv", "two");
  EXPECT_EQ(CountFiles(), 0u);
  std::string error;
  ASSERT_TRUE(files.Commit(error)) << error;
  EXPECT_EQ(Read(folder_ / "a.svg"), "one");
  EXPECT_EQ(Read(folder_ / "b.csv"), "two");
  EXPECT_EQ(CountFiles(), 2u);
}

TEST_F(OutputFilesTest, OneFileThatCannotBeStagedKeepsAllBack) {
  std::ofstream(folder_ / "a.svg") << "old";
  OutputFiles files;
  files.Add(folder_ / "a.svg", "new");
  files.Add(folder_ / "missing" / "b.csv", "two");
  std::string error;
  EXPECT_FALSE(files.Commit(error));
  EXPECT_NE(error.find("b.csv: cannot be written"), std::string::npos) << error;
  EXPECT_EQ(Read(folder_ / "a.svg"), "old");
  EXPECT_EQ(CountFiles(), 1u);
}

TEST_F(OutputFilesTest, CheckFindsMissingFoldersAndFoldersInTheWay) {
  std::string error;
  EXPECT_TRUE(CheckOutputPath(folder_ / "new.svg", error));
  EXPECT_FALSE(CheckOutputPath(folder_ / "missing" / "new.svg", error));
  EXPECT_NE(error.find("does not exist"), std::string::npos);
  fs::create_directory(folder_ / "taken.svg");
  EXPECT_FALSE(CheckOutputPath(folder_ / "taken.svg", error));
  EXPECT_NE(error.find("is a folder"), std::string::npos);
}

}  // namespace
}  // namespace zrfigure
