// Broken templates, command lines and scripts from seeds: each is refused with one line, or taken as a whole.
#include "FileInputs.h"

#include <cstdlib>
#include <functional>
#include <optional>

#include <gtest/gtest.h>

#include "MutatedInputs.h"
#include "ScriptInputs.h"

namespace {

struct FileKind {
  const char* name;
  const char* corpus;
  std::size_t inputs;
  std::function<std::optional<std::string>(std::span<const std::uint8_t>)> read;
};

class FileInputsTest : public testing::TestWithParam<FileKind> {};

TEST_P(FileInputsTest, EveryInputIsTakenAsAWholeOrRefusedWithOneLine) {
  const FileKind& kind = GetParam();
  zrfuzz::MutatedInputs inputs(std::string(ZR_SOURCE_DIR "/fuzz/corpus/") + kind.corpus, 1);
  ASSERT_FALSE(inputs.Corpus().empty());
  for (const auto& input : inputs.Corpus()) EXPECT_EQ(kind.read(input).value_or(""), "");
  for (std::size_t i = 0; i < kind.inputs && !HasFailure(); ++i) {
    const zrfuzz::Input input = inputs.Next();
    EXPECT_EQ(kind.read(input).value_or(""), "") << "input " << i << ":\n" << std::string(input.begin(), input.end());
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, FileInputsTest,
                         testing::Values(FileKind{"Template", "template", 5000, zrfuzz::ReadTemplateInput},
                                         FileKind{"Options", "options", 2000, zrfuzz::ReadOptionsInput},
                                         FileKind{"Script", "script", 12, zrfuzz::RunScriptInput}),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
