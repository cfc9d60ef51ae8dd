// The operations beside the automatic run: given items, callouts made elsewhere, symbols, manual creation, copies.
#include <algorithm>

#include <dg/Camera3D.h>
#include <dg/Pipeline.h>
#include <du/Tracer.h>
#include <zrannotations/CalloutTemplates.h>
#include <zrcontext/Context2D.h>
#include <zrk/MakeObject.h>
#include <zrk/PickService.h>
#include <zrk/RecordOperation.h>
#include <zrk/UndoHistory.h>

#include "support/GeneratorFixture.h"

namespace {

using zrk::UndoHistory;
using zrtest::CalloutPtr;
using zrtest::GeneratorFixture;
using zrtest::Names;
using zrtest::Part;
using zrtest::TemplateBuilder;
using OperationPtr = du::SmartPtr<zrk::Operation>;

class GeneratorFinishTest : public GeneratorFixture {
protected:
  zrtest::TemplatePtr KnownTemplate(const std::string& id) {
    auto known = TemplateBuilder().Literal("No. ").Token("zrITM").Build();
    known->SetId(id);
    zrannotations::AddCalloutTemplate(known);
    return known;
  }
};

class WithOperationTest : public GeneratorFinishTest, public ::testing::WithParamInterface<bool> {
protected:
  [[nodiscard]] OperationPtr GivenOperation() const { return GetParam() ? MakeOperation() : OperationPtr(); }

  // A given operation is left to the caller to record; here the caller does so.
  void ExpectOneUndoable(const OperationPtr& given) {
    ASSERT_EQ(RecordedCount(), GetParam() ? 0u : 1u);
    if (GetParam()) zrk::RecordOperation(given);
    const auto shown = Describe();
    ASSERT_TRUE(UndoHistory::Undo(scene_));
    EXPECT_NE(Describe(), shown);
    ASSERT_TRUE(UndoHistory::Redo(scene_));
    EXPECT_EQ(Describe(), shown);
  }
};

INSTANTIATE_TEST_SUITE_P(Operation, WithOperationTest, ::testing::Bool(),
                         [](const auto& tested) { return std::string(tested.param ? "Given" : "OwnOne"); });

TEST_P(WithOperationTest, ItemIdsAreCalledOutInTheGivenOrderWithTheChosenTemplate) {
  for (const char* item : {"bolt", "bolt#2", "nut", "washer"}) AddItemOf(item);
  const auto old = AddCallout(zrtest::NumberTemplate(), PartOf("washer"), 3);
  const auto other = KnownTemplate("other");
  const auto chosen = KnownTemplate("chosen");
  const auto operation = GivenOperation();
  static_cast<void>(du::Tracer::TakeEntries());
  MakeGenerator()->AddOnItemIds({3, 99, 2, 1}, "chosen", operation);
  Names traced;
  for (const auto& entry : du::Tracer::TakeEntries()) {
    if (entry.text.find("Insert sBOM") != std::string::npos) traced.push_back(entry.text);
  }
  const std::string message = "CalloutGenerator::AddOnItemIds() Insert sBOM instance ";
  ASSERT_EQ(traced.size(), 4u);
  EXPECT_EQ(traced[1], message + PartOf("nut").sbom->GetObjectName());
  EXPECT_EQ(Describe(), Names({"No. 3: washer", "No. 2: nut", "No. 1: bolt", "No. 1: bolt#2"}));
  EXPECT_EQ(Shown().front(), old);  // changed over to the chosen template instead of joined by another
  EXPECT_EQ(engine_->GetTemplate(), chosen);
  EXPECT_EQ(chosen->GetReferenceResolution(), 96.0);
  EXPECT_EQ(other->GetReferenceResolution(), 0.0);
  ExpectOneUndoable(operation);
  UndoHistory::Undo(scene_);
  EXPECT_EQ(Describe(), Names({"3: washer"}));
  EXPECT_NE(old->GetDefinition(), chosen);
  UndoHistory::Redo(scene_);
  EXPECT_EQ(old->GetDefinition(), chosen);
}

TEST_F(GeneratorFinishTest, AnUnknownTemplateIdLeavesTemplateAndCalloutsAsTheyAre) {
  AddItemOf("washer");
  const auto old = AddCallout(TemplateBuilder().Token("zrITM").Literal("!").Build(), PartOf("washer"), 1);
  const auto before = engine_->GetTemplate();
  KnownTemplate("other");
  MakeGenerator()->AddOnItemIds({}, "other", nullptr);
  EXPECT_EQ(engine_->GetTemplate(), before);
  EXPECT_EQ(RecordedCount(), 0u);
  AddItemOf("nut");
  MakeGenerator()->AddOnItemIds({2}, "nobody", nullptr);
  EXPECT_EQ(engine_->GetTemplate(), before);
  EXPECT_EQ(Describe(), Names({"1!: washer", "2: nut"}));
}

TEST_P(WithOperationTest, CalloutsMadeElsewhereGetItemsAndSymbolIdsAndAreShown) {
  const auto symbol = structure_->AddSymbol("s1");
  const auto unknownSymbol = structure_->AddSymbol("s2");
  Add(symbol.symbol);
  AddItemOf("washer");
  AddItemOf("nut");
  items_->SetItemized(2, false);
  const auto number = zrtest::NumberTemplate();
  const auto note = zrtest::TextTemplate("Note");
  const std::vector<CalloutPtr> made = {MakeCallout(number, PartOf("bolt")),   MakeCallout(number, PartOf("washer")),
                                        MakeCallout(number, PartOf("nut")),    MakeCallout(note, symbol),
                                        MakeCallout(note, unknownSymbol),      MakeCallout(note, PartOf("nut")),
                                        MakeCallout(number, PartOf("washer")), MakeCallout(note, Part())};
  const auto textless = zrk::MakeObject<zrannotations::Callout>();
  auto callouts = made;
  callouts.insert(callouts.begin() + 2, {textless, nullptr});
  made[4]->SetSymbolIdAtPos(77, 0);
  const auto generator = MakeGenerator();
  auto operation = GivenOperation();
  const auto given = operation;
  generator->AddCallouts(callouts, operation);
  ASSERT_TRUE(operation);
  EXPECT_TRUE(!GetParam() || operation == given);
  std::vector<std::uint32_t> itemIds;
  for (const auto& callout : made) {
    std::uint32_t itemId = 0;
    static_cast<void>(callout->GetItemId(itemId));
    itemIds.push_back(itemId);
  }
  EXPECT_EQ(itemIds, std::vector<std::uint32_t>({3, 1, 0, 0, 0, 0, 1, 0}));
  EXPECT_EQ(made[3]->GetSymbolIdAtPos(0), symbol.symbol->Id());
  EXPECT_EQ(made[4]->GetSymbolIdAtPos(0), 0u);
  // The second callout of item 1 on the washer is refused, yet shown with the rest; what has no content is not.
  EXPECT_EQ(generator->GetCreatedCallouts().count(made[6]), 0u);
  EXPECT_EQ(generator->GetCreatedCallouts().count(made[1]), 1u);
  EXPECT_TRUE(scene_->GetAnnoSet()->Contains(made[6]));
  EXPECT_FALSE(scene_->GetAnnoSet()->Contains(textless));
  EXPECT_EQ(TextOf(made[0]), "3");
  ExpectOneUndoable(operation);
  UndoHistory::Undo(scene_);
  EXPECT_EQ(items_->GetItemIds(), std::vector<unsigned>({1, 2}));
}

TEST_F(GeneratorFinishTest, SymbolsOfOneShapeShareACalloutAsTheSettingsSay) {
  const struct {
    bool combine, drawOne;
    Names shown;
    std::size_t last;  // the one that the third symbol is on
  } cases[] = {
      {false, false, {"Note: /s1", "Note: /s2", "Note: /s3"}, 2},
      {true, false, {"Note: /s1 /s3", "Note: /s2"}, 0},
      {false, true, {"Note: /s1 /s3*", "Note: /s2"}, 0},
  };
  engine_->SetTemplate(zrtest::TextTemplate("Note"));
  const auto first = structure_->AddSymbol("s1");
  const auto other = structure_->AddSymbol("s2");
  Part twin = structure_->AddSymbol("s3");
  scene_->RemoveShapeInstance(twin.shape);
  twin.shape = zrk::MakeObject<zrk::ShapeInstance>(twin.design, first.shape->GetShape(), first.shape->GetBoundingBox(),
                                                   first.shape->GetLocation());
  scene_->AddShapeInstance(twin.shape);
  for (const auto& part : {first, other, twin}) Add(part.symbol);
  MakeGenerator()->AddOnSymbols({});
  for (const auto& tested : cases) {
    EXPECT_EQ(RecordedCount(), 0u);
    engine_->SetCombineForSamePart(tested.combine);
    engine_->SetDrawOneForSamePart(tested.drawOne);
    MakeGenerator()->AddOnSymbols({first.design, nullptr, other.design, PartOf("stub").design, twin.design});
    ASSERT_EQ(Describe(), tested.shown);
    const auto last = Shown()[tested.last];
    EXPECT_EQ(last->GetSymbolIdAtPos(last->GetLeaderLineCount(true) - 1), twin.symbol->Id());
    ASSERT_EQ(RecordedCount(), 1u);
    UndoHistory::Undo(scene_);
    EXPECT_EQ(Describe(), Names());
  }
}

TEST_F(GeneratorFinishTest, ManualCreationGoesByItemsAndLeavesShowingToTheCaller) {
  engine_->SetTemplate(TemplateBuilder().Property("Data", "Mass").Build());
  for (const char* name : {"bolt", "bolt#2", "weld"}) SetProperty(name, "Data", "Mass", name);
  const auto generator = MakeGenerator();
  OperationPtr operation;
  generator->CreateManuallyOnSelected(Select({"bolt", "bolt#2", "weld/rib"}), operation);
  ASSERT_TRUE(operation);
  EXPECT_EQ(generator->GetCreatedCallouts().size(), 3u);
  EXPECT_EQ(Describe(), Names());
  EXPECT_EQ(RecordedCount(), 0u);
  EXPECT_TRUE(CalloutsOn(PartOf("bolt")).empty());
  for (const auto& callout : generator->GetCreatedCallouts()) {
    EXPECT_TRUE(callout->CarriesItemId(1) || callout->CarriesItemId(2));
    EXPECT_EQ(TextOf(callout), "");
  }
  zrk::illustration::ItemRow row;
  ASSERT_TRUE(items_->GetRow(1, row));
  EXPECT_TRUE(row.addedByHand);
  generator->ShowCreatedCallouts(operation);
  EXPECT_EQ(Describe(), Names({"bolt: bolt", "bolt#2: bolt#2", "weld: weld"}));
  operation->Undo();
  EXPECT_EQ(Describe(), Names());
  EXPECT_TRUE(items_->GetItemIds().empty());
}

TEST_F(GeneratorFinishTest, CopiedPartsGetItemsAndNothingElse) {
  AddItemOf("nut");
  const auto operation = MakeOperation();
  auto callout = MakeCallout(zrtest::NumberTemplate(), PartOf("nut"), 1);
  const auto generator = MakeGenerator();
  generator->AddOnCopySteps(Select({"nut", "", "bolt"}), callout, operation);
  EXPECT_EQ(items_->GetItemIds(), std::vector<unsigned>({1, 2}));
  zrk::illustration::ItemRow row;
  ASSERT_TRUE(items_->GetRow(2, row));
  EXPECT_FALSE(row.addedByHand);
  EXPECT_TRUE(generator->GetCreatedCallouts().empty());
  EXPECT_EQ(Describe(), Names());
  operation->Undo();
  EXPECT_EQ(items_->GetItemIds(), std::vector<unsigned>({1}));
}

TEST_F(GeneratorFinishTest, RemovedItemsTakeTheirCalloutsAlongUndoably) {
  Run({"bolt", "nut", "washer"});
  const auto operation = MakeOperation();
  const unsigned dirty = view_->GetDirtyCount();
  MakeGenerator()->RemoveFromItemIds({}, operation);
  EXPECT_EQ(view_->GetDirtyCount(), dirty);
  MakeGenerator()->RemoveFromItemIds({3, 42, 1}, operation);
  EXPECT_GT(view_->GetDirtyCount(), dirty);
  EXPECT_EQ(Describe(), Names({"2: nut"}));
  operation->Undo();
  auto shown = Describe();
  std::sort(shown.begin(), shown.end());
  EXPECT_EQ(shown, Names({"1: bolt", "2: nut", "3: washer"}));
}

// Sees the named parts only, at their upper end.
struct Sight : zrk::PickService {
  bool FindVisiblePoint(const du::SmartPtr<zrk::ShapeView>&, const du::SmartPtr<zrk::ShapeInstance>& shape,
                        dg::DPoint3D& point) override {
    if (visible.count(shape) == 0) return false;
    point = shape->GetLocation().GetPos();
    point.z += 0.5;
    return true;
  }
  std::set<du::SmartPtr<zrk::ShapeInstance>> visible;
};

TEST_F(GeneratorFinishTest, AShownLeaderOnAPartOutOfSightChangesPlacesWithAHiddenOne) {
  const struct {
    Names visible;
    const char* shown;
  } cases[] = {
      {{}, "1: bolt bolt#2*"},
      {{"bolt"}, "1: bolt bolt#2*"},
      {{"bolt#2"}, "1: bolt* bolt#2"},
      {{"bolt", "bolt#2"}, "1: bolt bolt#2*"},
  };
  const auto sight = zrk::MakeObject<Sight>();
  view_->SetPickService(sight);
  engine_->SetDrawOneForSamePart(true);
  for (const auto& tested : cases) {
    sight->visible.clear();
    for (const auto& name : tested.visible) sight->visible.insert(PartOf(name).shape);
    Run({"bolt", "bolt#2"});
    EXPECT_EQ(Describe(), Names({tested.shown}));
    for (const auto& leader : Shown().at(0)->GetLeaders()) {
      const bool seen = sight->visible.count(leader->GetShapeInstance()) != 0;
      EXPECT_EQ(leader->IsAnchorCalculated(), seen);
      EXPECT_EQ(leader->GetAnchor().z, seen ? 0.5 : 0.0);
    }
    UndoHistory::Undo(scene_);
    UndoHistory::Redo(scene_);
    EXPECT_EQ(Describe(), Names({tested.shown}));
    UndoHistory::Undo(scene_);
  }
}

TEST_F(GeneratorFinishTest, LabelsStandBesideTheModelAndApartFromEachOther) {
  dg::Camera3D camera;
  camera.SetParallel({18, 0, 0}, {0, 0, -1}, {0, 1, 0}, 12, 1600, 1200);
  view_->SetCamera(camera);
  const auto earlier = AddCallout(zrtest::TextTemplate("standing here"), PartOf("washer"));
  earlier->SetLabelPosition({0, 20, 0});
  const dg::DPoint3D before = earlier->GetPosition();
  Run({"bolt", "bolt#2", "nut", "washer", "frame/beam", "frame/beam#2", "weld/plate"});
  EXPECT_EQ(earlier->GetPosition().y, before.y);
  dg::Pipeline pipeline(2);
  pipeline.SetCamera(camera);
  zrcontext::Context2D context;
  std::vector<dg::DBox> boxes;
  for (const auto& shape : scene_->GetShapeInstances()) {
    const dg::DPoint3D centre = shape->GetLocation().GetPos() * camera.GetObjectToPixel();
    boxes.push_back({{centre.x - 6, centre.y - 6, 0}, {centre.x + 6, centre.y + 6, 0}});
  }
  ASSERT_EQ(Shown().size(), 8u);
  for (const auto& callout : Shown()) {
    const dg::DBox label = callout->GetMarkupPixelBBox(pipeline, &context, 24);
    const auto overlaps = [&](const dg::DBox& other) {
      return label.min.x < other.max.x && other.min.x < label.max.x && label.min.y < other.max.y &&
             other.min.y < label.max.y;
    };
    EXPECT_TRUE(overlaps({{0, 0, 0}, {1600, 1200, 0}})) << TextOf(callout);
    EXPECT_TRUE(std::none_of(boxes.begin(), boxes.end(), overlaps)) << TextOf(callout);
    boxes.push_back(label);
  }
}

}  // namespace
