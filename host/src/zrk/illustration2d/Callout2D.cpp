#include <zrk/illustration2d/Callout2D.h>

#include <algorithm>
#include <string>

#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/TAnnotation.h>
#include <zrk/illustration2d/Text2D.h>

namespace zrk::illustration2d {

namespace {

// Usual proportions of technical lettering, relative to its height.
constexpr double kCharacterWidth = 0.7;
constexpr double kLineHeight = 1.4;
constexpr double kDefaultLetteringHeight = 3.5;

double GetLetteringHeight(const Callout2D::Template& preset) {
  illustration::TAnnotation::Contents contents;
  if (preset && preset->GetTextContent(contents) && !contents.empty() && contents.front()) {
    return contents.front()->textProperties.height;
  }
  return kDefaultLetteringHeight;
}

dg::DVec2 EstimateSize(const std::string& text, double height) {
  double lines = 1;
  double length = 0;
  double longest = 0;
  for (const char character : text) {
    const bool continuesCharacter = (static_cast<unsigned char>(character) & 0xC0) == 0x80;
    if (character == '\n') {
      ++lines;
      length = 0;
    } else if (!continuesCharacter) {
      longest = std::max(longest, ++length);
    }
  }
  return {longest * height * kCharacterWidth, lines * height * kLineHeight};
}

}  // namespace

Callout2D::Callout2D() = default;

Callout2D::~Callout2D() = default;

Callout2D::State Callout2D::GetState() const {
  const dp::MutexGuard guard(mutex_);
  return state_;
}

Callout2D::Template Callout2D::GetPreset() const {
  return GetState().preset;
}

void Callout2D::SetPreset(const Template& preset) {
  const dp::MutexGuard guard(mutex_);
  state_.preset = preset;
}

Callout2D::Template Callout2D::GetCalloutTemplate() const {
  return GetState().callouttemplate;
}

void Callout2D::SetCalloutTemplate(const Template& callouttemplate) {
  const dp::MutexGuard guard(mutex_);
  state_.callouttemplate = callouttemplate;
}

du::SmartPtr<Text2D> Callout2D::GetTextElement() const {
  return GetState().text;
}

void Callout2D::SetTextElement(const du::SmartPtr<Text2D>& text) {
  const dp::MutexGuard guard(mutex_);
  state_.text = text;
}

bool Callout2D::HasItemId() const {
  return GetItemId() != 0;
}

std::uint32_t Callout2D::GetItemId() const {
  return GetState().itemId;
}

void Callout2D::SetItemId(std::uint32_t itemId) {
  const dp::MutexGuard guard(mutex_);
  state_.itemId = itemId;
}

bool Callout2D::IsMarkdown() const {
  const Template preset = GetPreset();
  return preset && preset->IsMarkdown();
}

void Callout2D::SetLocalizableStringText(const du::Symbol& text, bool, bool updateElement) {
  State state = GetState();
  state.localizable.SetSourceText(text);
  // A string without record has just made one: the callout keeps that handle.
  SetLocalizableString(state.localizable);
  if (updateElement && state.text) state.text->SetString(text);
}

du::LocalizableString Callout2D::GetLocalizableString() const {
  return GetState().localizable;
}

void Callout2D::SetLocalizableString(const du::LocalizableString& text) {
  const dp::MutexGuard guard(mutex_);
  state_.localizable = text;
}

bool Callout2D::IsLinkedTo3DCallout() const {
  return GetState().linked;
}

void Callout2D::SetLinkedTo3DCallout(bool linked) {
  const dp::MutexGuard guard(mutex_);
  state_.linked = linked;
}

unsigned Callout2D::GetCalloutType() const {
  return GetState().type;
}

void Callout2D::SetCalloutType(unsigned type) {
  const dp::MutexGuard guard(mutex_);
  state_.type = type;
}

illustration::TextAlignment Callout2D::GetTextAlignment() const {
  return GetState().alignment;
}

void Callout2D::SetTextAlignment(illustration::TextAlignment alignment) {
  const dp::MutexGuard guard(mutex_);
  state_.alignment = alignment;
}

dg::DPoint2D Callout2D::GetPosition() const {
  return GetState().position;
}

void Callout2D::SetPosition(const dg::DPoint2D& position) {
  const dp::MutexGuard guard(mutex_);
  state_.position = position;
}

dg::DPoint2D Callout2D::GetAnchor() const {
  return GetState().anchor;
}

void Callout2D::SetAnchor(const dg::DPoint2D& anchor) {
  const dp::MutexGuard guard(mutex_);
  state_.anchor = anchor;
}

dg::DBox2D Callout2D::GetShapeExtents() const {
  const State state = GetState();
  dg::DVec2 size = state.labelSize;
  if (size.x <= 0 || size.y <= 0) {
    size = EstimateSize(state.text ? state.text->GetString().GetString() : "", GetLetteringHeight(state.preset));
  }
  return {dg::DPoint2D(state.position.x - size.x / 2, state.position.y - size.y / 2),
          dg::DPoint2D(state.position.x + size.x / 2, state.position.y + size.y / 2)};
}

void Callout2D::SetLabelSize(const dg::DVec2& size) {
  const dp::MutexGuard guard(mutex_);
  state_.labelSize = size;
}

}  // namespace zrk::illustration2d
