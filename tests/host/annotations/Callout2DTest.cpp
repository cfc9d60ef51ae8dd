#include <zrk/illustration2d/Callout2D.h>

#include <zrannotations/CreateCallout2D.h>
#include <zrk/illustration2d/Scene2D.h>

#include "../HostFixture.h"

namespace zrtest {

TEST(Callout2DTest, ExtentsAreThoseOfTheLongestLineAroundThePosition) {
  const auto sheet = MakeObject<zrk::illustration2d::Scene2D>();
  const auto callout =
      zrannotations::CreateCallout2D(sheet, MakeObject<zrk::illustration::TAnnotation>(), {10, 20}, {30, 40},
                                     zrk::illustration::TextAlignment::Left, du::LocalizableString());
  callout->SetLocalizableStringText("17", false, true);
  const dg::DBox2D narrow = callout->GetShapeExtents();
  callout->SetLocalizableStringText("M\xC3\xBC\nM\xC3\xBC+1", false, true);
  const dg::DBox2D wide = callout->GetShapeExtents();
  EXPECT_NEAR(wide.GetWidth(), 2 * narrow.GetWidth(), 1e-9);
  EXPECT_NEAR(wide.GetHeight(), 2 * narrow.GetHeight(), 1e-9);
  EXPECT_NEAR(wide.min.x + wide.max.x, 60, 1e-9);
  sheet->Destroy();
}

}  // namespace zrtest
