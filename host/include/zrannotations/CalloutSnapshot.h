#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <du/LocalizableString.h>
#include <du/SmartPtr.h>
#include <du/Symbol.h>
#include <zrannotations/Callout.h>
#include <zrannotations/CalloutLeader.h>
#include <zrk/illustration/TAnnotation.h>

namespace zrannotations {

/// What a callout looked like at one moment, see Callout::TakeSnapshot.
struct CalloutSnapshot {
  /// Bits that choose what Callout::RestoreSnapshot puts back.
  enum Aspect : std::int32_t {
    Definition = 1,
    Text = 2,
    LabelPosition = 4,
    ItemId = 8,
    Leaders = 16,
    Members = 32,
    AllAspects = 2147483647
  };
  /// A leader with its state at that moment; the leader object itself stays the same.
  struct LeaderState {
    du::SmartPtr<CalloutLeader> leader;
    bool hidden = false;
    bool visible = true;
  };

  du::SmartPtr<zrk::illustration::TAnnotation> definition;
  std::optional<bool> markdown;
  du::Symbol text;
  du::LocalizableString localizable;
  du::Symbol localizableSource;
  CalloutLabelPlacement label;
  /// 0 = none.
  std::uint32_t itemId = 0;
  std::vector<LeaderState> leaders;
  std::vector<du::SmartPtr<Callout>> members;
};

}  // namespace zrannotations
