#include "ProgramRunner.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zrfigure::fixtures {

namespace fs = std::filesystem;

ProgramResult RunProgram(const std::vector<std::string>& arguments, const fs::path& folder, const fs::path& input,
                         ProgramLimits limits) {
  const fs::path program = fs::read_symlink("/proc/self/exe").parent_path() / "zrfigure";
  const TemporaryFolder capture;
  const fs::path output = capture.Path() / "out";
  const fs::path errors = capture.Path() / "err";
  std::vector<std::string> words{program.string()};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    dup2(open(input.c_str(), O_RDONLY), STDIN_FILENO);
    dup2(open(output.c_str(), O_CREAT | O_WRONLY, 0600), STDOUT_FILENO);
    dup2(open(errors.c_str(), O_CREAT | O_WRONLY, 0600), STDERR_FILENO);
    alarm(limits.seconds);
    const rlimit memory{limits.addressSpaceBytes, limits.addressSpaceBytes};
    if (limits.addressSpaceBytes != 0) setrlimit(RLIMIT_AS, &memory);
    if (chdir(folder.c_str()) == 0) execv(argv[0], argv.data());
    _exit(127);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadWholeFile(output), ReadWholeFile(errors)};
}

}  // namespace zrfigure::fixtures
