#include "import/ImportProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <Standard_Failure.hxx>
#include <Standard_OutOfMemory.hxx>
#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <new>
#include <string_view>
#include <utility>

#include "import/FileCheck.h"
#include "import/ImportError.h"
#include "import/ModelImporter.h"
#include "import/ModelSerialization.h"
#include "import/NameText.h"

// The child sends one block: a letter ('M' model, 'E' reason of an error) and the bytes. A child that dies on the way
// leaves the block without its end mark, so a half-sent model is never taken for a whole one.

namespace zrfigure {
namespace {

using Clock = std::chrono::steady_clock;

constexpr char kModel = 'M';
constexpr char kReason = 'E';
constexpr std::string_view kEnd = "\n.end.\n";
constexpr std::size_t kMaxBlockBytes = std::size_t{4} << 30;

// Sanitizers reserve far more address space than any limit on it could allow.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kCanLimitMemory = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr bool kCanLimitMemory = false;
#else
constexpr bool kCanLimitMemory = true;
#endif
#else
constexpr bool kCanLimitMemory = true;
#endif

std::string ErrorLine(const std::string& path, const std::string& reason) {
  return "cannot read '" + CleanText(path) + "': " + reason;
}

std::string Megabytes(std::uint64_t bytes) {
  return std::to_string(bytes >> 20) + " MB";
}

std::string Seconds(double seconds) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%g s", seconds);
  return text.data();
}

void LimitResources(const ImportRequest& request) {
  const rlimit noCore{0, 0};
  setrlimit(RLIMIT_CORE, &noCore);
  if (!kCanLimitMemory || request.memoryLimitBytes == 0) return;
  rlimit memory{};
  getrlimit(RLIMIT_AS, &memory);
  memory.rlim_cur = std::min<rlim_t>(request.memoryLimitBytes, memory.rlim_cur);  // RLIM_INFINITY is the largest value
  setrlimit(RLIMIT_AS, &memory);
}

/// Names the limit in force, which may be one that was there before.
std::string MemoryReason() {
  rlimit memory{};
  getrlimit(RLIMIT_AS, &memory);
  if (memory.rlim_cur == RLIM_INFINITY) return "there is not enough memory for it";
  return "it needs more than " + Megabytes(memory.rlim_cur) + " of memory";
}

/// The caller's handlers must not run in the child, nor may the CAD library write where the caller writes.
void IsolateChild() {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL}) {
    std::signal(number, SIG_DFL);
  }
  const int null = open("/dev/null", O_RDWR);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(null, stream);
}

std::string ImportedBlock(const ImportRequest& request) {
  try {
    if (request.beforeImport) request.beforeImport();
    return kModel + SerializeModel(ModelImporter(request.path).Import());
  } catch (const ImportError& error) {
    return kReason + std::string(error.what());
  } catch (const std::bad_alloc&) {
    return kReason + MemoryReason();
  } catch (const Standard_OutOfMemory&) {
    return kReason + MemoryReason();
  } catch (const Standard_Failure& failure) {
    return kReason + std::string("the CAD library gave up: ") + CleanText(failure.GetMessageString());
  } catch (const std::exception& error) {
    return kReason + std::string("the CAD library gave up: ") + CleanText(error.what());
  } catch (...) {
    return kReason + std::string("the CAD library gave up");
  }
}

void SendAll(int pipe, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = write(pipe, bytes.data(), bytes.size());
    if (sent < 0 && errno == EINTR) continue;
    if (sent <= 0) return;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
}

/// Leaves by _exit: the caller's static objects and buffers are not the child's to clean up.
[[noreturn]] void RunChild(const ImportRequest& request, int pipe) {
  IsolateChild();
  LimitResources(request);
  SendAll(pipe, ImportedBlock(request));
  SendAll(pipe, kEnd);
  _exit(0);
}

int MillisecondsUntil(Clock::time_point deadline) {
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
  return static_cast<int>(std::clamp<long long>(left, 0, 1'000'000'000));
}

enum class Outcome { Complete, TimedOut, TooLarge };

/// Reads until the child closes its end.
Outcome Receive(int pipe, Clock::time_point deadline, std::string& block) {
  std::array<char, 1 << 16> buffer{};
  while (true) {
    pollfd wait{pipe, POLLIN, 0};
    const int ready = poll(&wait, 1, MillisecondsUntil(deadline));
    if (ready < 0 && errno == EINTR) continue;
    if (ready == 0) return Outcome::TimedOut;
    const ssize_t count = read(pipe, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return Outcome::Complete;
    if (block.size() + static_cast<std::size_t>(count) > kMaxBlockBytes) return Outcome::TooLarge;
    block.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

struct ChildEnd {
  int status = 0;
  std::uint64_t peakMemoryBytes = 0;
};

ChildEnd WaitFor(pid_t child) {
  ChildEnd end;
  rusage usage{};
  while (wait4(child, &end.status, 0, &usage) < 0 && errno == EINTR) {
  }
  end.peakMemoryBytes = static_cast<std::uint64_t>(usage.ru_maxrss) * 1024;
  return end;
}

std::string CrashReason(int status) {
  if (!WIFSIGNALED(status)) return "the CAD library ended the import without a result";
  const int number = WTERMSIG(status);
  return "the CAD library crashed (" + std::string(strsignal(number)) + "); the file is probably damaged";
}

std::string_view WithoutEnd(std::string_view block) {
  const bool isWhole = block.size() > kEnd.size() && block.substr(block.size() - kEnd.size()) == kEnd;
  return isWhole ? block.substr(0, block.size() - kEnd.size()) : std::string_view();
}

/// Turns what the child sent into a model, or throws the reason why there is none.
Model ModelOf(std::string_view block, int status) {
  const std::string_view content = WithoutEnd(block);
  if (content.empty()) throw ImportError(CrashReason(status));
  if (content.front() == kReason) throw ImportError(std::string(content.substr(1)));
  std::optional<Model> model = DeserializeModel(content.substr(1));
  if (!model) throw ImportError("the importing process sent a damaged model");
  return std::move(*model);
}

struct Pipe {
  Pipe() {
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw ImportError(std::string("no pipe: ") + std::strerror(errno));
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  ~Pipe() {
    close(ends[0]);
    CloseWriteEnd();
  }

  void CloseWriteEnd() {
    if (ends[1] >= 0) close(std::exchange(ends[1], -1));
  }

  std::array<int, 2> ends{-1, -1};
};

Model ImportInChild(const ImportRequest& request, std::uint64_t& peakMemoryBytes) {
  Pipe pipe;
  const auto limit = std::chrono::duration<double>(std::clamp(request.timeLimitSeconds, 0.0, 1e6));
  const Clock::time_point deadline = Clock::now() + std::chrono::duration_cast<Clock::duration>(limit);
  const pid_t child = fork();
  if (child < 0) throw ImportError(std::string("no process for it: ") + std::strerror(errno));
  if (child == 0) RunChild(request, pipe.ends[1]);
  pipe.CloseWriteEnd();
  std::string block;
  const Outcome outcome = Receive(pipe.ends[0], deadline, block);
  if (outcome != Outcome::Complete) kill(child, SIGKILL);
  const ChildEnd end = WaitFor(child);
  peakMemoryBytes = end.peakMemoryBytes;
  if (outcome == Outcome::TimedOut) {
    throw ImportError("not done within " + Seconds(limit.count()));
  }
  if (outcome == Outcome::TooLarge) throw ImportError("the meshed model is larger than " + Megabytes(kMaxBlockBytes));
  return ModelOf(block, end.status);
}

}  // namespace

ImportResult ImportModel(const ImportRequest& request) {
  ImportResult result;
  try {
    static_cast<void>(CheckFile(request.path));
    result.model = ImportInChild(request, result.peakMemoryBytes);
  } catch (const std::bad_alloc&) {
    result.error = ErrorLine(request.path, "out of memory");
  } catch (const std::exception& error) {
    result.error = ErrorLine(request.path, error.what());
  }
  return result;
}

}  // namespace zrfigure
