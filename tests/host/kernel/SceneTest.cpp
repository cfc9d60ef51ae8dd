#include <zrk/Scene.h>

#include <string>
#include <typeinfo>

#include <gtest/gtest.h>

#include <zrk/AnnoSet.h>
#include <zrk/MakeObject.h>
#include <zrk/SceneListener.h>
#include <zrk/ShapeScene.h>
#include <zrk/ShapeView.h>

namespace {

using du::SmartPtr;
using zrk::MakeObject;

struct RecordingListener final : zrk::SceneListener {
  void OnViewAttached(const SmartPtr<zrk::View>&) override { log += "view;"; }
  void OnSceneDestroy() override { log += "destroy;"; }
  void OnBackgroundColor(const SmartPtr<zrk::ShapeView>&) override { log += "background;"; }
  void OnWindowSize() override { log += "window;"; }
  void OnHandleTimeoutEvent(const SmartPtr<zrk::ShapeView>& view, dg::Camera3D& lastCamera) override {
    log += lastCamera == view->GetCamera() ? "same;" : "moved;";
    lastCamera = view->GetCamera();
  }

  std::string log;
};

class SceneTest : public testing::Test {
protected:
  SceneTest() {
    scene_->AddListener(first_);
    scene_->AddListener(first_);
    scene_->AddListener(second_);
  }

  const SmartPtr<zrk::ShapeScene> scene_ = MakeObject<zrk::ShapeScene>();
  const SmartPtr<zrk::ShapeView> view_ = MakeObject<zrk::ShapeView>();
  const SmartPtr<RecordingListener> first_{new RecordingListener};
  const SmartPtr<RecordingListener> second_{new RecordingListener};
};

TEST_F(SceneTest, FirstViewAndItsEventsReachEveryListener) {
  view_->SetWindowSize(800, 600);
  EXPECT_FALSE(scene_->GetView(0));
  EXPECT_EQ(scene_->AddView(view_), 0U);
  EXPECT_EQ(scene_->AddView(MakeObject<zrk::ShapeView>()), 1U);
  EXPECT_EQ(scene_->AddView(nullptr), 2U);
  EXPECT_FALSE(scene_->GetView(2));
  EXPECT_EQ(view_->GetShapeScene(), scene_);
  view_->SetBackgroundColors(dg::Color(1, 1, 1, 1), dg::Color(), dg::Color());
  view_->SetWindowSize(640, 480);
  EXPECT_EQ(first_->log, "view;background;window;");
  EXPECT_EQ(second_->log, first_->log);
}

TEST_F(SceneTest, TimerShowsTheCameraMoveOnceToEachListener) {
  scene_->AddView(view_);
  dg::Camera3D camera;
  camera.SetParallel({}, {0, 1, 0}, {0, 0, 1}, 2, 100, 100);
  view_->SetCamera(camera);
  EXPECT_EQ(first_->log, "view;");
  view_->FireTimeout();
  view_->FireTimeout();
  EXPECT_EQ(first_->log, "view;moved;same;");
  EXPECT_EQ(second_->log, first_->log);
}

TEST_F(SceneTest, DestroyAnnouncesWhileCompleteThenLetsGoSilently) {
  scene_->AddView(view_);
  const SmartPtr<zrk::AnnoSet> set = scene_->GetAnnoSet();
  ASSERT_TRUE(set);
  scene_->Destroy();
  scene_->Destroy();
  EXPECT_FALSE(scene_->GetAnnoSet());
  EXPECT_FALSE(set->GetScene());
  EXPECT_FALSE(view_->GetScene());
  view_->SetWindowSize(1, 1);
  EXPECT_EQ(first_->log, "view;destroy;");
}

TEST_F(SceneTest, ViewOutlivesItsSceneAndCountsDirtyMarksOnly) {
  MakeObject<zrk::ShapeScene>()->AddView(view_);
  EXPECT_FALSE(view_->GetScene());
  view_->FireTimeout();
  view_->SetDirty(true);
  view_->SetDirty(false);
  EXPECT_FALSE(view_->IsDirty());
  view_->SetDirty(true);
  EXPECT_EQ(view_->GetDirtyCount(), 2U);
}

TEST_F(SceneTest, UserDataIsKeptByKeyAndNotCopied) {
  int plain = 0;
  const du::Symbol key("user data"), other("other");
  view_->AddUserData(key, &plain);
  view_->AddRefCountedUserData(key, first_);
  EXPECT_EQ(view_->GetUserData(key), &plain);
  EXPECT_EQ(view_->GetRefCountedUserData(key).Get(), static_cast<du::RefCounted*>(first_.Get()));
  EXPECT_EQ(view_->GetUserData(other), nullptr);
  view_->RemoveUserData(key);
  EXPECT_EQ(view_->GetUserData(key), nullptr);
  EXPECT_FALSE(view_->GetRefCountedUserData(key));
  const auto object = MakeObject<zrk::Object>();
  object->AddUserData(key, &plain);
  EXPECT_EQ(MakeObject<zrk::Object>(*object)->GetUserData(key), nullptr);
}

TEST(ClassTypeTest, ObjectsAnswerByRecordAndBases) {
  struct Typed : zrk::Object {
    explicit Typed(const zrk::ClassType& ownType) : type(ownType) {}
    const zrk::ClassType& GetClassType() const override { return type; }
    const zrk::ClassType& type;
  };
  const zrk::ClassType &base = zrk::Object::GetObjectClassType(), stranger("test::Stranger", nullptr);
  {
    const zrk::ClassType type("test::Typed", &base);
    const auto object = MakeObject<Typed>(type);
    EXPECT_TRUE(object->IsATypeOfId(type.GetId()));
    EXPECT_TRUE(object->IsATypeOfId(base.GetId()));
    EXPECT_FALSE(object->IsATypeOfId(stranger.GetId()));
    std::vector<const zrk::ClassType*> types;
    object->GetClassTypes(types);
    EXPECT_EQ(types, (std::vector{&type, &base}));
    EXPECT_EQ(zrk::ClassType::Find("test::Typed"), &type);
  }
  EXPECT_EQ(zrk::ClassType::Find("test::Typed"), nullptr);
  EXPECT_EQ(zrk::ClassType::Find(nullptr), nullptr);
  EXPECT_STREQ(MakeObject<zrk::ShapeScene>()->GetDebugClassName(), "zrk::ShapeScene");
}

}  // namespace
