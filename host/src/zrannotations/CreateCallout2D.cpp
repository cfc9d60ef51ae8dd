#include <zrannotations/CreateCallout2D.h>

#include <atomic>

#include <zrk/MakeObject.h>
#include <zrk/illustration/TAnnotation.h>
#include <zrk/illustration2d/Callout2D.h>
#include <zrk/illustration2d/Scene2D.h>
#include <zrk/illustration2d/Text2D.h>

namespace zrannotations {

using zrk::illustration2d::Callout2D;

namespace {

std::atomic<bool>& GetFailNext() {
  static std::atomic<bool> failNext{false};
  return failNext;
}

}  // namespace

du::SmartPtr<Callout2D> CreateCallout2D(const du::SmartPtr<zrk::illustration2d::Scene2D>& scene,
                                        const du::SmartPtr<zrk::illustration::TAnnotation>& definition,
                                        const dg::DPoint2D& point1, const dg::DPoint2D& point2,
                                        zrk::illustration::TextAlignment alignment, const du::LocalizableString& text) {
  if (GetFailNext().exchange(false) || !scene || !definition) return nullptr;
  const auto callout = zrk::MakeObject<Callout2D>();
  if (!callout) return nullptr;
  callout->SetPreset(definition);
  callout->SetAnchor(point1);
  callout->SetPosition(point2);
  callout->SetTextAlignment(alignment);
  callout->SetLocalizableString(text);
  callout->SetTextElement(zrk::MakeObject<zrk::illustration2d::Text2D>(text.GetText()));
  scene->AddAnnotation2D(callout);
  return callout;
}

void FailNextCreateCallout2D() {
  GetFailNext() = true;
}

}  // namespace zrannotations
