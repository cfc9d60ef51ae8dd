// Callouts on the sheet, which shares the scene's item list. No operation of the scene's history knows of them.

#include <zrcallouts/Align2D.h>
#include <zrcallouts/Functions.h>
#include <zrk/illustration2d/Text2D.h>

#include "HostCall.h"

namespace zrfuzz {

namespace {

std::string MakeNote(LiveScene& live, unsigned first, unsigned second) {
  constexpr std::size_t kMost = 6;
  const unsigned item = live.ItemAt(second);
  if (live.Notes().size() == kMost) live.sheet->RemoveAnnotation2D(live.Notes()[first % kMost]);
  const dg::DPoint2D at(first, second);
  static_cast<void>(
      zrcallouts::CreateNewCallout2D(live.sheet, live.TemplateAt(first), first % 2 == 0, at, {10, 20}, item));
  return "write on the sheet after " + live.TemplateAt(first)->GetId();
}

/// Up to date is up to date: the second time nothing is replaced.
std::string UpdateNotes(LiveScene& live, unsigned /*first*/, unsigned /*second*/) {
  unsigned changed = 0;
  for (const auto& note : live.Notes()) {
    changed += zrcallouts::Callouts::UpdateCallout2DContent(note, live.sheet) ? 1 : 0;
    if (zrcallouts::Callouts::UpdateCallout2DContent(note, live.sheet)) return "BROKEN: a note is changed twice";
  }
  return "bring the sheet up to date: " + std::to_string(changed) + " changed";
}

std::string AlignNotes(LiveScene& live, unsigned first, unsigned second) {
  zrcallouts::Align2D::Callouts2D notes = live.Notes();
  const auto mode = static_cast<zrcallouts::Align_Mode>(first % 12);
  const du::SmartPtr<zrcallouts::Align2D> align(new zrcallouts::Align2D(notes, mode, second % 2 == 0, live.sheetView));
  const bool done = align->Execute({{0, 0}, {static_cast<double>(second % 5), 1}});
  return "align the sheet in mode " + std::to_string(mode) + (done ? "" : ": refused");
}

using Effect = HostCall::Effect;
constexpr HostCall kCalls[] = {
    {2, Effect::Nothing, MakeNote}, {2, Effect::Nothing, UpdateNotes}, {1, Effect::Nothing, AlignNotes}};

}  // namespace

std::span<const HostCall> SheetCalls() {
  return kCalls;
}

}  // namespace zrfuzz
