// Symbol annotations, insets and callouts that arrive in the scene.
#include <du/LocalizableString.h>
#include <zrannotations/Inset.h>
#include <zrk/MakeObject.h>
#include <zrk/Markup.h>
#include <zrk/illustration/Application.h>
#include <zrkapp/illustration/FileInfo.h>
#include <zrkapp/illustration/IllMultiRootContainer.h>
#include <zrkapp/illustration/LocalizationSettings.h>

#include "engine/EngineFixture.h"

namespace {

using zrannotations::CombinedCallout;
using zrannotations::Inset;
using zrk::illustration::SetRunningFoliant;
using zrtest::CalloutPtr;
using zrtest::Part;
using zrtest::TemplateBuilder;

using CalloutsArrivalTest = zrtest::EngineFixture;

TEST_F(CalloutsArrivalTest, TheFirstSymbolAnnotationOfAnInstanceWins) {
  const Part symbol = structure_->AddSymbol("S");
  const auto second = zrk::MakeObject<zrannotations::SymbolAnnotation>(symbol.design);
  Add(symbol.symbol);
  Add(second);
  EXPECT_EQ(AddNote(symbol)->GetSymbolIdAtPos(0), symbol.symbol->Id());

  Remove(symbol.symbol);  // the entry stays until the shape goes
  EXPECT_EQ(AddNote(symbol)->GetSymbolIdAtPos(0), symbol.symbol->Id());
  scene_->RemoveShapeInstance(symbol.shape);
  engine_->OnAddAnnotation(second);
  scene_->AddShapeInstance(symbol.shape);
  EXPECT_EQ(AddNote(symbol)->GetSymbolIdAtPos(0), second->Id());
}

TEST_F(CalloutsArrivalTest, AnInsetTakesOverItsCalloutsAndIsObservedOnceHoweverOftenItIsAnnounced) {
  const auto inset = zrk::MakeObject<Inset>();
  const auto subset = AddScene(false);
  inset->SetSubsetScene(subset);
  const auto callout = MakeNumber(bolt_);
  callout->SetInsetAtPos(inset, 0);
  Add(callout);
  const auto onTop = AddNumber(nut_);
  onTop->BringToFront();
  ASSERT_NE(callout->GetSubsetScene(), subset);
  Add(inset);
  EXPECT_EQ(callout->GetSubsetScene(), subset);
  EXPECT_GT(callout->GetZOrder(), onTop->GetZOrder());
  engine_->OnAddAnnotation(inset);
  EXPECT_EQ(inset->GetObserverCount(), 1u);
  Remove(inset);
  Add(inset);
  EXPECT_EQ(inset->GetObserverCount(), 1u);
}

TEST_F(CalloutsArrivalTest, AnInsetShowsTheCurrentLanguageAsSoonAsItArrives) {
  const struct {
    bool hasCaption, visible, translatedBefore;
    const char* shown;
  } cases[] = {
      {false, false, false, "Detail"},    {true, false, false, "Detail"}, {true, false, true, "Einzelheit"},
      {false, false, true, "Einzelheit"}, {true, true, false, "Detail"},
  };
  world_->ChangeLanguage("de");
  for (const auto& tested : cases) {
    SCOPED_TRACE(&tested - cases);
    const auto inset = zrk::MakeObject<Inset>();
    inset->SetCaptionText("Detail", false, false);
    if (tested.hasCaption) inset->SetInsetCaption(zrk::MakeObject<zrk::Markup>());
    if (tested.hasCaption) inset->GetInsetCaption()->SetVisible(tested.visible);
    if (tested.translatedBefore) {
      inset->SetupLocalizationIfNecessary();
      inset->GetLocalizableString().SetLocaleText("de", "Einzelheit");
      inset->GetLocalizableString().SetDeleted(true);
    }
    Add(inset);
    EXPECT_EQ(inset->GetCaptionText().GetString(), tested.shown);
    EXPECT_EQ(inset->GetLocalizableString().IsEnabled(), tested.visible || tested.translatedBefore);
  }
}

TEST_F(CalloutsArrivalTest, APlainTextOfItsOwnIsKeptOutsideTheAuthoringApplication) {
  const auto plain = TemplateBuilder().Literal("template");
  const auto named = [&](const char* name) { return TemplateBuilder(plain).Named(name); };
  const struct {
    const char* name;
    bool authoring;
    TemplateBuilder callouttemplate;
    bool excludesItemTag, rewritten;
  } cases[] = {
      {"plain", false, plain, false, false},
      {"plain while authoring", true, plain, false, true},
      {"with a property", false, TemplateBuilder(plain).Property("", ""), false, true},
      {"with another kind", false, TemplateBuilder(plain).OfType(5, "x"), false, true},
      {"item tag", false, named("Item Tag"), false, true},
      {"item tag excluded", false, named("Item Tag"), true, false},
      {"item tag in lower case", false, named("item tag"), false, false},
      {"item tags and more", false, named("Item Tags"), false, false},
      {"no content", true, TemplateBuilder(), false, false},
  };
  for (const auto& tested : cases) {
    SCOPED_TRACE(tested.name);
    SetRunningFoliant(tested.authoring);
    const auto callouttemplate = tested.callouttemplate.Build();
    callouttemplate->SetExcludesItemTagTest(tested.excludesItemTag);
    const auto callout = MakeCallout(callouttemplate, bolt_);
    callout->SetText("own words", false);
    Add(callout);
    EXPECT_EQ(TextOf(callout), tested.rewritten ? "template" : "own words");
  }
  SetRunningFoliant(false);
  const auto combined = MakeCombined({MakeCallout(plain.Build(), bolt_), MakeNote(nut_)});
  combined->SetText("own words", false);
  Add(combined);
  EXPECT_EQ(TextOf(combined), "template\nNote");
}

TEST_F(CalloutsArrivalTest, OnlyTextCalloutsAreSetUpForTranslation) {
  const struct {
    const char* name;
    bool authoring, notes, fileContainer;
    TemplateBuilder callouttemplate;
    bool localized;
    const char* key;
  } cases[] = {
      {"text in the viewer", false, true, true, TemplateBuilder().Literal("Note"), true, ""},
      {"text as note", true, true, true, TemplateBuilder().Literal("Note"), true, "NoteContent"},
      {"notes off", true, false, true, TemplateBuilder().Literal("Note"), true, ""},
      {"no file", true, true, false, TemplateBuilder().Literal("Note"), true, ""},
      {"item number", true, true, true, TemplateBuilder().Token("zrITM"), false, ""},
      {"part property", true, true, true, TemplateBuilder().Property("G", "N"), false, ""},
  };
  for (const auto& tested : cases) {
    SCOPED_TRACE(tested.name);
    SetRunningFoliant(tested.authoring);
    const auto container = zrk::MakeObject<zrkapp::illustration::IllMultiRootContainer>();
    container->GetFileInfo()->GetLocalizationSettings()->SetNotes(tested.notes);
    world_->SetMRC(tested.fileContainer ? container : nullptr);
    const auto callout = AddCallout(tested.callouttemplate.Build(), bolt_);
    EXPECT_EQ(callout->GetLocalizableString().IsEnabled(), tested.localized);
    EXPECT_EQ(callout->GetLocalizableString().GetKey().GetString(), tested.key);
  }
}

TEST_F(CalloutsArrivalTest, TranslationsSurviveRemovalAndReturn) {
  const auto callout = AddNote(bolt_);
  callout->SetText("Note", false);
  callout->SetupLocalizationIfNecessary(false);
  callout->GetLocalizableString().SetLocaleText("fr", "Remarque");
  for (const bool usedByAnAnimation : {true, false}) {
    callout->SetReferencedInAnimation(usedByAnAnimation);
    Add(callout);
    Remove(callout);
    EXPECT_EQ(callout->GetLocalizableString().IsDeleted(), !usedByAnAnimation);
  }
  world_->ChangeLanguage("fr");
  EXPECT_EQ(TextOf(callout), "Note");
  Add(callout);
  EXPECT_FALSE(callout->GetLocalizableString().IsDeleted());
  EXPECT_EQ(TextOf(callout), "Remarque");
}

TEST_F(CalloutsArrivalTest, MembersWithoutLeadersLeaveACombinedCallout) {
  const auto gone = MakeNumber(Part{});
  const auto hidden = MakeNumber(bolt_);
  hidden->GetLeaders()[0]->SetHidden(true);
  const auto left = MakeNumber(nut_);
  const auto combined = zrk::MakeObject<CombinedCallout>();
  for (const auto& member : {gone, left, hidden}) combined->AddMember(member);
  Add(combined);
  EXPECT_EQ(combined->GetCalloutVec(), std::vector<CalloutPtr>{left});
  EXPECT_EQ(combined->GetLeaderLineCount(true), 1u);  // had none of its own: takes over those of the member
  EXPECT_TRUE(IsObserved(combined));

  const auto deserted = zrk::MakeObject<CombinedCallout>();
  deserted->AddMember(gone);
  Add(deserted);
  EXPECT_TRUE(deserted->GetCalloutVec().empty());
  EXPECT_EQ(deserted->GetLeaderLineCount(true), 0u);
  EXPECT_FALSE(IsIn(deserted));

  const auto withItsOwn = MakeCombined({MakeNumber(bolt_)});
  AddLeader(withItsOwn, nut_);
  const auto leaders = withItsOwn->GetLeaders();
  Add(withItsOwn);
  EXPECT_EQ(withItsOwn->GetLeaders(), leaders);
}

TEST_F(CalloutsArrivalTest, LeadersThatAreFoundAttachTheSceneUnlessTheInsetRefuses) {
  EXPECT_FALSE(AddNumber(bolt_)->GetSubsetScene());
  const auto tight = zrk::MakeObject<Inset>();
  tight->SetBounds({dg::DPoint3D(50, 50, 50), dg::DPoint3D(60, 60, 60)});
  const auto open = zrk::MakeObject<Inset>();
  for (const auto& inset : {tight, open, du::SmartPtr<Inset>()}) {
    const auto found = MakeNumber(Part{});
    found->AddUnresolvedLeader(bolt_.Id(), "");  // by the id only, as a document holds it
    if (inset) found->SetInsetAtPos(inset, 0);
    Add(found);
    EXPECT_EQ(found->GetShapeInstanceAtPos(0), bolt_.shape);
    EXPECT_EQ(found->GetSubsetScene(), inset == tight ? nullptr : scene_);
    EXPECT_EQ(found->GetSubsetSceneName(), "");
  }
}

TEST_F(CalloutsArrivalTest, WithoutLeadersOnlyATextCalloutStays) {
  const std::uint32_t item = AddItem(bolt_);
  const auto numbered = AddNumber(Part{}, item);
  EXPECT_FALSE(IsIn(numbered));
  EXPECT_FALSE(IsObserved(numbered));
  EXPECT_TRUE(items_->IsIndicated(item));  // marked after its removal has cleared the mark

  const auto hidden = MakeNumber(bolt_);
  hidden->GetLeaders()[0]->SetHidden(true);
  Add(hidden);
  EXPECT_FALSE(IsIn(hidden));
  EXPECT_TRUE(CalloutsOn(bolt_).empty());

  const auto note = AddNote(Part{});
  EXPECT_TRUE(IsIn(note));
  EXPECT_TRUE(IsObserved(note));
}

TEST_F(CalloutsArrivalTest, ASecondAnnouncementOnlyMarksTheItemAgainAndReattachesMembers) {
  const std::uint32_t item = AddItem(bolt_);
  const auto callout = AddNumber(bolt_, item);
  EXPECT_EQ(TextOf(callout), "1");
  EXPECT_TRUE(items_->IsIndicated(item));
  items_->SetIndicated(item, false);
  const unsigned texts = callout->GetSetTextCount();
  engine_->OnAddAnnotation(callout);
  EXPECT_EQ(callout->GetSetTextCount(), texts);
  EXPECT_TRUE(items_->IsIndicated(item));

  const auto combined = MakeCombined({MakeNumber(bolt_)});
  Add(combined);
  const auto late = MakeNumber(nut_);
  combined->GetCalloutVec().push_back(late);
  ASSERT_FALSE(late->GetParent());
  engine_->OnAddAnnotation(combined);
  EXPECT_EQ(late->GetParent(), combined);
}

TEST_F(CalloutsArrivalTest, TheLabelStaysWhileLeadersCatchUpWithTheirParts) {
  const auto callout = MakeNote(nut_);
  AddLeader(callout, bolt_);
  callout->SetLabelPlacementState(1);
  callout->SetLabelPosition({3, 4, 5});
  for (const auto& part : {nut_, bolt_}) Move(part, 10);
  Add(callout);
  for (const auto& leader : callout->GetLeaders()) EXPECT_DOUBLE_EQ(leader->GetAnchor().x, 10);
  EXPECT_DOUBLE_EQ(callout->GetPosition().x, 3);
  EXPECT_DOUBLE_EQ(callout->GetPosition().y, 4);
}

}  // namespace
