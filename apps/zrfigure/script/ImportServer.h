#pragma once
// Importing models in a program that already runs threads of the host.

#include <string>

#include <sys/types.h>

#include "import/ImportProcess.h"

namespace zrfigure {

/// A process of its own that imports models one after the other. An import forks, which is safe only where no other
/// thread runs: so the server is forked once, before the program starts any thread, and forks for each import itself.
/// It ends with its owner. [host-thread]
class ImportServer {
public:
  /// Starts the server. When that fails every Import says so.
  ImportServer();
  /// Ends the server and waits for it.
  ~ImportServer();
  ImportServer(const ImportServer&) = delete;
  ImportServer& operator=(const ImportServer&) = delete;

  /// As ImportModel with its default limits; paths are relative to the working folder at the server's start.
  [[nodiscard]] ImportResult Import(const std::string& path);

private:
  int connection_ = -1;
  pid_t process_ = -1;
};

}  // namespace zrfigure
