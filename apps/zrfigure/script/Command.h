#pragma once
// The words of a script: what a command is, what it answers and how it fails.

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace zrfigure {

class Workspace;

/// Words of a command line; the first one is the command's name.
using Words = std::vector<std::string>;

/// Ends a command with one line for the user; everything is as it was before the command.
struct CommandError {
  std::string message;
};

/// What a command has to show besides the changes in the callouts.
struct Answer {
  std::string text;             ///< Lines, each ended by a line feed; may be empty.
  nlohmann::ordered_json data;  ///< The same for programs; null when there is nothing.
};

/// One command, the same in scripts and in the shell.
struct Command {
  const char* name;
  const char* usage;    ///< The arguments; empty when there are none.
  const char* summary;  ///< One line without a full stop.
  std::size_t minimum;  ///< Of arguments.
  std::size_t maximum;
  Answer (*handler)(Workspace& workspace, const Words& words);
};

constexpr std::size_t kAnyNumber = static_cast<std::size_t>(-1);

}  // namespace zrfigure
