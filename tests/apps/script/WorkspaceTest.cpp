#include <stdexcept>

#include <dg/DVec3.h>
#include <gtest/gtest.h>
#include <zrk/UndoHistory.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/SceneEdit.h>

#include "script/Command.h"
#include "script/CommandWords.h"
#include "script/Workspace.h"

namespace zrfigure {
namespace {

using zrk::illustration::SceneEdit;

TEST(WorkspaceTest, EditThatFailsMidwayIsTakenBack) {
  Workspace workspace;
  std::string error;
  workspace.Open(ZR_SOURCE_DIR "/examples/drive-unit.step", *ParseViewDirection("iso", error));
  workspace.Current().Generate();
  const auto& scene = workspace.Session().GetScene();
  const std::string before = workspace.Current().Dump();
  const std::size_t recorded = zrk::UndoHistory::GetCount(scene);
  for (const bool throws : {false, true}) {
    bool moved = false;
    const auto edit = [&](const du::SmartPtr<zrk::Operation>& operation) {
      moved = SceneEdit::MoveInstance(scene, workspace.FindPart("Electric motor 1"), {0, 0, 40}, operation) &&
              SceneEdit::RemoveInstance(scene, workspace.FindPart("Drive shaft 1"), operation);
      if (throws) throw std::runtime_error("midway");
      return false;
    };
    if (throws) {
      EXPECT_THROW(workspace.Edit("edit", "refused", edit), std::runtime_error);
    } else {
      EXPECT_THROW(workspace.Edit("edit", "refused", edit), CommandError);
    }
    EXPECT_TRUE(moved);
    EXPECT_EQ(workspace.Current().Dump(), before);
    EXPECT_EQ(zrk::UndoHistory::GetCount(scene), recorded);
  }
}

TEST(CommandWordsTest, QuotedWordsComeBackAsTheyWere) {
  for (const char* word : {"plain", "two words", "it's", "say \"x\"", "a\\b", "#1", "", "tab\there"}) {
    EXPECT_EQ(SplitWords("w " + QuoteWord(word, true)), (Words{"w", word}));
  }
  const std::pair<const char*, Words> lines[] = {
      {"a 'b c' d\\ e # rest", {"a", "b c", "d e"}}, {"  # only", {}}, {"a#b", {"a#b"}}};
  for (const auto& [line, words] : lines) EXPECT_EQ(SplitWords(line), words) << line;
  for (const char* line : {"a 'b", "a \"b", "a\\"}) EXPECT_THROW((void)SplitWords(line), CommandError) << line;
}

}  // namespace
}  // namespace zrfigure
