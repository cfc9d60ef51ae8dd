#include "support/TemplateBuilder.h"

#include <zrk/MakeObject.h>
#include <zrk/Operation.h>

using zrk::illustration::LabelContent;
using zrk::illustration::TextProperties;

namespace zrtest {

TemplateBuilder& TemplateBuilder::Literal(const std::string& text) {
  contents_.push_back(zrk::MakeObject<LabelContent>(text, TextProperties()));
  return *this;
}

TemplateBuilder& TemplateBuilder::Property(const std::string& group, const std::string& name,
                                           const std::string& display, const std::string& level) {
  auto content = zrk::MakeObject<LabelContent>(group, name, TextProperties());
  content->display = display;
  content->level = level;
  contents_.push_back(content);
  return *this;
}

TemplateBuilder& TemplateBuilder::Null() {
  contents_.emplace_back();
  return *this;
}

TemplateBuilder& TemplateBuilder::OfType(std::uint32_t type, const std::string& text) {
  Literal(text);
  contents_.back()->type = type;
  return *this;
}

TemplateBuilder& TemplateBuilder::Named(const std::string& name) {
  name_ = name;
  return *this;
}

TemplateBuilder& TemplateBuilder::Markdown() {
  markdown_ = true;
  return *this;
}

TemplatePtr TemplateBuilder::Build() const {
  auto built = zrk::MakeObject<zrk::illustration::TAnnotation>();
  built->SetName(name_);
  built->SetIsMarkdown(markdown_);
  built->SetTextContent(contents_, !contents_.empty());
  return built;
}

TemplatePtr NumberTemplate() {
  return TemplateBuilder().Token("zrITM").Build();
}

TemplatePtr TextTemplate(const std::string& text) {
  return TemplateBuilder().Literal(text).Build();
}

}  // namespace zrtest
