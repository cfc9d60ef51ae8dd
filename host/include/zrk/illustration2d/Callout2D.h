#pragma once

#include <cstdint>

#include <dg/DBox2D.h>
#include <dg/DPoint2D.h>
#include <dg/DVec2.h>
#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Export.h>
#include <du/LocalizableString.h>
#include <du/SmartPtr.h>
#include <du/Symbol.h>
#include <zrk/illustration/TextAlignment.h>
#include <zrk/illustration2d/Annotation2D.h>

namespace zrk::illustration {
class TAnnotation;
}

namespace zrk::illustration2d {

class Text2D;

/// A callout on a sheet: label, leader and a template of its own. Positions are in millimetres on the page.
/// [any-thread]
class ZR_HOST_API Callout2D : public Annotation2D {
public:
  using Template = du::SmartPtr<illustration::TAnnotation>;

  Callout2D();
  ~Callout2D() override;

  /// The private definition the callout was created with; null when there is none.
  [[nodiscard]] Template GetPreset() const;
  void SetPreset(const Template& preset);
  /// The shared template it was made after; null when there is none.
  [[nodiscard]] Template GetCalloutTemplate() const;
  void SetCalloutTemplate(const Template& callouttemplate);
  /// The label as drawn; null when the callout has no text.
  [[nodiscard]] du::SmartPtr<Text2D> GetTextElement() const;
  void SetTextElement(const du::SmartPtr<Text2D>& text);
  [[nodiscard]] bool HasItemId() const;
  /// 0 = none.
  [[nodiscard]] std::uint32_t GetItemId() const;
  void SetItemId(std::uint32_t itemId);
  /// As its preset is; false without one.
  [[nodiscard]] bool IsMarkdown() const;
  /// Makes the text the source of the localisable string and, with `updateElement`, the string of the text element.
  /// `first` is ignored.
  void SetLocalizableStringText(const du::Symbol& text, bool first, bool updateElement);
  [[nodiscard]] du::LocalizableString GetLocalizableString() const;
  void SetLocalizableString(const du::LocalizableString& text);
  [[nodiscard]] bool IsLinkedTo3DCallout() const;
  void SetLinkedTo3DCallout(bool linked);
  /// 0 item list, 1 other text, 2 property.
  [[nodiscard]] unsigned GetCalloutType() const;
  void SetCalloutType(unsigned type);
  [[nodiscard]] illustration::TextAlignment GetTextAlignment() const;
  void SetTextAlignment(illustration::TextAlignment alignment);
  /// Centre of the label.
  [[nodiscard]] dg::DPoint2D GetPosition() const;
  void SetPosition(const dg::DPoint2D& position);
  /// Where the leader ends.
  [[nodiscard]] dg::DPoint2D GetAnchor() const;
  void SetAnchor(const dg::DPoint2D& anchor);
  /// The label's box around its position, estimated from its text unless SetLabelSize was called.
  [[nodiscard]] dg::DBox2D GetShapeExtents() const;
  void SetLabelSize(const dg::DVec2& size);

private:
  struct State {
    Template preset;
    Template callouttemplate;
    du::SmartPtr<Text2D> text;
    du::LocalizableString localizable;
    std::uint32_t itemId = 0;
    bool linked = false;
    unsigned type = 0;
    illustration::TextAlignment alignment = illustration::TextAlignment::Left;
    dg::DPoint2D position;
    dg::DPoint2D anchor;
    dg::DVec2 labelSize;
  };
  [[nodiscard]] State GetState() const;

  mutable dp::Mutex mutex_;
  State state_ ZR_GUARDED_BY(mutex_);
};

}  // namespace zrk::illustration2d
