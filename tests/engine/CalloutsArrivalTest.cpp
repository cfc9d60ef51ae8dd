// Symbol annotations, insets and callouts that arrive in the scene.
#include <functional>

#include <dg/FMat33.h>
#include <dg/Location.h>
#include <du/LocalizableString.h>
#include <zrannotations/Inset.h>
#include <zrk/MakeObject.h>
#include <zrk/Markup.h>
#include <zrkapp/illustration/FileInfo.h>
#include <zrkapp/illustration/IllMultiRootContainer.h>
#include <zrkapp/illustration/LocalizationSettings.h>

#include "support/SceneFixture.h"

namespace {

using zrannotations::Inset;
using zrtest::CalloutPtr;
using zrtest::Part;
using zrtest::SceneFixture;
using zrtest::TemplateBuilder;

class CalloutsArrivalTest : public SceneFixture {
protected:
  CalloutsArrivalTest() = default;
  explicit CalloutsArrivalTest(const zrtest::SceneOptions& options) : SceneFixture(options) {}

  /// A callout that points at the part by its id only, as a document holds it.
  [[nodiscard]] CalloutPtr Unresolved(const zrtest::TemplatePtr& callouttemplate, const Part& part) const {
    auto callout = MakeCallout(callouttemplate, Part{});
    callout->AddUnresolvedLeader(part.Id(), "");
    return callout;
  }

  Part bolt_ = structure_->AddPart(structure_->Root(), "bolt");
  Part nut_ = structure_->AddPart(structure_->Root(), "nut");
};

TEST_F(CalloutsArrivalTest, TheFirstSymbolAnnotationOfAnInstanceWins) {
  const Part symbol = structure_->AddSymbol("S");
  const auto second = zrk::MakeObject<zrannotations::SymbolAnnotation>(symbol.design);
  Add(symbol.symbol);
  Add(second);
  EXPECT_EQ(AddCallout(zrtest::TextTemplate("Note"), symbol)->GetSymbolIdAtPos(0), symbol.symbol->Id());

  Remove(symbol.symbol);  // the entry stays until the shape goes
  EXPECT_EQ(AddCallout(zrtest::TextTemplate("Note"), symbol)->GetSymbolIdAtPos(0), symbol.symbol->Id());
  scene_->RemoveShapeInstance(symbol.shape);
  engine_->OnAddAnnotation(second);
  scene_->AddShapeInstance(symbol.shape);
  EXPECT_EQ(AddCallout(zrtest::TextTemplate("Note"), symbol)->GetSymbolIdAtPos(0), second->Id());
}

TEST_F(CalloutsArrivalTest, AnInsetThatComesAfterItsCalloutsTakesThemOver) {
  const auto inset = zrk::MakeObject<Inset>();
  const auto subset = AddScene(false);
  inset->SetSubsetScene(subset);
  const auto callout = MakeCallout(zrtest::NumberTemplate(), bolt_);
  callout->SetInsetAtPos(inset, 0);
  Add(callout);
  const auto onTop = AddCallout(zrtest::NumberTemplate(), nut_);
  onTop->BringToFront();
  ASSERT_NE(callout->GetSubsetScene(), subset);
  Add(inset);
  EXPECT_EQ(callout->GetSubsetScene(), subset);
  EXPECT_GT(callout->GetZOrder(), onTop->GetZOrder());
}

TEST_F(CalloutsArrivalTest, AnInsetHasOneObserverHoweverOftenItIsAnnounced) {
  const auto inset = zrk::MakeObject<Inset>();
  Add(inset);
  engine_->OnAddAnnotation(inset);
  EXPECT_EQ(inset->GetObserverCount(), 1u);
  Remove(inset);
  EXPECT_EQ(inset->GetObserverCount(), 0u);
  Add(inset);
  EXPECT_EQ(inset->GetObserverCount(), 1u);
}

struct CaptionCase {
  const char* name;
  bool hasCaption;
  bool visible;
  bool translatedBefore;
  std::string shown;
};

class InsetCaptionTest : public CalloutsArrivalTest, public ::testing::WithParamInterface<CaptionCase> {};

TEST_P(InsetCaptionTest, ShowsTheCurrentLanguageAsSoonAsTheInsetArrives) {
  const auto inset = zrk::MakeObject<Inset>();
  inset->SetCaptionText("Detail", false, false);
  if (GetParam().hasCaption) {
    const auto caption = zrk::MakeObject<zrk::Markup>();
    caption->SetVisible(GetParam().visible);
    inset->SetInsetCaption(caption);
  }
  if (GetParam().translatedBefore) {
    inset->SetupLocalizationIfNecessary();
    inset->GetLocalizableString().SetLocaleText("de", "Einzelheit");
    inset->GetLocalizableString().SetDeleted(true);
  }
  world_->ChangeLanguage("de");
  Add(inset);
  EXPECT_EQ(inset->GetCaptionText().GetString(), GetParam().shown);
  EXPECT_EQ(inset->GetLocalizableString().IsEnabled(), GetParam().visible || GetParam().translatedBefore);
}

INSTANTIATE_TEST_SUITE_P(Captions, InsetCaptionTest,
                         ::testing::Values(CaptionCase{"None", false, false, false, "Detail"},
                                           CaptionCase{"Hidden", true, false, false, "Detail"},
                                           CaptionCase{"HiddenButTranslated", true, false, true, "Einzelheit"},
                                           CaptionCase{"NoneButTranslated", false, false, true, "Einzelheit"},
                                           CaptionCase{"Visible", true, true, false, "Detail"}),
                         [](const auto& tested) { return std::string(tested.param.name); });

struct TextCase {
  const char* name;
  bool authoring;
  TemplateBuilder callouttemplate;
  bool excludesItemTag;
  bool rewritten;
};

class ArrivalTextTest : public CalloutsArrivalTest, public ::testing::WithParamInterface<TextCase> {
protected:
  ArrivalTextTest() : CalloutsArrivalTest({.authoring = GetParam().authoring}) {}
};

TEST_P(ArrivalTextTest, APlainTextIsKeptOutsideTheAuthoringApplication) {
  const auto callouttemplate = GetParam().callouttemplate.Build();
  callouttemplate->SetExcludesItemTagTest(GetParam().excludesItemTag);
  const auto callout = MakeCallout(callouttemplate, bolt_);
  callout->SetText("own words", false);
  Add(callout);
  EXPECT_EQ(TextOf(callout), GetParam().rewritten ? "template" : "own words");
}

INSTANTIATE_TEST_SUITE_P(
    Templates, ArrivalTextTest,
    ::testing::Values(
        TextCase{"PlainInViewer", false, TemplateBuilder().Literal("template"), false, false},
        TextCase{"PlainInAuthoring", true, TemplateBuilder().Literal("template"), false, true},
        TextCase{"WithPropertyInViewer", false, TemplateBuilder().Literal("template").Property("", ""), false, true},
        TextCase{"OtherKindInViewer", false, TemplateBuilder().Literal("template").OfType(5, "x"), false, true},
        TextCase{"ItemTag", false, TemplateBuilder().Literal("template").Named("Item Tag"), false, true},
        TextCase{"ItemTagExcluded", false, TemplateBuilder().Literal("template").Named("Item Tag"), true, false},
        TextCase{"ItemTagInLowerCase", false, TemplateBuilder().Literal("template").Named("item tag"), false, false},
        TextCase{"ItemTagsAndMore", false, TemplateBuilder().Literal("template").Named("Item Tags"), false, false},
        TextCase{"NoContent", true, TemplateBuilder(), false, false}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(CalloutsArrivalTest, ACombinedCalloutIsAlwaysRewritten) {
  const auto combined = MakeCombined(
      {MakeCallout(zrtest::TextTemplate("left"), bolt_), MakeCallout(zrtest::TextTemplate("right"), nut_)});
  combined->SetText("own words", false);
  Add(combined);
  EXPECT_EQ(TextOf(combined), "left\nright");
  EXPECT_EQ(CalloutsOn(bolt_), std::set<CalloutPtr>{combined});
  EXPECT_EQ(CalloutsOn(nut_), std::set<CalloutPtr>{combined->GetCalloutVec()[1]});
}

struct LocalisationCase {
  const char* name;
  bool authoring;
  bool notes;
  bool fileContainer;
  TemplateBuilder callouttemplate;
  bool localized;
  std::string key;
};

class ArrivalLocalisationTest : public CalloutsArrivalTest, public ::testing::WithParamInterface<LocalisationCase> {
protected:
  ArrivalLocalisationTest() : CalloutsArrivalTest({.authoring = GetParam().authoring}) {}
};

TEST_P(ArrivalLocalisationTest, OnlyTextCalloutsAreSetUpForTranslation) {
  const auto container = zrk::MakeObject<zrkapp::illustration::IllMultiRootContainer>();
  container->GetFileInfo()->GetLocalizationSettings()->SetNotes(GetParam().notes);
  if (GetParam().fileContainer) world_->SetMRC(container);
  const auto callout = AddCallout(GetParam().callouttemplate.Build(), bolt_);
  EXPECT_EQ(callout->GetLocalizableString().IsEnabled(), GetParam().localized);
  EXPECT_EQ(callout->GetLocalizableString().GetKey().GetString(), GetParam().key);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, ArrivalLocalisationTest,
    ::testing::Values(
        LocalisationCase{"Text", false, true, true, TemplateBuilder().Literal("Note"), true, ""},
        LocalisationCase{"TextAsNote", true, true, true, TemplateBuilder().Literal("Note"), true, "NoteContent"},
        LocalisationCase{"NotesOff", true, false, true, TemplateBuilder().Literal("Note"), true, ""},
        LocalisationCase{"NoFile", true, true, false, TemplateBuilder().Literal("Note"), true, ""},
        LocalisationCase{"ItemNumber", true, true, true, TemplateBuilder().Token("zrITM"), false, ""},
        LocalisationCase{"PartProperty", true, true, true, TemplateBuilder().Property("G", "N"), false, ""}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(CalloutsArrivalTest, TranslationsSurviveRemovalAndReturn) {
  const auto callout = AddCallout(zrtest::TextTemplate("Note"), bolt_);
  callout->SetText("Note", false);
  callout->SetupLocalizationIfNecessary(false);
  callout->GetLocalizableString().SetLocaleText("fr", "Remarque");
  Remove(callout);
  EXPECT_TRUE(callout->GetLocalizableString().IsDeleted());
  world_->ChangeLanguage("fr");
  EXPECT_EQ(TextOf(callout), "Note");
  Add(callout);
  EXPECT_FALSE(callout->GetLocalizableString().IsDeleted());
  EXPECT_EQ(TextOf(callout), "Remarque");
}

TEST_F(CalloutsArrivalTest, MembersWithoutLeadersLeaveACombinedCallout) {
  const auto number = zrtest::NumberTemplate();
  const auto gone = MakeCallout(number, Part{});
  const auto hidden = MakeCallout(number, bolt_);
  hidden->GetLeaders()[0]->SetHidden(true);
  const auto left = MakeCallout(number, nut_);
  const auto combined = zrk::MakeObject<zrannotations::CombinedCallout>();
  for (const auto& member : {gone, left, hidden}) combined->AddMember(member);
  Add(combined);
  EXPECT_EQ(combined->GetCalloutVec(), std::vector<CalloutPtr>{left});
  EXPECT_EQ(combined->GetLeaderLineCount(true), 1u);  // had none of its own: takes over those of the member
  EXPECT_TRUE(IsObserved(combined));

  const auto deserted = zrk::MakeObject<zrannotations::CombinedCallout>();
  deserted->AddMember(gone);
  Add(deserted);
  EXPECT_TRUE(deserted->GetCalloutVec().empty());
  EXPECT_EQ(deserted->GetLeaderLineCount(true), 0u);
  EXPECT_FALSE(scene_->GetAnnoSet()->Contains(deserted));
}

TEST_F(CalloutsArrivalTest, ACombinedCalloutWithLeadersOfItsOwnKeepsThem) {
  const auto combined = MakeCombined({MakeCallout(zrtest::NumberTemplate(), bolt_)});
  AddLeader(combined, nut_);
  const auto leaders = combined->GetLeaders();
  Add(combined);
  EXPECT_EQ(combined->GetLeaders(), leaders);
}

TEST_F(CalloutsArrivalTest, LeadersThatAreFoundAttachTheSceneUnlessTheInsetRefuses) {
  const auto found = Unresolved(zrtest::NumberTemplate(), bolt_);
  Add(found);
  EXPECT_EQ(found->GetShapeInstanceAtPos(0), bolt_.shape);
  EXPECT_EQ(found->GetSubsetScene(), scene_);
  EXPECT_EQ(found->GetSubsetSceneName(), "");

  const auto known = AddCallout(zrtest::NumberTemplate(), bolt_);
  EXPECT_FALSE(known->GetSubsetScene());

  const auto inset = zrk::MakeObject<Inset>();
  inset->SetBounds({dg::DPoint3D(50, 50, 50), dg::DPoint3D(60, 60, 60)});
  const auto outside = Unresolved(zrtest::NumberTemplate(), bolt_);
  outside->SetInsetAtPos(inset, 0);
  Add(outside);
  EXPECT_FALSE(outside->GetSubsetScene());
  inset->SetBounds({});
  const auto inside = Unresolved(zrtest::NumberTemplate(), bolt_);
  inside->SetInsetAtPos(inset, 0);
  Add(inside);
  EXPECT_EQ(inside->GetSubsetScene(), scene_);
}

TEST_F(CalloutsArrivalTest, WithoutLeadersOnlyATextCalloutStays) {
  const std::uint32_t item = AddItem(bolt_);
  const auto numbered = AddCallout(zrtest::NumberTemplate(), Part{}, item);
  EXPECT_FALSE(scene_->GetAnnoSet()->Contains(numbered));
  EXPECT_FALSE(IsObserved(numbered));
  EXPECT_TRUE(items_->IsIndicated(item));  // marked after its removal has cleared the mark

  const auto hidden = MakeCallout(zrtest::NumberTemplate(), bolt_);
  hidden->GetLeaders()[0]->SetHidden(true);
  Add(hidden);
  EXPECT_FALSE(scene_->GetAnnoSet()->Contains(hidden));
  EXPECT_TRUE(CalloutsOn(bolt_).empty());

  const auto note = AddCallout(zrtest::TextTemplate("Note"), Part{});
  EXPECT_TRUE(scene_->GetAnnoSet()->Contains(note));
  EXPECT_TRUE(IsObserved(note));
}

TEST_F(CalloutsArrivalTest, ASecondAnnouncementOnlyMarksTheItemAgain) {
  const std::uint32_t item = AddItem(bolt_);
  const auto callout = AddCallout(zrtest::NumberTemplate(), bolt_, item);
  EXPECT_EQ(TextOf(callout), "1");
  EXPECT_TRUE(items_->IsIndicated(item));
  callout->SetText("other", false);
  items_->SetIndicated(item, false);
  const unsigned texts = callout->GetSetTextCount();
  engine_->OnAddAnnotation(callout);
  EXPECT_EQ(callout->GetSetTextCount(), texts);
  EXPECT_TRUE(items_->IsIndicated(item));
}

TEST_F(CalloutsArrivalTest, ASecondAnnouncementReattachesMembers) {
  const auto combined = MakeCombined({MakeCallout(zrtest::NumberTemplate(), bolt_)});
  Add(combined);
  const auto late = MakeCallout(zrtest::NumberTemplate(), nut_);
  combined->GetCalloutVec().push_back(late);
  ASSERT_FALSE(late->GetParent());
  engine_->OnAddAnnotation(combined);
  EXPECT_EQ(late->GetParent(), combined);
}

TEST_F(CalloutsArrivalTest, TheLabelStaysWhileLeadersCatchUpWithTheirParts) {
  const auto callout = MakeCallout(zrtest::TextTemplate("Note"), nut_);
  AddLeader(callout, bolt_);
  callout->SetLabelPlacementState(1);
  callout->SetLabelPosition({3, 4, 5});
  const dg::Location moved(dg::FMat33::IDENTITY, dg::DPoint3D(10, 0, 0));
  nut_.shape->SetLocation(moved);
  bolt_.shape->SetLocation(moved);
  Add(callout);
  for (const auto& leader : callout->GetLeaders()) EXPECT_DOUBLE_EQ(leader->GetAnchor().x, 10);
  EXPECT_DOUBLE_EQ(callout->GetPosition().x, 3);
  EXPECT_DOUBLE_EQ(callout->GetPosition().y, 4);
}

TEST_F(CalloutsArrivalTest, OtherAnnotationsAreIgnored) {
  const auto other = zrk::MakeObject<zrk::Annotation>();
  Add(other);
  EXPECT_TRUE(scene_->GetAnnoSet()->Contains(other));
  Remove(other);
}

}  // namespace
