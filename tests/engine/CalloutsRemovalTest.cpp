// Annotations that leave the scene, and callouts that go with a deleted 3D symbol.
#include <zrannotations/ConstStrings.h>
#include <zrk/MakeObject.h>
#include <zrk/RecordOperation.h>
#include <zrk/UndoHistory.h>

#include "engine/EngineFixture.h"

namespace {

using zrtest::CalloutPtr;

using CalloutsRemovalTest = zrtest::EngineFixture;

TEST_F(CalloutsRemovalTest, AnItemStaysIndicatedUntilItsLastCalloutGoes) {
  const std::uint32_t boltItem = AddItem(bolt_);
  const std::uint32_t nutItem = AddItem(nut_);
  const auto combined = MakeCombined({MakeNumber(bolt_, boltItem), MakeNumber(nut_, nutItem)});
  Add(combined);
  ASSERT_TRUE(items_->IsIndicated(boltItem) && items_->IsIndicated(nutItem));
  const auto single = AddNumber(nut_, nutItem);
  Remove(combined);
  EXPECT_FALSE(items_->IsIndicated(boltItem));
  EXPECT_TRUE(items_->IsIndicated(nutItem));
  EXPECT_EQ(CalloutsOn(nut_), std::set<CalloutPtr>{single});
  Remove(single);
  EXPECT_FALSE(items_->IsIndicated(nutItem));
  EXPECT_FALSE(IsObserved(single));
  EXPECT_FALSE(single->HasTemplateObserver());
  EXPECT_FALSE(single->IsUsingTemplate());
}

TEST_F(CalloutsRemovalTest, ADeletedSymbolTakesItsCalloutsAlongInTheSameOperation) {
  const auto annoSet = scene_->GetAnnoSet();
  const auto symbol = structure_->AddSymbol("S");
  Add(symbol.symbol);
  const auto onSymbol = AddNote(symbol);
  const auto onOther = AddNote(structure_->AddSymbol("SS"));
  const auto byFurtherLeader = MakeNote(bolt_);
  AddLeader(byFurtherLeader, symbol);
  Add(byFurtherLeader);
  const auto foreign = MakeNote(symbol);
  foreign->SetClass("Foreign");
  Add(foreign);
  annoSet->AddReferencedAnnotation(MakeNote(symbol));

  const auto operation = zrk::MakeObject<zrk::Operation>("delete", scene_, true);
  const auto impostor = zrk::MakeObject<zrk::Annotation>(du::Symbol(zrannotations::ConstStrings::zrSymbol3D));
  for (const auto& other : {du::SmartPtr<zrk::Annotation>(byFurtherLeader), impostor, {}}) {
    engine_->OnAnnotationDeleted(other, operation);
  }
  EXPECT_TRUE(IsIn(onSymbol));
  EXPECT_EQ(operation->GetStepCount(), 0u);

  annoSet->RemoveAnnotationWithDependencies(symbol.symbol, operation);
  zrk::RecordOperation(operation);
  EXPECT_FALSE(IsIn(onSymbol));
  for (const auto& kept : {onOther, byFurtherLeader, foreign}) EXPECT_TRUE(IsIn(kept));
  EXPECT_TRUE(annoSet->GetReferencedAnnotations().empty());

  ASSERT_TRUE(zrk::UndoHistory::Undo(scene_));
  EXPECT_TRUE(IsIn(onSymbol) && IsObserved(onSymbol) && IsIn(symbol.symbol));
  EXPECT_EQ(annoSet->GetReferencedAnnotations().size(), 1u);
  ASSERT_TRUE(zrk::UndoHistory::Redo(scene_));
  EXPECT_FALSE(IsIn(onSymbol));
}

}  // namespace
