#pragma once
// One kind of call that a host makes, and the tables of all kinds.

#include <span>
#include <string>

#include "LiveScene.h"

namespace zrfuzz {

struct HostCall {
  /// What becomes of the scene's state; a call that does more is a finding.
  enum class Effect {
    Nothing,   ///< Nothing changes.
    Recorded,  ///< What changes is recorded as operations.
    Aside,     ///< What changes is nobody's to undo.
    Undo,
    Redo
  };

  unsigned weight;  ///< How many of the operation bytes mean it, relative to the others.
  Effect effect;
  /// Makes the call with two bytes of arguments. \return the call as one readable line.
  std::string (*make)(LiveScene& live, unsigned first, unsigned second);
};

[[nodiscard]] std::span<const HostCall> ItemCalls();
[[nodiscard]] std::span<const HostCall> SceneCalls();
[[nodiscard]] std::span<const HostCall> GeneratorCalls();
[[nodiscard]] std::span<const HostCall> AnnotationCalls();
[[nodiscard]] std::span<const HostCall> TemplateCalls();
[[nodiscard]] std::span<const HostCall> ViewCalls();
[[nodiscard]] std::span<const HostCall> SheetCalls();
[[nodiscard]] std::span<const HostCall> EngineCalls();

}  // namespace zrfuzz
