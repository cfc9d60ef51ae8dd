#include <stdexcept>

#include <dg/DVec3.h>
#include <gtest/gtest.h>
#include <zrk/UndoHistory.h>
#include <zrk/illustration/Illustration3dScene.h>
#include <zrk/illustration/SbomInstance.h>
#include <zrk/illustration/SceneEdit.h>

#include "script/Command.h"
#include "script/CommandWords.h"
#include "script/Completion.h"
#include "script/Workspace.h"

namespace zrfigure {
namespace {

using zrk::illustration::SceneEdit;

/// The example model with callouts, opened once.
class WorkspaceTest : public testing::Test {
protected:
  static void SetUpTestSuite() {
    workspace_ = std::make_unique<Workspace>();
    std::string error;
    workspace_->Open(ZR_SOURCE_DIR "/examples/drive-unit.step", *ParseViewDirection("iso", error));
    workspace_->Current().Generate();
  }
  static void TearDownTestSuite() { workspace_.reset(); }

  static std::unique_ptr<Workspace> workspace_;
};

std::unique_ptr<Workspace> WorkspaceTest::workspace_;

TEST_F(WorkspaceTest, EditThatFailsMidwayIsTakenBack) {
  const auto& scene = workspace_->Session().GetScene();
  const std::string before = workspace_->Current().Dump();
  const std::size_t recorded = zrk::UndoHistory::GetCount(scene);
  for (const bool throws : {false, true}) {
    bool moved = false;
    const auto edit = [&](const du::SmartPtr<zrk::Operation>& operation) {
      moved = SceneEdit::MoveInstance(scene, workspace_->FindPart("Electric motor 1"), {0, 0, 40}, operation) &&
              SceneEdit::RemoveInstance(scene, workspace_->FindPart("Drive shaft 1"), operation);
      if (throws) throw std::runtime_error("midway");
      return false;
    };
    if (throws) {
      EXPECT_THROW(workspace_->Edit("edit", "refused", edit), std::runtime_error);
    } else {
      EXPECT_THROW(workspace_->Edit("edit", "refused", edit), CommandError);
    }
    EXPECT_TRUE(moved);
    EXPECT_EQ(workspace_->Current().Dump(), before);
    EXPECT_EQ(zrk::UndoHistory::GetCount(scene), recorded);
  }
}

TEST_F(WorkspaceTest, CompletionOffersWhatFitsThere) {
  struct Case {
    const char* line;
    const char* replacement;
    std::size_t choices;
  };
  const Case cases[] = {
      {"op", "open ", 1},
      {"set", "set", 4},
      {"nothing ", "", 0},
      {"hide Motor", "\"Motor housing 1\" ", 1},
      {"hide 'Motor h", "\"Motor housing 1\" ", 1},
      {"hide Pillow", "\"Pillow block ", 2},
      {"hide \"Drive unit/Washer 1\" ", "", 0},
      {"move \"Motor housing 1\" 1", "", 0},
      {"set-quantity 1", "1", 10},
      {"delete-callout 18", "18 ", 1},
      {"align ma", "max-", 2},
      {"align max-x --d", "--distribute ", 1},
      {"align max-x --distribute 3 al", "all ", 1},
      {"settings combine h", "hierarchical ", 1},
      {"language d", "de ", 1},
      {"view le", "left ", 1},
      {"help clear", "clear-items ", 1},
      {"add-to-item ne", "new ", 1},
      {"template number-q", "number-quantity ", 1},
      {"open " ZR_SOURCE_DIR "/examples/drive-unit.s", ZR_SOURCE_DIR "/examples/drive-unit.step ", 1},
      {"open " ZR_SOURCE_DIR "/exampl", ZR_SOURCE_DIR "/examples/", 1},
  };
  for (const Case& c : cases) {
    const Completion completion = CompleteLine(c.line, *workspace_);
    EXPECT_EQ(completion.replacement, c.replacement) << c.line;
    EXPECT_EQ(completion.choices.size(), c.choices) << c.line;
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
