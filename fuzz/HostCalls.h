#pragma once
// Bytes as calls of a host: three bytes a call, the operation and two arguments. Every byte string is a program; what
// is left over at its end is ignored.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <optional>
#include <span>
#include <string>

namespace zrfuzz {

constexpr std::size_t kBytesPerCall = 3;

/// What went wrong first.
struct Finding {
  std::size_t call = 0;  ///< Counted from 1.
  std::string line;      ///< The call.
  std::string broken;    ///< Lines, each what does not hold.
};

/// "call 7: undo", then the broken lines.
std::ostream& operator<<(std::ostream& out, const Finding& finding);

/// Runs the program on a live scene of its own, tells `log` each call before what came of it is checked, and in the end
/// goes through the whole history to and fro. One at a time in a process. [host-thread]
[[nodiscard]] std::optional<Finding> RunHostCalls(std::span<const std::uint8_t> program,
                                                  const std::function<void(const std::string& line)>& log = {});

}  // namespace zrfuzz
