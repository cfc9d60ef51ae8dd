#include "commands/RunEvent.h"

#include <cstdio>

namespace zrfigure {

void RunEvent::Progress(unsigned char percent) {
  zrk::AsyncEvent::Progress(percent);
  if (show_) std::fprintf(stderr, "\rcreating callouts %3d %%", percent);
}

void RunEvent::Complete() {
  // The line must be gone before the waiting thread goes on and writes to the same terminal.
  if (show_) std::fputs("\r\033[K", stderr);
  zrk::AsyncEvent::Complete();
}

}  // namespace zrfigure
