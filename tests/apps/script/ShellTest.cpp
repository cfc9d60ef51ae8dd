#include <csignal>
#include <cstdlib>

#include <gtest/gtest.h>

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include "../commands/ProgramRunner.h"

namespace zrfigure {
namespace {

namespace fs = std::filesystem;

/// `zrfigure shell` at a terminal of its own.
class TerminalSession {
public:
  TerminalSession(const fs::path& state, std::vector<std::string> arguments) {
    const fs::path program = fs::read_symlink("/proc/self/exe").parent_path() / "zrfigure";
    arguments.insert(arguments.begin(), {program.string(), "shell"});
    std::vector<char*> argv;
    for (std::string& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    winsize size{40, 200, 0, 0};
    child_ = forkpty(&terminal_, nullptr, nullptr, &size);
    if (child_ == 0) {
      setenv("XDG_STATE_HOME", state.c_str(), 1);
      setenv("TERM", "dumb", 1);
      if (chdir((fs::path(ZR_SOURCE_DIR) / "examples").c_str()) == 0) execv(argv[0], argv.data());
      _exit(127);
    }
  }
  ~TerminalSession() { close(terminal_); }  // which ends the child

  /// Types keys; whether the text comes within 20 s then.
  bool Answers(const std::string& keys, const std::string& text) {
    return write(terminal_, keys.data(), keys.size()) == static_cast<ssize_t>(keys.size()) && Shows(text);
  }

  /// Whether the text comes within 20 s, behind what earlier calls found.
  bool Shows(const std::string& text) {
    char buffer[4096];
    for (;;) {
      if (const auto at = seen_.find(text); at != std::string::npos) {
        seen_.erase(0, at + text.size());
        return true;
      }
      pollfd wait{terminal_, POLLIN, 0};
      if (poll(&wait, 1, 20000) <= 0) return false;
      const ssize_t count = read(terminal_, buffer, sizeof buffer);
      if (count <= 0) return false;
      seen_.append(buffer, static_cast<std::size_t>(count));
    }
  }
  [[nodiscard]] const std::string& Seen() const { return seen_; }

  /// Types keys that end it; its exit code.
  int End(const std::string& keys) {
    for (bool more = Answers(keys, "\n"); more;) more = Shows("\n");  // up to the end, or 20 s of silence
    kill(child_, SIGKILL);
    int status = 0;
    waitpid(child_, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

private:
  int terminal_ = -1;
  pid_t child_ = -1;
  std::string seen_;
};

TEST(ShellTest, CompletesRemembersAndGoesOnAfterMistakes) {
  const TemporaryFolder folder;
  {
    TerminalSession shell(folder.Path(), {});
    ASSERT_TRUE(shell.Shows("zrfigure> "));
    // The keys, and what the screen then shows.
    const std::pair<const char*, const char*> steps[] = {
        {"op\tdrive-unit.s\t\n", "50 parts in drive-unit.step"},
        {"gen\t\n", "18 callouts added"},
        {"align ma\tx --d\t1 2\n", "max-x --distribute 1 2"},
        {"hide \"Motor h\t\n", "1 leader hidden"},
        {"hide Pillow\t\t", "Pillow block 2"},
        {"\x03"
         "frobnicate\n",
         "'frobnicate' is no command"},
        {"\x1b[A\x1b[A\n", "'Motor housing 1' is hidden already"},
        {"help undo\n", "Take the last change back"},
    };
    for (const auto& [keys, text] : steps) {
      ASSERT_TRUE(shell.Answers(keys, text) && shell.Shows("zrfigure> ")) << keys << "\n" << shell.Seen();
    }
    EXPECT_EQ(shell.End("\x04"), 0);
  }
  TerminalSession later(folder.Path(), {"--no-history"});
  ASSERT_TRUE(later.Shows("zrfigure> "));
  EXPECT_EQ(later.End("\x1b[Aquit\n"), 0) << "nothing is remembered here: " << later.Seen();
  TerminalSession again(folder.Path(), {});
  EXPECT_TRUE(again.Shows("zrfigure> ") && again.Answers("\x1b[A", "help undo"));
  EXPECT_EQ(again.End("\x03quit\n"), 0);
}

}  // namespace
}  // namespace zrfigure
