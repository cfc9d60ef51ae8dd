#include "script/Sheet.h"

#include <array>
#include <utility>

#include <dg/LengthUnit.h>
#include <zritemlist/ItemList.h>
#include <zrk/MakeObject.h>
#include <zrk/Operation.h>
#include <zrk/OperationStep.h>
#include <zrk/illustration/LabelContent.h>
#include <zrk/illustration/TAnnotation.h>
#include <zrk/illustration2d/Callout2D.h>
#include <zrk/illustration2d/Document2D.h>
#include <zrk/illustration2d/PageBorder2D.h>
#include <zrk/illustration2d/Scene2D.h>
#include <zrk/illustration2d/Text2D.h>

#include "commands/LabelText.h"
#include "drawing/BalloonSize.h"
#include "zrcallouts/Callouts.h"
#include "zrcallouts/Functions.h"

namespace zrfigure {
namespace {

using zrk::illustration::LabelContent;
using zrk::illustration::TAnnotation;
using zrk::illustration2d::Callout2D;
using zrk::illustration2d::Scene2D;

constexpr std::array<std::pair<std::string_view, const char*>, 3> kValues{
    {{"{item}", "zrITM"}, {"{quantity}", "zrQTY"}, {"{tag}", "zrTAG"}}};

/// The value whose mark stands at that place of the pattern; null for none.
const std::pair<std::string_view, const char*>* ValueAt(std::string_view pattern, std::size_t at) {
  for (const auto& value : kValues) {
    if (pattern.substr(at, value.first.size()) == value.first) return &value;
  }
  return nullptr;
}

TAnnotation::Contents ContentsOf(const std::string& pattern) {
  zrk::illustration::TextProperties lettering;
  lettering.fontFace = kFontFamily;
  TAnnotation::Contents contents;
  std::string literal;
  const auto addLiteral = [&] {
    if (literal.empty()) return;
    contents.push_back(zrk::MakeObject<LabelContent>(std::exchange(literal, {}), lettering));
  };
  for (std::size_t at = 0; at < pattern.size();) {
    const auto* value = ValueAt(pattern, at);
    if (value == nullptr) {
      literal += pattern[at++];
      continue;
    }
    addLiteral();
    contents.push_back(zrk::MakeObject<LabelContent>("System", value->second, lettering));
    at += value->first.size();
  }
  addLiteral();
  return contents;
}

/// A note that came onto a sheet.
class NoteStep final : public zrk::OperationStep {
public:
  NoteStep(du::SmartPtr<Scene2D> scene, du::SmartPtr<Callout2D> note)
      : scene_(std::move(scene)), note_(std::move(note)) {}

  void Undo() override { scene_->RemoveAnnotation2D(note_); }
  void Redo() override { scene_->AddAnnotation2D(note_); }

private:
  const du::SmartPtr<Scene2D> scene_;
  const du::SmartPtr<Callout2D> note_;
};

}  // namespace

Sheet::Sheet(const du::SmartPtr<zrk::Scene>& modelScene, const Page& page) : scene_(zrk::MakeObject<Scene2D>()) {
  zritemlist::ItemList::ShareItemList(modelScene, scene_);
  scene_->GetDocument2D()->SetPageBorder(zrk::MakeObject<zrk::illustration2d::PageBorder2D>(
      dg::DVec2(page.widthMm, page.heightMm), dg::LengthUnit::MILLIMETER));
}

Sheet::~Sheet() = default;

bool Sheet::AddNote(const std::string& pattern, Point2 at, unsigned item,
                    const du::SmartPtr<zrk::Operation>& operation) {
  const auto definition = zrk::MakeObject<TAnnotation>();
  definition->SetTextContent(ContentsOf(pattern), true);
  const dg::DPoint2D place(at.x, at.y);
  const auto note = zrcallouts::CreateNewCallout2D(scene_, definition, item != 0, place, place, item);
  if (!note) return false;
  operation->AddStep(zrk::MakeObject<NoteStep>(scene_, note));
  return true;
}

std::size_t Sheet::Update() {
  std::size_t changed = 0;
  for (const auto& note : Callouts()) changed += zrcallouts::Callouts::UpdateCallout2DContent(note, scene_) ? 1 : 0;
  return changed;
}

std::vector<du::SmartPtr<Callout2D>> Sheet::Callouts() const {
  std::vector<du::SmartPtr<Callout2D>> callouts;
  for (const auto& annotation : scene_->GetAnnotations2D()) {
    if (auto callout = du::DynamicCast<Callout2D>(annotation)) callouts.push_back(std::move(callout));
  }
  return callouts;
}

std::vector<NoteState> Sheet::Notes() const {
  std::vector<NoteState> notes;
  for (const auto& callout : Callouts()) {
    const auto text = callout->GetTextElement();
    const dg::DPoint2D at = callout->GetPosition();
    notes.push_back({static_cast<unsigned>(notes.size() + 1),
                     text ? text->GetString().GetString() : std::string(),
                     {at.x, at.y},
                     callout->GetItemId()});
  }
  return notes;
}

std::vector<Balloon> Sheet::Balloons(const TextMeasure& text) const {
  std::vector<Balloon> balloons;
  for (const NoteState& note : Notes()) {
    Balloon balloon;
    balloon.id = "note-" + std::to_string(note.number);
    balloon.lines = SplitLines(note.text);
    balloon.shape = BalloonShape::Bare;
    const BalloonSize size = SizeBalloon(balloon.lines, text);
    const Point2 at{note.at.x * kPxPerMm, note.at.y * kPxPerMm};
    balloon.box = {at.x - size.width / 2, at.y - size.height / 2, at.x + size.width / 2, at.y + size.height / 2};
    balloons.push_back(std::move(balloon));
  }
  return balloons;
}

}  // namespace zrfigure
