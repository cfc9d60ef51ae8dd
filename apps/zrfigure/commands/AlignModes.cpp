#include "commands/AlignModes.h"

#include <array>
#include <utility>

namespace zrfigure {
namespace {

using zrcallouts::Align_Mode;

constexpr std::array<std::pair<std::string_view, Align_Mode>, 11> kModes{{{"min-x", Align_Mode::MinX},
                                                                          {"center-x", Align_Mode::CenterX},
                                                                          {"max-x", Align_Mode::MaxX},
                                                                          {"min-y", Align_Mode::MinY},
                                                                          {"center-y", Align_Mode::CenterY},
                                                                          {"max-y", Align_Mode::MaxY},
                                                                          {"spread-x", Align_Mode::SpreadX},
                                                                          {"spread-y", Align_Mode::SpreadY},
                                                                          {"axis-x", Align_Mode::AlongAxisX},
                                                                          {"axis-y", Align_Mode::AlongAxisY},
                                                                          {"axis-z", Align_Mode::AlongAxisZ}}};

}  // namespace

std::optional<Align_Mode> FindAlignMode(std::string_view name) {
  for (const auto& [known, mode] : kModes) {
    if (known == name) return mode;
  }
  return std::nullopt;
}

std::string AlignModeNames() {
  std::string names;
  for (const auto& entry : kModes) names.append(names.empty() ? "" : ", ").append(entry.first);
  return names;
}

}  // namespace zrfigure
