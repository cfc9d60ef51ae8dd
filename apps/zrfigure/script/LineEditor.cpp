#include "script/LineEditor.h"

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include <histedit.h>

namespace zrfigure {
namespace {

namespace fs = std::filesystem;

constexpr int kHistoryLines = 1000;
constexpr std::size_t kShownChoices = 60;

/// Names of parts are UTF-8, also where the terminal's locale was left at "C".
void UseUtf8() {
  const char* const chosen = std::setlocale(LC_CTYPE, "");
  if (chosen == nullptr || std::string_view(chosen).find("UTF-8") == std::string_view::npos) {
    std::setlocale(LC_CTYPE, "C.UTF-8");
  }
}

void PrintChoices(const std::vector<std::string>& choices) {
  std::fputc('\n', stdout);
  for (std::size_t i = 0; i < std::min(choices.size(), kShownChoices); ++i) std::printf("%s\n", choices[i].c_str());
  if (choices.size() > kShownChoices) std::printf("... and %zu more\n", choices.size() - kShownChoices);
  std::fflush(stdout);
}

}  // namespace

/// The library's state; it calls back with a plain pointer.
class LineEditor::Terminal {
public:
  Terminal(std::string prompt, fs::path history, Completer completer)
      : prompt_(std::move(prompt)),
        historyFile_(std::move(history)),
        completer_(std::move(completer)),
        history_(history_init()),
        editor_(el_init("zrfigure", stdin, stdout, stderr)) {
    HistEvent event;
    ::history(history_, &event, H_SETSIZE, kHistoryLines);
    ::history(history_, &event, H_SETUNIQUE, 1);
    if (!historyFile_.empty()) ::history(history_, &event, H_LOAD, historyFile_.c_str());
    el_set(editor_, EL_CLIENTDATA, this);
    el_set(editor_, EL_PROMPT, &Terminal::Prompt);
    el_set(editor_, EL_EDITOR, "emacs");
    el_set(editor_, EL_HIST, &::history, history_);
    el_set(editor_, EL_ADDFN, "complete", "Complete the word", &Terminal::Complete);
    el_set(editor_, EL_BIND, "^I", "complete", nullptr);
    el_set(editor_, EL_BIND, "^R", "em-inc-search-prev", nullptr);
    // Ctrl-C reaches the editor as a character while a line is edited, and drops the line.
    el_set(editor_, EL_SETTY, "-d", "-isig", nullptr);
    el_set(editor_, EL_BIND, "^C", "em-kill-line", nullptr);
  }
  ~Terminal() {
    el_end(editor_);
    history_end(history_);
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  std::optional<std::string> ReadLine() {
    int count = 0;
    // The library shows the prompt first and takes the terminal over then: a Ctrl-D in between would be lost, and a
    // Ctrl-C would end the program.
    el_set(editor_, EL_PREP_TERM, 1);
    const char* const line = el_gets(editor_, &count);
    if (line == nullptr || count <= 0) return std::nullopt;
    Remember(line);
    std::string text(line, static_cast<std::size_t>(count));
    text.erase(text.find_last_not_of("\r\n") + 1);
    return text;
  }

private:
  static char* Prompt(EditLine* editor) { return Of(editor).prompt_.data(); }

  static unsigned char Complete(EditLine* editor, int /*key*/) {
    const LineInfo* const line = el_line(editor);
    const std::string_view begun(line->buffer, static_cast<std::size_t>(line->cursor - line->buffer));
    const Completion completion = Of(editor).completer_(begun);
    if (completion.choices.empty()) return CC_REFRESH_BEEP;
    const std::string present(begun.substr(completion.begin));
    if (completion.replacement.size() > present.size() || completion.choices.size() == 1) {
      el_deletestr(editor, static_cast<int>(CharactersOf(present)));
      el_insertstr(editor, completion.replacement.c_str());
      return CC_REFRESH;
    }
    PrintChoices(completion.choices);
    return CC_REDISPLAY;
  }

  /// The editor counts characters, not bytes.
  static std::size_t CharactersOf(const std::string& text) {
    const auto isFirst = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; };
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), isFirst));
  }

  static Terminal& Of(EditLine* editor) {
    void* data = nullptr;
    el_get(editor, EL_CLIENTDATA, &data);
    return *static_cast<Terminal*>(data);
  }

  void Remember(const char* line) {
    if (std::string_view(line).find_first_not_of(" \t\r\n") == std::string_view::npos) return;
    HistEvent event;
    ::history(history_, &event, H_ENTER, line);
    if (!historyFile_.empty()) ::history(history_, &event, H_SAVE, historyFile_.c_str());
  }

  std::string prompt_;
  const fs::path historyFile_;
  const Completer completer_;
  History* const history_;
  EditLine* const editor_;
};

LineEditor::LineEditor(const std::string& prompt, const fs::path& history, Completer completer) {
  UseUtf8();
  terminal_ = std::make_unique<Terminal>(prompt, history, std::move(completer));
}

LineEditor::~LineEditor() = default;

std::optional<std::string> LineEditor::ReadLine() {
  return terminal_->ReadLine();
}

fs::path HistoryFile() {
  fs::path folder;
  const char* const state = std::getenv("XDG_STATE_HOME");
  const char* const home = std::getenv("HOME");
  if (state != nullptr && *state == '/') {
    folder = state;
  } else if (home != nullptr && *home == '/') {
    folder = fs::path(home) / ".local" / "state";
  }
  if (folder.empty()) return {};
  folder /= "zrfigure";
  std::error_code failure;
  fs::create_directories(folder, failure);
  return failure ? fs::path() : folder / "history";
}

}  // namespace zrfigure
