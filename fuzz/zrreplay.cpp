// zrreplay FILE...           prints the calls of each program, one a line, and what went wrong
// zrreplay --shrink FILE     leaves calls out as long as it still goes wrong, and writes FILE.small
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include "HostCalls.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

bool ReadFile(const std::string& path, Bytes& bytes) {
  std::ifstream file(path, std::ios::binary);
  bytes.assign(std::istreambuf_iterator<char>(file), {});
  if (file.good() || file.eof()) return true;
  std::cerr << "zrreplay: cannot read '" << path << "'" << std::endl;
  return false;
}

bool Replay(const std::string& path) {
  Bytes program;
  if (!ReadFile(path, program)) return false;
  std::cout << path << ":" << std::endl;
  std::size_t number = 0;
  const auto finding = zrfuzz::RunHostCalls(
      program, [&number](const std::string& line) { std::cout << "  " << ++number << "  " << line << std::endl; });
  if (finding) std::cout << *finding << std::flush;
  return !finding;
}

/// In a process of its own, so that a crash is a failure too.
bool Fails(const Bytes& program) {
  const pid_t child = fork();
  if (child == 0) {
    std::freopen("/dev/null", "w", stderr);
    _exit(zrfuzz::RunHostCalls(program) ? 1 : 0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return status != 0;
}

/// Ever smaller runs of calls are left out, as in delta debugging (Zeller and Hildebrandt 2002).
Bytes Shrink(Bytes program) {
  for (std::size_t calls = program.size() / zrfuzz::kBytesPerCall / 2; calls != 0; calls /= 2) {
    const std::size_t length = calls * zrfuzz::kBytesPerCall;
    for (std::size_t at = 0; at + length <= program.size();) {
      Bytes shorter = program;
      const auto first = shorter.begin() + static_cast<std::ptrdiff_t>(at);
      shorter.erase(first, first + static_cast<std::ptrdiff_t>(length));
      if (Fails(shorter)) {
        program = std::move(shorter);
      } else {
        at += length;
      }
    }
  }
  return program;
}

bool ShrinkFile(const std::string& path) {
  Bytes program;
  if (!ReadFile(path, program)) return false;
  if (!Fails(program)) {
    std::cerr << "zrreplay: nothing goes wrong with '" << path << "'" << std::endl;
    return false;
  }
  const Bytes small = Shrink(std::move(program));
  std::ofstream(path + ".small", std::ios::binary)
      .write(reinterpret_cast<const char*>(small.data()), static_cast<std::streamsize>(small.size()));
  return Replay(path + ".small");
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  if (arguments.size() == 2 && arguments[0] == "--shrink") return ShrinkFile(arguments[1]) ? 0 : 1;
  if (arguments.empty() || arguments[0].empty() || arguments[0][0] == '-') {
    std::cerr << "usage: zrreplay FILE... | zrreplay --shrink FILE" << std::endl;
    return 2;
  }
  bool holds = true;
  for (const auto& path : arguments) holds = Replay(path) && holds;
  return holds ? 0 : 1;
}
