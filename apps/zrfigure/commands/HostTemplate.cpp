#include "commands/HostTemplate.h"

#include <algorithm>

#include <dg/LengthUnit.h>
#include <zrk/MakeObject.h>
#include <zrk/Operation.h>
#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/PenHolder.h>

#include "drawing/TextMeasure.h"
#include "zrcallouts/Callouts.h"

namespace zrfigure {
namespace {

using zrk::illustration::LabelContent;
using zrk::illustration::TAnnotation;
using zrk::illustration::TextProperties;

TextProperties Lettering() {
  TextProperties properties;
  properties.fontFace = kFontFamily;
  properties.height = kLetteringHeightMm;
  return properties;
}

du::SmartPtr<LabelContent> BuildContent(const TemplateContent& content) {
  if (!content.isProperty) return zrk::MakeObject<LabelContent>(content.text, Lettering());
  auto piece = zrk::MakeObject<LabelContent>(content.text, content.name, Lettering());
  piece->display = content.display;
  piece->level = content.level;
  return piece;
}

dg::LengthUnit::Unit UnitOf(const std::string& name) {
  if (name == "cm") return dg::LengthUnit::CENTIMETER;
  if (name == "m") return dg::LengthUnit::METER;
  if (name == "in") return dg::LengthUnit::INCH;
  if (name == "pt") return dg::LengthUnit::POINT;
  return dg::LengthUnit::MILLIMETER;
}

}  // namespace

du::SmartPtr<TAnnotation> BuildTemplate(const TemplateDefinition& definition, const std::string& language,
                                        const zrcallouts::Callouts& engine) {
  TAnnotation::Contents contents;
  for (const TemplateContent& content : definition.contents) contents.push_back(BuildContent(content));
  const auto translation = definition.translations.find(language);
  if (translation != definition.translations.end()) {
    TAnnotation::Contents localized;
    engine.LocalizeTemplateText(du::Symbol(translation->second), contents, localized);
    contents = localized;
  }
  auto built = zrk::MakeObject<TAnnotation>();
  built->SetId(definition.id);
  built->SetName(definition.name);
  built->SetIsMarkdown(definition.markdown);
  built->SetIsItemTemplate(definition.itemTemplate);
  built->SetTextContent(contents, true);
  if (definition.leaderPen) {
    const TemplatePen& pen = *definition.leaderPen;
    built->SetLeaderPen(zrk::MakeObject<zrk::illustration::PenHolder>(UnitOf(pen.unit), pen.weight));
  }
  return built;
}

bool ShowsTag(const TemplateDefinition& definition) {
  return std::any_of(definition.contents.begin(), definition.contents.end(), [](const TemplateContent& content) {
    return content.isProperty && content.text == "System" && content.name == "zrTAG";
  });
}

double LeaderWeightMm(const TemplateDefinition& definition) {
  if (!definition.leaderPen) return 0;
  const TemplatePen& pen = *definition.leaderPen;
  return dg::LengthUnit::Convert(UnitOf(pen.unit), dg::LengthUnit::MILLIMETER, pen.weight, 1);
}

}  // namespace zrfigure
