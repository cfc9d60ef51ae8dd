#pragma once
// Bytes as a script, run line by line on a small model that is made here.

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace zrfuzz {

/// Runs the lines, without those that read or write files. What does not hold when: a refused line has no message of
/// one line or has changed something; or what was undone and done again is not as it was. One at a time in a process.
/// [host-thread]
[[nodiscard]] std::optional<std::string> RunScriptInput(std::span<const std::uint8_t> script);

}  // namespace zrfuzz
