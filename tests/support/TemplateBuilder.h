#pragma once
// Builds callout templates piece by piece.

#include <string>

#include <du/SmartPtr.h>
#include <zrk/MakeObject.h>
#include <zrk/Operation.h>
#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/TAnnotation.h>

namespace zrtest {

using TemplatePtr = du::SmartPtr<zrk::illustration::TAnnotation>;
using Contents = zrk::illustration::TAnnotation::Contents;

/// A template with exactly the pieces that were added; none gives a template without text content.
class TemplateBuilder {
public:
  TemplateBuilder& Literal(const std::string& text) { return Add(text, TextProperties()); }
  TemplateBuilder& Property(const std::string& group, const std::string& name, const std::string& display = {},
                            const std::string& level = {}) {
    Add(group, name, TextProperties());
    contents_.back()->display = display;
    contents_.back()->level = level;
    return *this;
  }
  /// A piece of the "System" group: "zrITM", "zrQTY" or "zrTAG".
  TemplateBuilder& Token(const std::string& name) { return Property("System", name); }
  /// A missing piece, or one of a kind that nobody knows.
  TemplateBuilder& Null() {
    contents_.emplace_back();
    return *this;
  }
  TemplateBuilder& OfType(std::uint32_t type, const std::string& text) {
    Literal(text).contents_.back()->type = type;
    return *this;
  }
  TemplateBuilder& Named(const std::string& name) {
    name_ = name;
    return *this;
  }
  TemplateBuilder& Markdown() {
    markdown_ = true;
    return *this;
  }

  [[nodiscard]] const Contents& Pieces() const { return contents_; }
  [[nodiscard]] TemplatePtr Build() const {
    auto built = zrk::MakeObject<zrk::illustration::TAnnotation>();
    built->SetName(name_);
    built->SetIsMarkdown(markdown_);
    built->SetTextContent(contents_, !contents_.empty());
    return built;
  }

private:
  using TextProperties = zrk::illustration::TextProperties;

  template <class... Arguments>
  TemplateBuilder& Add(Arguments&&... arguments) {
    contents_.push_back(zrk::MakeObject<zrk::illustration::LabelContent>(std::forward<Arguments>(arguments)...));
    return *this;
  }

  Contents contents_;
  std::string name_;
  bool markdown_ = false;
};

/// The item number and nothing else.
[[nodiscard]] inline TemplatePtr NumberTemplate() {
  return TemplateBuilder().Token("zrITM").Build();
}

/// A literal and nothing else.
[[nodiscard]] inline TemplatePtr TextTemplate(const std::string& text) {
  return TemplateBuilder().Literal(text).Build();
}

}  // namespace zrtest
