#pragma once
// Reads what the engine keeps and no operation of it reports. An explicit instantiation may name private members, so
// the engine needs to know nothing of this.

#include <zrcallouts/Callouts.h>

namespace zrtest {

template <class Name, auto kField>
struct RevealedField {
  friend constexpr auto FieldOf(Name /*name*/) { return kField; }
};

struct FiledCallouts {
  friend constexpr auto FieldOf(FiledCallouts);
};
struct ObservedCallouts {
  friend constexpr auto FieldOf(ObservedCallouts);
};
struct InsetCallouts {
  friend constexpr auto FieldOf(InsetCallouts);
};
struct InsetObservers {
  friend constexpr auto FieldOf(InsetObservers);
};
struct SymbolAnnotations {
  friend constexpr auto FieldOf(SymbolAnnotations);
};
struct RunningGenerations {
  friend constexpr auto FieldOf(RunningGenerations);
};

template struct RevealedField<FiledCallouts, &zrcallouts::Callouts::idMap_>;
template struct RevealedField<ObservedCallouts, &zrcallouts::Callouts::callouts_>;
template struct RevealedField<InsetCallouts, &zrcallouts::Callouts::insetTable_>;
template struct RevealedField<InsetObservers, &zrcallouts::Callouts::insetObservers_>;
template struct RevealedField<SymbolAnnotations, &zrcallouts::Callouts::symbolAnnotations_>;
template struct RevealedField<RunningGenerations, &zrcallouts::Callouts::generations_>;

/// The field itself. Of the one thread that uses the engine: nothing is locked.
template <class Name>
[[nodiscard]] const auto& Read(const zrcallouts::Callouts& engine) {
  return engine.*FieldOf(Name{});
}

}  // namespace zrtest
