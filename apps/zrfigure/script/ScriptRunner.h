#pragma once
// `zrfigure run SCRIPT`: commands from a file, one a line.

#include <cstddef>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

#include "script/Command.h"
#include "script/Workspace.h"

namespace zrfigure {

/// Runs lines one after the other in one workspace.
class ScriptRunner {
public:
  /// \param json one object a command instead of text.
  ScriptRunner(std::ostream& output, bool json) : output_(output), json_(json) {}

  /// Runs one line; a line without words does nothing. With text the command is repeated after "> " when `echo` is set,
  /// then comes its answer, then one line of what changed in the callouts. \return false with one line in `error`;
  /// everything is then as it was before the line.
  [[nodiscard]] bool RunLine(const std::string& line, std::size_t number, bool echo, std::string& error);

  [[nodiscard]] Workspace& GetWorkspace() { return workspace_; }

private:
  /// What a command may change: the callouts, and counts of what the host did.
  struct Moment {
    std::vector<CalloutState> callouts;
    std::map<unsigned, unsigned> textWrites;  ///< By callout.
    unsigned redraws = 0;
  };

  [[nodiscard]] Moment Now() const;
  void Print(const std::string& line, std::size_t number, bool echo, const Answer& answer, const Moment& before);
  void PrintError(const std::string& line, std::size_t number, const std::string& error);

  std::ostream& output_;
  const bool json_;
  Workspace workspace_;
};

/// Runs `run` with the arguments behind it: [--json] SCRIPT, "-" for standard input. Messages go to standard error as
/// "SCRIPT:LINE: message".
/// \return the exit code: 0, or 2 after the first wrong command. [host-thread]
int RunScriptCommand(const std::vector<std::string>& arguments);

}  // namespace zrfigure
