#include <zrk/ShapeScene.h>

#include <zrk/ComponentInstance.h>
#include <zrk/SceneListener.h>

#include "StructureFixture.h"

namespace zrtest {

/// Writes down what it finds in the scene at the time of each notification.
struct ShapeRecorder final : zrk::SceneListener {
  void OnShapeInstanceCreate(const ShapePtr& shape) override { Note("created", shape); }
  void OnShapeInstanceRemove(const ShapePtr& shape) override { Note("removed", shape); }
  void OnShapeInstanceLocation(const ShapePtr& shape) override {
    Note("moved to " + std::to_string(static_cast<int>(shape->GetLocation().GetPos().x)), shape);
  }
  void OnShapeInstanceVisibility(const ShapePtr& shape, bool visible) override {
    Note(visible == shape->IsVisible() ? "switched" : "announced too early", shape);
  }
  void OnPaletteColorChanged() override { log.push_back("palette"); }
  void Note(const std::string& what, const ShapePtr& shape) {
    const auto scene = shape->GetShapeScene();
    const bool known = scene && scene->GetShapeInstance(shape->GetInstance()) == shape;
    log.push_back(what + (known ? " known" : scene ? " unknown" : " homeless"));
  }
  Log log;
};

class ShapeSceneTest : public StructureTest {
protected:
  static ShapePtr MakeShape(const du::SmartPtr<zrk::Instance>& instance) {
    return MakeObject<zrk::ShapeInstance>(instance, MakeObject<zrk::Shape>("shape"), dg::DBox(), dg::Location());
  }
};

TEST_F(ShapeSceneTest, NotificationsFollowTheChange) {
  const auto recorder = MakeObject<ShapeRecorder>();
  scene_->AddListener(recorder);
  const auto shape = MakeShape(AddPart(MakeNode("bolt"))->GetEbomInstance());
  shape->SetVisible(true);

  scene_->AddShapeInstance(shape);
  scene_->AddShapeInstance(shape);
  shape->SetLocation(At({7, 0, 0}));
  shape->SetVisible(false);
  scene_->NotifyPaletteChanged();
  scene_->RemoveShapeInstance(shape);
  scene_->RemoveShapeInstance(shape);
  shape->SetVisible(true);
  EXPECT_EQ(recorder->log, (Log{"created known", "moved to 7 known", "switched known", "palette", "removed unknown"}));
  EXPECT_FALSE(shape->GetShapeScene());
}

TEST_F(ShapeSceneTest, LeaderIdsFindPartsAndSymbols) {
  const PartPtr part = AddPart(MakeNode("bolt")), next = AddPart(MakeNode("next"));
  EXPECT_LT(part, next) << "the order of addresses is that of creation";
  EXPECT_LT(part->GetEbomInstance(), next->GetEbomInstance());
  const auto plain = MakeObject<zrk::Instance>(MakeNode("loose"), nullptr, "loose");
  const auto symbol = MakeObject<zrk::Instance>(MakeObject<zrk::ComponentInstance>("arrow"), plain);
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
  const PartPtr bolt = AddPart(MakeNode("bolt"));
  const auto instance = bolt->GetEbomInstance();
  const auto first = AddShape(bolt, 1, {}), second = AddShape(bolt, 1, {});
  EXPECT_EQ(scene_->GetShapeInstance(instance), first);
  scene_->RemoveShapeInstance(first);
  EXPECT_EQ(scene_->GetShapeInstance(instance), second);
  EXPECT_EQ(scene_->FindShapeInstance("product/bolt"), second);
}

TEST_F(ShapeSceneTest, ShapeInstanceBelongsToOneSceneAndOutlivesIt) {
  const auto shape = MakeShape(nullptr);
  auto other = MakeObject<zrk::ShapeScene>();
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
  const auto top = MakeObject<zrk::Instance>(MakeNode("top"), nullptr, "top");
  auto middle = MakeObject<zrk::Instance>(MakeNode("middle"), top, "middle");
  auto leaf = MakeObject<zrk::Instance>(MakeNode("leaf"), middle, "leaf");
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

}  // namespace zrtest
