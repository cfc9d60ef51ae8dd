#pragma once
// Lines typed at a terminal, with editing, history and completion.

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "script/Completion.h"

namespace zrfigure {

/// Edits lines on standard input and output, which must be a terminal. Tab completes; Ctrl-C drops the line, Ctrl-D on
/// an empty line ends the input.
class LineEditor {
public:
  /// Completes the line as far as it stands left of the cursor.
  using Completer = std::function<Completion(std::string_view line)>;

  /// \param history lines of earlier sessions, read now and written after each line; no file when empty. A file that
  /// cannot be read or written is passed over.
  LineEditor(const std::string& prompt, const std::filesystem::path& history, Completer completer);
  ~LineEditor();
  LineEditor(const LineEditor&) = delete;
  LineEditor& operator=(const LineEditor&) = delete;

  /// The next line without its line feed; nothing at the end of the input.
  [[nodiscard]] std::optional<std::string> ReadLine();

private:
  class Terminal;

  std::unique_ptr<Terminal> terminal_;
};

/// The file for the shell's history: in $XDG_STATE_HOME, else in ~/.local/state; empty when there is no such folder to
/// be named. Makes the folder.
[[nodiscard]] std::filesystem::path HistoryFile();

}  // namespace zrfigure
