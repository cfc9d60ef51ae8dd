#include "script/ImportServer.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "import/ModelSerialization.h"

// Request and answer are blocks: a length of eight bytes, then as many bytes. A request is a path, an answer a letter
// ('M' model, 'E' error) and the serialised model or one line of text.

namespace zrfigure {
namespace {

constexpr char kModel = 'M';
constexpr char kError = 'E';

/// `transfer(at, size)` moves some bytes and returns how many, as read and send do.
template <class Transfer>
bool MoveAll(char* bytes, std::size_t size, const Transfer& transfer) {
  while (size > 0) {
    const ssize_t moved = transfer(bytes, size);
    if (moved < 0 && errno == EINTR) continue;
    if (moved <= 0) return false;
    bytes += moved;
    size -= static_cast<std::size_t>(moved);
  }
  return true;
}

bool SendBlock(int connection, std::string block) {
  const auto send = [&](char* at, std::size_t size) { return ::send(connection, at, size, MSG_NOSIGNAL); };
  std::uint64_t length = block.size();
  return MoveAll(reinterpret_cast<char*>(&length), sizeof length, send) && MoveAll(block.data(), block.size(), send);
}

std::optional<std::string> ReceiveBlock(int connection) {
  const auto receive = [&](char* at, std::size_t size) { return ::read(connection, at, size); };
  std::uint64_t length = 0;
  if (!MoveAll(reinterpret_cast<char*>(&length), sizeof length, receive)) return std::nullopt;
  std::string block(length, '\0');
  if (!MoveAll(block.data(), block.size(), receive)) return std::nullopt;
  return block;
}

// An interrupt typed at the terminal is meant for the program, not for its server; the import below takes it again.
[[noreturn]] void Serve(int connection) {
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  std::signal(SIGINT, SIG_IGN);
  const int null = open("/dev/null", O_RDWR);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO}) dup2(null, stream);
  while (auto path = ReceiveBlock(connection)) {
    ImportRequest request;
    request.path = std::move(*path);
    const ImportResult result = ImportModel(request);
    if (!SendBlock(connection, result.model ? kModel + SerializeModel(*result.model) : kError + result.error)) break;
  }
  _exit(0);
}

}  // namespace

ImportServer::ImportServer() {
  std::array<int, 2> ends{-1, -1};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return;
  process_ = fork();
  if (process_ == 0) {
    close(ends[0]);
    Serve(ends[1]);
  }
  close(ends[1]);
  connection_ = ends[0];
}

ImportServer::~ImportServer() {
  if (connection_ >= 0) close(connection_);
  if (process_ > 0) waitpid(process_, nullptr, 0);
}

ImportResult ImportServer::Import(const std::string& path) {
  ImportResult result;
  std::optional<std::string> answer;
  if (process_ > 0 && SendBlock(connection_, path)) answer = ReceiveBlock(connection_);
  if (answer && answer->starts_with(kModel)) result.model = DeserializeModel(std::string_view(*answer).substr(1));
  if (!result.model) {
    const bool told = answer && answer->starts_with(kError);
    result.error = told ? answer->substr(1) : "cannot read '" + path + "': the import process is gone";
  }
  return result;
}

}  // namespace zrfigure
