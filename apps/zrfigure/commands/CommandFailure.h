#pragma once
// How a command ends early.

#include <string>

namespace zrfigure {

/// Thrown inside a command to end it with one line for the user; never leaves the command.
struct CommandFailure {
  std::string message;
};

}  // namespace zrfigure
