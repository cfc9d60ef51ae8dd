#include <zrk/ShapeScene.h>

#include <zrk/ComponentInstance.h>
#include <zrk/SceneListener.h>

#include "../HostFixture.h"

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
  void Note(const std::string& what, const ShapePtr& shape) {
    const auto scene = shape->GetShapeScene();
    const bool known = scene && scene->GetShapeInstance(shape->GetInstance()) == shape;
    log.push_back(what + (known ? " known" : scene ? " unknown" : " homeless"));
  }
  Log log;
};

class ShapeSceneTest : public HostFixture {
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

  auto other = MakeObject<zrk::ShapeScene>();
  other->AddShapeInstance(shape);
  scene_->AddShapeInstance(shape);
  EXPECT_EQ(recorder->log, Log()) << "it belongs to another scene";
  other.Reset();
  EXPECT_FALSE(shape->GetShapeScene());
  for (int i = 0; i < 2; ++i) scene_->AddShapeInstance(shape);
  shape->SetLocation(At({7, 0, 0}));
  shape->SetVisible(false);
  for (int i = 0; i < 2; ++i) scene_->RemoveShapeInstance(shape);
  shape->SetVisible(true);
  EXPECT_EQ(recorder->log, (Log{"created known", "moved to 7 known", "switched known", "removed unknown"}));
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
    const auto shape = MakeShape(instance), second = MakeShape(instance);
    for (const auto& added : {shape, second}) scene_->AddShapeInstance(added);
    EXPECT_EQ(scene_->FindShapeInstance(id), shape) << id;
    scene_->RemoveShapeInstance(shape);
    EXPECT_EQ(scene_->FindShapeInstance(id), second) << "the next one answers when the first goes";
    EXPECT_EQ(scene_->GetShapeInstance(instance), second) << id;
  }
  scene_->AddShapeInstance(MakeShape(nullptr));
  for (const char* unknown : {"arrow", ""}) EXPECT_FALSE(scene_->FindShapeInstance(unknown));
  EXPECT_FALSE(scene_->GetShapeInstance(nullptr));
}

}  // namespace zrtest
