// Annotations that leave the scene, and callouts that go with a deleted 3D symbol.
#include <du/LocalizableString.h>
#include <zrannotations/ConstStrings.h>
#include <zrannotations/Inset.h>
#include <zrk/MakeObject.h>
#include <zrk/Observer.h>
#include <zrk/RecordOperation.h>
#include <zrk/UndoHistory.h>

#include "support/SceneFixture.h"

namespace {

using zrtest::CalloutPtr;
using zrtest::Part;
using zrtest::SceneFixture;

class CalloutsRemovalTest : public SceneFixture {
protected:
  Part bolt_ = structure_->AddPart(structure_->Root(), "bolt");
  Part nut_ = structure_->AddPart(structure_->Root(), "nut");
};

TEST_F(CalloutsRemovalTest, AnItemStaysIndicatedUntilItsLastCalloutGoes) {
  const std::uint32_t item = AddItem(bolt_);
  const auto first = AddCallout(zrtest::NumberTemplate(), bolt_, item);
  const auto second = AddCallout(zrtest::NumberTemplate(), nut_, item);
  Remove(first);
  EXPECT_TRUE(items_->IsIndicated(item));
  EXPECT_FALSE(IsObserved(first));
  EXPECT_FALSE(first->HasTemplateObserver());
  EXPECT_FALSE(first->IsUsingTemplate());
  EXPECT_TRUE(CalloutsOn(bolt_).empty());
  Remove(second);
  EXPECT_FALSE(items_->IsIndicated(item));
}

TEST_F(CalloutsRemovalTest, ACombinedCalloutClearsTheItemsThatNobodyElseShows) {
  const std::uint32_t boltItem = AddItem(bolt_);
  const std::uint32_t nutItem = AddItem(nut_);
  const auto combined = MakeCombined(
      {MakeCallout(zrtest::NumberTemplate(), bolt_, boltItem), MakeCallout(zrtest::NumberTemplate(), nut_, nutItem)});
  Add(combined);
  EXPECT_EQ(TextOf(combined), "1\n2");
  ASSERT_TRUE(items_->IsIndicated(boltItem) && items_->IsIndicated(nutItem));
  const auto single = AddCallout(zrtest::NumberTemplate(), nut_, nutItem);
  Remove(combined);
  EXPECT_FALSE(items_->IsIndicated(boltItem));
  EXPECT_TRUE(items_->IsIndicated(nutItem));
  EXPECT_EQ(CalloutsOn(nut_), std::set<CalloutPtr>{single});
}

TEST_F(CalloutsRemovalTest, ACalloutUsedByAnAnimationKeepsItsTranslations) {
  for (const bool referenced : {true, false}) {
    const auto callout = AddCallout(zrtest::TextTemplate("Note"), bolt_);
    callout->SetReferencedInAnimation(referenced);
    Remove(callout);
    EXPECT_EQ(callout->GetLocalizableString().IsDeleted(), !referenced);
  }
}

TEST_F(CalloutsRemovalTest, ARemovedInsetLetsGoButIsStillTracked) {
  const auto inset = zrk::MakeObject<zrannotations::Inset>();
  inset->RegisterTemplateObserver(zrk::MakeObject<zrk::Observer>());
  Add(inset);
  Remove(inset);
  EXPECT_EQ(inset->GetObserverCount(), 0u);
  EXPECT_TRUE(inset->IsReleased());
  EXPECT_FALSE(inset->HasTemplateObserver());
  const auto callout = MakeCallout(zrtest::NumberTemplate(), bolt_);
  callout->SetInsetAtPos(inset, 0);
  engine_->AddToMap(callout);
  EXPECT_EQ(inset->GetShownCallouts(), std::set<CalloutPtr>{callout});
}

class SymbolDeletionTest : public CalloutsRemovalTest {
protected:
  SymbolDeletionTest() {
    Add(symbol_.symbol);
    byFurtherLeader_ = MakeCallout(zrtest::TextTemplate("further"), bolt_);
    AddLeader(byFurtherLeader_, symbol_);
    Add(byFurtherLeader_);
    foreign_ = MakeCallout(zrtest::TextTemplate("foreign"), symbol_);
    foreign_->SetClass("Foreign");
    Add(foreign_);
    referenced_ = MakeCallout(zrtest::TextTemplate("referenced"), symbol_);
    scene_->GetAnnoSet()->AddReferencedAnnotation(referenced_);
  }

  [[nodiscard]] bool IsIn(const CalloutPtr& callout) const { return scene_->GetAnnoSet()->Contains(callout); }

  Part symbol_ = structure_->AddSymbol("S");
  CalloutPtr onSymbol_ = AddCallout(zrtest::TextTemplate("symbol"), symbol_);
  CalloutPtr onOther_ = AddCallout(zrtest::TextTemplate("other"), structure_->AddSymbol("SS"));
  CalloutPtr byFurtherLeader_;
  CalloutPtr foreign_;
  CalloutPtr referenced_;
};

TEST_F(SymbolDeletionTest, TakesItsCalloutsAlongInTheSameOperation) {
  const auto operation = zrk::MakeObject<zrk::Operation>("delete", scene_, true);
  scene_->GetAnnoSet()->RemoveAnnotationWithDependencies(symbol_.symbol, operation);
  zrk::RecordOperation(operation);
  EXPECT_FALSE(IsIn(onSymbol_));
  EXPECT_TRUE(IsIn(onOther_));
  EXPECT_TRUE(IsIn(byFurtherLeader_));
  EXPECT_TRUE(IsIn(foreign_));
  EXPECT_TRUE(scene_->GetAnnoSet()->GetReferencedAnnotations().empty());

  ASSERT_TRUE(zrk::UndoHistory::Undo(scene_));
  EXPECT_TRUE(IsIn(onSymbol_));
  EXPECT_TRUE(IsObserved(onSymbol_));
  EXPECT_TRUE(scene_->GetAnnoSet()->Contains(symbol_.symbol));
  EXPECT_EQ(scene_->GetAnnoSet()->GetReferencedAnnotations().size(), 1u);
  ASSERT_TRUE(zrk::UndoHistory::Redo(scene_));
  EXPECT_FALSE(IsIn(onSymbol_));
}

TEST_F(SymbolDeletionTest, AnotherAnnotationTakesNothingAlong) {
  const auto operation = zrk::MakeObject<zrk::Operation>("delete", scene_, true);
  const auto impostor = zrk::MakeObject<zrk::Annotation>(du::Symbol(zrannotations::ConstStrings::zrSymbol3D));
  for (const auto& annotation :
       {du::SmartPtr<zrk::Annotation>(byFurtherLeader_), impostor, du::SmartPtr<zrk::Annotation>()}) {
    engine_->OnAnnotationDeleted(annotation, operation);
  }
  EXPECT_TRUE(IsIn(onSymbol_));
  EXPECT_EQ(operation->GetStepCount(), 0u);
}

}  // namespace
