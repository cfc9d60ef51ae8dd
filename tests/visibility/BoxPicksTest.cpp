// Picks that the bare host answers from the boxes of its shapes. Parts are unit cubes; the camera looks down z.
#include <cmath>

#include "visibility/PickFixture.h"

namespace {

using zrk::PickAnswer;
using zrtest::Part;

struct Question final : zrk::PickEvent {
  using PickEvent::PickEvent;
  void OnAnswer(const PickAnswer& given) override { answers.push_back(given); }
  std::vector<PickAnswer> answers;
};

class BoxPicksTest : public zrtest::PickFixture {
protected:
  [[nodiscard]] du::SmartPtr<Question> Ask(const Part& part, const dg::DPoint3D& point) const {
    const dg::DPoint3D pixel = point * view_->GetCamera().GetObjectToPixel();
    auto question = zrk::MakeObject<Question>(view_, part.shape, pixel);
    view_->RequestPick(question);
    return question;
  }
  /// "place x y z" of the deepest point, or "hidden".
  [[nodiscard]] std::string Describe(const Part& part, const dg::DPoint3D& point) const {
    const auto question = Ask(part, point);
    if (question->answers.empty()) return "dropped";
    const PickAnswer& answer = question->answers[0];
    if (!answer.isVisible) return "hidden";
    const dg::DPoint3D& at = answer.deepest;
    char text[80];
    std::snprintf(text, sizeof text, "%d %.2f %.2f %.2f", static_cast<int>(answer.place), at.x, at.y, at.z);
    return text;
  }

  const Part cube_ = structure_->AddPart(structure_->Root(), "cube");
  const Part other_ = structure_->AddPart(structure_->Root(), "other", {100, 0, 0});
};

TEST_F(BoxPicksTest, AnswersWhatIsNearestAtThePixelWhereThePartIsDeepestAndHowMuchRoomThereIs) {
  const struct {
    const char* what;
    dg::DPoint3D other, asked;
    std::string expected;
  } cases[] = {
      {"alone, inside it", {100, 0, 0}, {0, 0, 0}, "1 0.00 0.00 0.50"},
      {"alone, on its face", {100, 0, 0}, {0.2, 0.2, 0.5}, "2 0.00 0.00 0.50"},
      {"alone, beside it", {100, 0, 0}, {0.7, 0, 0}, "0 0.00 0.00 0.50"},
      {"behind the other one", {0, 0, 2}, {0, 0, 0}, "hidden"},
      {"before the other one", {0, 0, -2}, {0, 0, 0.5}, "2 0.00 0.00 0.50"},
      {"a third covered, there", {0.6, 0, 2}, {0.2, 0, 0.5}, "0 -0.22 0.00 0.50"},
      {"a third covered, elsewhere", {0.6, 0, 2}, {-0.2, 0, 0.5}, "2 -0.22 0.00 0.50"},
  };
  for (const auto& tested : cases) {
    Move(other_, tested.other);
    EXPECT_EQ(Describe(cube_, tested.asked), tested.expected) << tested.what;
  }
  Move(other_, {0, 0, 2});
  other_.shape->SetVisible(false);
  EXPECT_EQ(Describe(cube_, {0, 0, 0}), "1 0.00 0.00 0.50");
  EXPECT_EQ(Describe(other_, {0, 0, 2}), "hidden");
  Move(cube_, {100, 0, 0});
  EXPECT_EQ(Describe(cube_, {100, 0, 0}), "hidden") << "outside the window";
  // Clearance is the way to the nearest place that shows something else.
  Move(cube_, {0, 0, 0});
  const auto middle = Ask(cube_, {0, 0, 0.5})->answers.at(0);
  EXPECT_NEAR(middle.clearance, 50.0 / 9, 1e-9);  // 10 pixels wide, looked at by 9 rays and a ring of places round them
  EXPECT_DOUBLE_EQ(middle.clearanceAtPixel, middle.clearance);
  EXPECT_LT(Ask(cube_, {0.4, 0, 0.5})->answers.at(0).clearanceAtPixel, 0.7 * middle.clearance);
  scene_->RemoveShapeInstance(cube_.shape);
  EXPECT_EQ(Describe(cube_, {0, 0, 0}), "hidden");
  EXPECT_EQ(Describe(Part{}, {0, 0, 0}), "dropped");
}

TEST_F(BoxPicksTest, ACentralProjectionHidesWhatIsInLineWithTheEye) {
  dg::Camera3D camera;
  camera.SetPerspective({0, 0, 10}, {0, 0, 0}, {0, 1, 0}, 0.8, 400, 400);
  view_->SetCamera(camera);
  Move(cube_, {2, 0, 0});
  Move(other_, {1, 0, 5});  // half the way from the eye, half as far aside
  EXPECT_EQ(Describe(cube_, {2, 0, 0.5}), "hidden");
  Move(other_, {0, 0, 5});
  EXPECT_EQ(Describe(cube_, {2, 0, 0.5}).substr(0, 1), "2");
  Move(other_, {0, 0, 12});  // behind the eye
  EXPECT_EQ(Describe(other_, {0, 0, 12}), "hidden");
}

}  // namespace
