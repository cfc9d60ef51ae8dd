// Labels of 2D callouts, and the fonts in use.
#include <zrannotations/CombinedCallout2D.h>
#include <zrannotations/Inset.h>
#include <zrk/MakeObject.h>
#include <zrk/illustration2d/Scene2D.h>
#include <zrk/illustration2d/Text2D.h>

#include "support/SceneFixture.h"

namespace {

using zrcallouts::Callouts;
using zrk::MakeObject;
using zrk::illustration2d::Callout2D;
using zrk::illustration2d::Text2D;
using zrtest::TemplateBuilder;
using zrtest::TemplatePtr;
using Fonts = std::set<std::string>;

struct Callouts2DTest : zrtest::SceneFixture {
  Callouts2DTest() { zritemlist::ItemList::ShareItemList(scene_, sheet_); }
  ~Callouts2DTest() override { sheet_->Destroy(); }
  template <class T = Callout2D>
  [[nodiscard]] du::SmartPtr<T> Make(const TemplatePtr& preset, std::uint32_t item = 0) const {
    auto callout = MakeObject<T>();
    callout->SetPreset(preset);
    callout->SetItemId(item);
    callout->SetTextElement(MakeObject<Text2D>(du::Symbol("old")));
    return callout;
  }
  /// Whether it was updated; the text, its source and the sheet's count of changes must tell the same.
  [[nodiscard]] bool Update(const du::SmartPtr<Callout2D>& callout, const std::string& expected) const {
    const unsigned modified = sheet_->GetModifiedCount(callout);
    const bool updated = Callouts::UpdateCallout2DContent(callout, sheet_);
    EXPECT_EQ(callout->GetTextElement()->GetString().GetString(), expected);
    EXPECT_EQ(sheet_->GetModifiedCount(callout), modified + (updated ? 1 : 0));
    if (updated) {
      EXPECT_EQ(callout->GetLocalizableString().GetSourceText().GetString(), expected);
    }
    return updated;
  }

  const du::SmartPtr<zrk::illustration2d::Scene2D> sheet_ = MakeObject<zrk::illustration2d::Scene2D>();
  const zrtest::Part bolt_ = structure_->AddPart(structure_->Root(), "bolt");
  const std::uint32_t item_ = AddItem(bolt_);
};

TEST_F(Callouts2DTest, WhatHasNoLabelKeepsItsText) {
  EXPECT_FALSE(Update(Make({}, item_), "old"));
  EXPECT_FALSE(Update(Make(TemplateBuilder().Build(), item_), "old"));
  EXPECT_FALSE(Update(Make(zrtest::NumberTemplate()), "old"));
  EXPECT_FALSE(Update(Make<zrannotations::CombinedCallout2D>(zrtest::TextTemplate("unused")), "old"));
  const auto withoutText = Make(zrtest::NumberTemplate(), item_);
  withoutText->SetTextElement({});
  EXPECT_FALSE(Callouts::UpdateCallout2DContent(withoutText, sheet_));
  EXPECT_TRUE(withoutText->GetLocalizableString().IsEmpty());
  EXPECT_FALSE(Callouts::UpdateCallout2DContent({}, sheet_));
}

TEST_F(Callouts2DTest, ALabelIsWrittenOnlyWhenItChangesACombinedOneByTheTemplatesOfItsMembers) {
  const auto callout = Make(TemplateBuilder().Literal("No. ").Token("zrITM").Build(), item_);
  const auto combined = Make<zrannotations::CombinedCallout2D>(zrtest::TextTemplate("unused"));
  combined->AddMember(Make(zrtest::NumberTemplate(), item_));
  combined->AddMember(Make({}, item_));
  combined->AddMember(Make(zrtest::TextTemplate("Note")));
  for (const std::string label : {"1", "7"}) {
    items_->SetItemLabel(item_, label);
    for (const bool changes : {true, false}) {
      EXPECT_EQ(Update(callout, "No. " + label), changes);
      EXPECT_EQ(Update(combined, label + "\nNote"), changes);
    }
  }
}

TEST_F(Callouts2DTest, FontsOfCalloutsAndInsetsAreListedOnce) {
  const char* const fonts[] = {"Serif", "Serif", "Mono"};
  for (int i = 0; i < 3; ++i) {
    const auto callout = MakeCallout(zrtest::NumberTemplate(), bolt_);
    callout->SetFontFace(fonts[i]);
    callout->SetCustom(i == 2);
    Add(callout);
    const auto inset = MakeObject<zrannotations::Inset>();
    inset->SetInsetInfo({i == 0 ? "Sans" : "Hand"});
    inset->SetCustom(i == 0);
    Add(inset);
    const auto onInset = MakeCallout(zrtest::NumberTemplate(), bolt_);
    onInset->SetFontFace("Serif");
    onInset->SetInsetAtPos(inset, 0);
    Add(onInset);
  }
  EXPECT_EQ(engine_->GetCalloutsAndInsetsFonts(false), (Fonts{"Hand", "Mono", "Sans", "Serif"}));
  EXPECT_EQ(engine_->GetCalloutsAndInsetsFonts(true), (Fonts{"Mono", "Sans"}));
}

}  // namespace
