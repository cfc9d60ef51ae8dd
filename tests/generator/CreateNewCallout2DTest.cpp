// One 2D callout after a template.
#include <du/Localizer.h>
#include <zrannotations/CreateCallout2D.h>
#include <zrcallouts/Functions.h>
#include <zrk/MakeObject.h>
#include <zrk/illustration/PenHolder.h>
#include <zrk/illustration/PenPool.h>
#include <zrk/illustration2d/Callout2D.h>
#include <zrk/illustration2d/Scene2D.h>
#include <zrk/illustration2d/Text2D.h>

#include "support/SceneFixture.h"

namespace {

using zrk::illustration::PenPool;
using zrk::illustration2d::Callout2D;
using zrtest::TemplateBuilder;
using zrtest::TemplatePtr;

struct CreateNewCallout2DTest : zrtest::SceneFixture {
  CreateNewCallout2DTest() { zritemlist::ItemList::ShareItemList(scene_, sheet_); }
  ~CreateNewCallout2DTest() override { sheet_->Destroy(); }
  // The pool's pens stay for the rest of the process.
  static void SetUpTestSuite() { static_cast<void>(PenPool::GetPenPool()->UsePen(PenPool::PEN_THIN_STR)); }
  [[nodiscard]] du::SmartPtr<Callout2D> Create(const TemplatePtr& made, bool hasItem) const {
    return zrcallouts::CreateNewCallout2D(sheet_, made, hasItem, {1, 2}, {30, 40}, item_);
  }
  [[nodiscard]] static std::string TextOf2D(const du::SmartPtr<Callout2D>& callout) {
    return callout->GetTextElement()->GetString().GetString();
  }

  const du::SmartPtr<zrk::illustration2d::Scene2D> sheet_ = zrk::MakeObject<zrk::illustration2d::Scene2D>();
  const std::uint32_t item_ = AddItem(structure_->AddPart(structure_->Root(), "bolt"));
};

TEST_F(CreateNewCallout2DTest, TheCalloutFollowsTheTemplateWhichStaysAsItIs) {
  const auto made = zrtest::NumberTemplate();
  made->SetTextAlignment(zrk::illustration::TextAlignment::Right);
  const auto callout = Create(made, true);
  ASSERT_TRUE(callout);
  EXPECT_EQ(TextOf2D(callout), "1");
  EXPECT_EQ(callout->GetItemId(), item_);
  EXPECT_EQ(callout->GetCalloutTemplate(), made);
  EXPECT_FALSE(callout->IsLinkedTo3DCallout());
  EXPECT_EQ(callout->GetAnchor().x, 1);
  EXPECT_EQ(callout->GetPosition().y, 40);
  EXPECT_EQ(callout->GetTextAlignment(), zrk::illustration::TextAlignment::Right);
  EXPECT_EQ(callout->GetLocalizableString().GetKey().GetString(), "NoteContent");
  EXPECT_EQ(callout->GetLocalizableString().GetSourceText().GetString(), "1");
  EXPECT_EQ(callout->GetPreset()->GetLeaderPen(), PenPool::GetPenPool()->UsePen(PenPool::PEN_THIN_STR));
  EXPECT_FALSE(callout->GetPreset()->IsMarkdown());
  EXPECT_FALSE(made->GetLeaderPen());
  EXPECT_FALSE(made->IsMarkdown());

  const auto second = Create(made, true);
  EXPECT_NE(second->GetIDPath(), callout->GetIDPath());
  EXPECT_EQ(callout->GetIDPath().GetString().find('/'), 0u);
  EXPECT_EQ(sheet_->GetAnnotations2D().size(), 2u);

  const auto withPen = TemplateBuilder().Literal("A").Markdown().Build();
  withPen->SetLeaderPen(zrk::MakeObject<zrk::illustration::PenHolder>(dg::LengthUnit::MILLIMETER, 0.7));
  EXPECT_EQ(Create(withPen, false)->GetPreset()->GetLeaderPen(), withPen->GetLeaderPen());
  EXPECT_TRUE(Create(withPen, false)->GetPreset()->IsMarkdown());
}

TEST_F(CreateNewCallout2DTest, AnEmptyLabelShowsThePredefinedText) {
  du::Localizer::SetCurrentLanguage("fr");
  for (const auto& made : {TemplateBuilder().Build(), zrtest::NumberTemplate()}) {
    const auto callout = Create(made, false);
    EXPECT_EQ(TextOf2D(callout), "Texte");
    EXPECT_FALSE(callout->HasItemId());
  }
}

TEST_F(CreateNewCallout2DTest, TheTypeFollowsTheTemplatesFlags) {
  const struct {
    bool itemTemplate, requiresItemList;
    unsigned type;
  } cases[] = {{true, true, 0}, {true, false, 2}, {false, true, 1}, {false, false, 1}};
  for (const auto& tested : cases) {
    const auto made = zrtest::TextTemplate("A");
    made->SetIsItemTemplate(tested.itemTemplate);
    made->SetRequires(tested.requiresItemList, false);
    EXPECT_EQ(Create(made, false)->GetCalloutType(), tested.type);
  }
}

TEST_F(CreateNewCallout2DTest, ARefusedCreationLeavesNothing) {
  const auto made = zrtest::NumberTemplate();
  zrannotations::FailNextCreateCallout2D();
  EXPECT_FALSE(Create(made, true));
  EXPECT_FALSE(Create({}, true));
  EXPECT_FALSE(zrcallouts::CreateNewCallout2D({}, made, true, {1, 2}, {3, 4}, item_));
  EXPECT_TRUE(sheet_->GetAnnotations2D().empty());
  EXPECT_FALSE(made->IsMarkdown());
}

}  // namespace
