// Sheets and their callouts.

#include <zrannotations/CombinedCallout2D.h>
#include <zrannotations/CreateCallout2D.h>
#include <zrk/illustration2d/Scene2D.h>
#include <zrk/illustration2d/Text2D.h>
#include <zrservices/illustration2d/OperationHandler.h>

#include "AnnotationFixture.h"

namespace zrtest {

using zrk::illustration2d::Annotation2D;
using zrk::illustration2d::Callout2D;
using Callout2DPtr = du::SmartPtr<Callout2D>;
using zrservices::illustration2d::OperationHandler;

class Illustration2DTest : public AnnotationFixture {
protected:
  ~Illustration2DTest() override { sheet_->Destroy(); }

  Callout2DPtr Create(const char* text) {
    du::LocalizableString localizable;
    static_cast<void>(Annotation2D::GenerateIDAndLocalization(localizable, sheet_, "NoteContent", text, false));
    return zrannotations::CreateCallout2D(sheet_, definition_, dg::DPoint2D(10, 20), dg::DPoint2D(30, 40),
                                          zrk::illustration::TextAlignment::Right, localizable);
  }

  const du::SmartPtr<zrk::illustration2d::Scene2D> sheet_ = MakeObject<zrk::illustration2d::Scene2D>();
  const TemplatePtr definition_ = MakeTemplate("item");
};

TEST_F(Illustration2DTest, CreatesCalloutsWithTheGivenTextAndPlaces) {
  const Callout2DPtr callout = Create("17");
  ASSERT_TRUE(callout);
  const auto label = [&] { return callout->GetTextElement()->GetString(); };
  EXPECT_EQ(callout->GetPreset(), definition_);
  EXPECT_FALSE(callout->GetCalloutTemplate());
  EXPECT_EQ(label(), du::Symbol("17"));
  EXPECT_EQ(callout->GetAnchor().x, 10);
  EXPECT_EQ(callout->GetPosition().y, 40);
  EXPECT_EQ(callout->GetLocalizableString().GetKey(), du::Symbol("NoteContent"));
  EXPECT_EQ(sheet_->GetAnnotations2D().size(), 1u);
  callout->SetLocalizableStringText("18", false, true);
  EXPECT_EQ(label(), du::Symbol("18"));
  EXPECT_EQ(callout->GetLocalizableString().GetSourceText(), du::Symbol("18"));
  callout->SetLocalizableStringText("19", false, false);
  EXPECT_EQ(label(), du::Symbol("18"));
  const double narrow = callout->GetShapeExtents().GetWidth();
  callout->SetLocalizableStringText("1800", false, true);
  EXPECT_NEAR(callout->GetShapeExtents().GetWidth(), 2 * narrow, 1e-9);
  EXPECT_NEAR(callout->GetShapeExtents().min.x + callout->GetShapeExtents().max.x, 60, 1e-9);
}

TEST_F(Illustration2DTest, CreatesAndMovesNothingWhenSomethingIsMissing) {
  const du::LocalizableString text;
  const auto left = zrk::illustration::TextAlignment::Left;
  EXPECT_FALSE(zrannotations::CreateCallout2D(nullptr, definition_, {}, {}, left, text));
  EXPECT_FALSE(zrannotations::CreateCallout2D(sheet_, nullptr, {}, {}, left, text));
  zrannotations::FailNextCreateCallout2D();
  EXPECT_FALSE(Create("1"));
  EXPECT_TRUE(sheet_->GetAnnotations2D().empty());
  const Callout2DPtr callout = Create("1");
  EXPECT_TRUE(callout);
  EXPECT_FALSE(OperationHandler::EditCalloutsPosition(nullptr, {{callout, {}}}));
  EXPECT_FALSE(OperationHandler::EditCalloutsPosition(sheet_, {}));
  EXPECT_FALSE(OperationHandler::EditCalloutsPosition(sheet_, {{nullptr, {}}}));
  EXPECT_EQ(zrk::UndoHistory::GetCount(sheet_), 0u);
  EXPECT_TRUE(OperationHandler::EditCalloutsPosition(sheet_, {{nullptr, {}}, {callout, dg::DPoint2D(1, 2)}}, "align"));
  EXPECT_EQ(zrk::UndoHistory::GetLast(sheet_)->GetName(), "align");
  EXPECT_TRUE(zrk::UndoHistory::Undo(sheet_) && zrk::UndoHistory::Redo(sheet_));
  EXPECT_EQ(callout->GetPosition().x, 1);
}

TEST_F(Illustration2DTest, IdsAreNotUsedTwice) {
  std::set<std::string> ids;
  for (const auto& scene : {sheet_, sheet_, du::SmartPtr<zrk::illustration2d::Scene2D>()}) {
    du::LocalizableString text;
    ids.insert(Annotation2D::GenerateIDAndLocalization(text, scene, "NoteContent", "x", true).GetString());
    EXPECT_TRUE(text.IsEnabled());
  }
  EXPECT_EQ(ids.size(), 3u);
}

TEST_F(Illustration2DTest, CombinedLabelJoinsMembers) {
  const auto combined = MakeObject<zrannotations::CombinedCallout2D>();
  for (const char* text : {"1", "", "3"}) combined->AddMember(Create(text));
  combined->AddMember(nullptr);
  const auto label = [](const Callout2DPtr& member) { return member->GetTextElement()->GetString().GetString(); };
  EXPECT_EQ(zrannotations::CombinedCallout2D::GenerateLabelString(combined, label), "1\n3");
  EXPECT_EQ(zrannotations::CombinedCallout2D::GenerateLabelString(nullptr, label), "");
}

}  // namespace zrtest
