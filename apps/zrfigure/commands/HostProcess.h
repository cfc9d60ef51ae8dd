#pragma once
// What the host framework needs once a process: kernel, world, authoring application, the callouts component.

#include <string>

#include <du/SmartPtr.h>
#include <zrk/Kernel.h>

namespace zrk {
class World;
}

namespace zrfigure {

/// Starts the host in its constructor and ends it in its destructor. One at a time in a process; everything that the
/// host made must be gone before it. The program is the authoring application. Starts threads. [host-thread]
class HostProcess {
public:
  explicit HostProcess(const std::string& language);
  ~HostProcess();
  HostProcess(const HostProcess&) = delete;
  HostProcess& operator=(const HostProcess&) = delete;

  /// Loads the component: the very library that this program is linked with, so that its exported classes and its
  /// engines are one. \return false with one line in `error`.
  [[nodiscard]] bool LoadComponent(std::string& error);

private:
  zrk::Kernel kernel_;
  du::SmartPtr<zrk::World> world_;
};

}  // namespace zrfigure
