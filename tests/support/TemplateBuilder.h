#pragma once
// Builds callout templates piece by piece.

#include <string>

#include <du/SmartPtr.h>
#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/TAnnotation.h>

namespace zrtest {

using TemplatePtr = du::SmartPtr<zrk::illustration::TAnnotation>;
using Contents = zrk::illustration::TAnnotation::Contents;

/// A template with exactly the pieces that were added; none gives a template without text content.
class TemplateBuilder {
public:
  TemplateBuilder& Literal(const std::string& text);
  TemplateBuilder& Property(const std::string& group, const std::string& name, const std::string& display = {},
                            const std::string& level = {});
  /// A piece of the "System" group: "zrITM", "zrQTY" or "zrTAG".
  TemplateBuilder& Token(const std::string& name) { return Property("System", name); }
  /// A missing piece, or one of a kind that nobody knows.
  TemplateBuilder& Null();
  TemplateBuilder& OfType(std::uint32_t type, const std::string& text);
  TemplateBuilder& Named(const std::string& name);
  TemplateBuilder& Markdown();

  [[nodiscard]] const Contents& Pieces() const { return contents_; }
  [[nodiscard]] TemplatePtr Build() const;

private:
  Contents contents_;
  std::string name_;
  bool markdown_ = false;
};

/// The item number and nothing else.
[[nodiscard]] TemplatePtr NumberTemplate();
/// A literal and nothing else.
[[nodiscard]] TemplatePtr TextTemplate(const std::string& text);

}  // namespace zrtest
