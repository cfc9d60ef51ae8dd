#include "StructureFixture.h"

#include <zrk/ComponentInstance.h>
#include <zrk/SceneListener.h>
#include <zrk/Shape.h>
#include <zrk/ShapeInstance.h>

namespace zrtest {

using zrk::ShapeInstance;
using zrk::ShapeScene;

namespace {

/// Writes down what it finds in the scene at the time of each notification.
class ShapeRecorder final : public zrk::SceneListener {
public:
  using Shape = du::SmartPtr<ShapeInstance>;
  void OnShapeInstanceCreate(const Shape& shape) override { Note("created", shape); }
  void OnShapeInstanceRemove(const Shape& shape) override { Note("removed", shape); }
  void OnShapeInstanceLocation(const Shape& shape) override {
    Note("moved to " + std::to_string(static_cast<int>(shape->GetLocation().GetPos().x)), shape);
  }
  void OnShapeInstanceVisibility(const Shape& shape, bool visible) override {
    Note(visible == shape->IsVisible() ? "switched" : "announced too early", shape);
  }
  void OnPaletteColorChanged() override { log.push_back("palette"); }

  Log log;

private:
  void Note(const std::string& what, const Shape& shape) {
    const auto scene = shape->GetShapeScene();
    const bool known = scene && scene->GetShapeInstance(shape->GetInstance()) == shape;
    log.push_back(what + (known ? " known" : scene ? " unknown" : " homeless"));
  }
};

}  // namespace

class ShapeSceneTest : public StructureTest {
protected:
  static du::SmartPtr<ShapeInstance> MakeShape(const du::SmartPtr<zrk::Instance>& instance) {
    return zrk::MakeObject<ShapeInstance>(instance, zrk::MakeObject<zrk::Shape>("shape"), dg::DBox(), dg::Location());
  }
};

TEST_F(ShapeSceneTest, NotificationsFollowTheChange) {
  const auto recorder = zrk::MakeObject<ShapeRecorder>();
  scene_->AddListener(recorder);
  const auto shape = MakeShape(AddPart(MakeNode("bolt"))->GetEbomInstance());
  dg::Location location;
  location.SetPos({7, 0, 0});
  shape->SetVisible(true);

  scene_->AddShapeInstance(shape);
  scene_->AddShapeInstance(shape);
  shape->SetLocation(location);
  shape->SetVisible(false);
  scene_->NotifyPaletteChanged();
  scene_->RemoveShapeInstance(shape);
  scene_->RemoveShapeInstance(shape);
  shape->SetVisible(true);
  EXPECT_EQ(recorder->log, (Log{"created known", "moved to 7 known", "switched known", "palette", "removed unknown"}));
  EXPECT_FALSE(shape->GetShapeScene());
}

TEST_F(ShapeSceneTest, LeaderIdsFindPartsAndSymbols) {
  const Part part = AddPart(MakeNode("bolt"));
  const auto plain = zrk::MakeObject<zrk::Instance>(MakeNode("loose"), nullptr, "loose");
  const auto symbol = zrk::MakeObject<zrk::Instance>(zrk::MakeObject<zrk::ComponentInstance>("arrow"), plain);
  EXPECT_TRUE(symbol->Is3dSymbol());
  const std::pair<const char*, du::SmartPtr<zrk::Instance>> cases[] = {
      {"product/bolt", part->GetEbomInstance()}, {"loose", plain}, {"/arrow", symbol}};
  for (const auto& [id, instance] : cases) {
    const auto shape = MakeShape(instance);
    scene_->AddShapeInstance(shape);
    EXPECT_EQ(scene_->FindShapeInstance(id), shape) << id;
    EXPECT_EQ(scene_->GetShapeInstance(instance), shape) << id;
  }
  scene_->AddShapeInstance(MakeShape(nullptr));
  EXPECT_FALSE(scene_->FindShapeInstance("arrow"));
  EXPECT_FALSE(scene_->FindShapeInstance(""));
  EXPECT_FALSE(scene_->GetShapeInstance(nullptr));
  EXPECT_EQ(scene_->GetShapeInstances().size(), 4u);
}

TEST_F(ShapeSceneTest, NextShapeOfAnInstanceAnswersWhenTheFirstGoes) {
  const auto instance = AddPart(MakeNode("bolt"))->GetEbomInstance();
  const auto first = MakeShape(instance);
  const auto second = MakeShape(instance);
  scene_->AddShapeInstance(first);
  scene_->AddShapeInstance(second);
  EXPECT_EQ(scene_->GetShapeInstance(instance), first);
  scene_->RemoveShapeInstance(first);
  EXPECT_EQ(scene_->GetShapeInstance(instance), second);
  EXPECT_EQ(scene_->FindShapeInstance("product/bolt"), second);
}

TEST_F(ShapeSceneTest, ShapeInstanceBelongsToOneSceneAndOutlivesIt) {
  const auto shape = MakeShape(nullptr);
  auto other = zrk::MakeObject<ShapeScene>();
  other->AddShapeInstance(shape);
  scene_->AddShapeInstance(shape);
  EXPECT_TRUE(scene_->GetShapeInstances().empty());
  other.Reset();
  EXPECT_FALSE(shape->GetShapeScene());
  shape->SetVisible(false);
  scene_->AddShapeInstance(shape);
  EXPECT_EQ(shape->GetShapeScene(), scene_);
}

TEST_F(ShapeSceneTest, InstancesKnowTheirPlace) {
  const auto top = zrk::MakeObject<zrk::Instance>(MakeNode("top"), nullptr, "top");
  auto middle = zrk::MakeObject<zrk::Instance>(MakeNode("middle"), top, "middle");
  auto leaf = zrk::MakeObject<zrk::Instance>(MakeNode("leaf"), middle, "leaf");
  EXPECT_EQ(leaf->GetRootContainerRoot(), top);
  EXPECT_EQ(top->GetRootContainerRoot(), top);
  EXPECT_EQ(leaf->GetDepth(), 2u);
  EXPECT_EQ(leaf->GetId().GetString(), "top/middle/leaf");
  EXPECT_TRUE(top->HasChildren());
  leaf.Reset();
  EXPECT_FALSE(middle->HasChildren());
  middle.Reset();
  EXPECT_FALSE(top->HasChildren());
}

TEST_F(ShapeSceneTest, AddressOrderIsCreationOrder) {
  const Node node = MakeNode("bolt");
  Part previous = AddPart(node);
  for (int i = 0; i < 100; ++i) {
    const Part next = AddPart(node);
    ASSERT_LT(previous, next);
    ASSERT_LT(previous->GetEbomInstance(), next->GetEbomInstance());
    previous = next;
  }
}

}  // namespace zrtest
