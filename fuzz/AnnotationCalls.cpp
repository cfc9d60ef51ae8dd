// Insets and 3D symbols.

#include <zrannotations/AnnotationEdit.h>
#include <zrcallouts/CalloutGenerator.h>
#include <zrk/MakeObject.h>

#include "HostCall.h"

namespace zrfuzz {

using zrannotations::AnnotationEdit;

namespace {

std::string AddInset(LiveScene& live, unsigned first, unsigned second) {
  const Part& part = live.PartAt(first);
  live.Edit("add inset", [&](const auto& operation) {
    AnnotationEdit::AddInset(live.scene, part.sbom, std::string(second % 3, 'D'), operation);
  });
  return "add an inset on " + part.Id();
}

std::string RemoveInset(LiveScene& live, unsigned first, unsigned /*second*/) {
  const auto inset = live.InsetAt(first);
  live.Edit("remove inset", [&](const auto& operation) { AnnotationEdit::RemoveInset(live.scene, inset, operation); });
  return inset ? "remove inset " + std::to_string(inset->Id()) : "no inset to remove";
}

std::string ChangeInset(LiveScene& live, unsigned first, unsigned second) {
  const auto inset = live.InsetAt(first);
  if (!inset) return "no inset to change";
  const double size = second / 16;
  if (second % 3 == 0) inset->SetVisible(second % 2 == 0);
  if (second % 3 == 1) inset->SetBounds(dg::DBox({-size, -size, -size}, {size, size, size}));
  if (second % 3 == 2) inset->SetCaptionText(du::Symbol("Detail " + std::to_string(second % 4)), false, false);
  return "change inset " + std::to_string(inset->Id()) + " by " + std::to_string(second);
}

std::string AddSymbol(LiveScene& live, unsigned first, unsigned second) {
  const Part& part = live.PartAt(first);
  du::SmartPtr<zrannotations::SymbolAnnotation> symbol;
  live.Edit("add symbol",
            [&](const auto& operation) { symbol = AnnotationEdit::AddSymbol(live.scene, part.sbom, operation); });
  if (!symbol) return "no symbol on " + part.Id();
  if (second % 2 != 0) return "add a symbol on " + part.Id();
  zrk::MakeObject<zrcallouts::CalloutGenerator>(live.engine)->AddOnSymbols({symbol->GetInstance(), nullptr});
  return "add a symbol on " + part.Id() + " with a callout";
}

std::string RemoveSymbol(LiveScene& live, unsigned first, unsigned /*second*/) {
  const auto symbol = live.SymbolAt(first);
  live.Edit("remove symbol",
            [&](const auto& operation) { AnnotationEdit::RemoveSymbol(live.scene, symbol, operation); });
  return symbol ? "remove symbol " + std::to_string(symbol->Id()) : "no symbol to remove";
}

using Effect = HostCall::Effect;
constexpr HostCall kCalls[] = {{3, Effect::Recorded, AddInset},
                               {2, Effect::Recorded, RemoveInset},
                               {3, Effect::Aside, ChangeInset},
                               {3, Effect::Recorded, AddSymbol},
                               {2, Effect::Recorded, RemoveSymbol}};

}  // namespace

std::span<const HostCall> AnnotationCalls() {
  return kCalls;
}

}  // namespace zrfuzz
