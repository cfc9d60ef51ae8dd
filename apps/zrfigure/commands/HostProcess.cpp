#include "commands/HostProcess.h"

#include <dlfcn.h>
#include <du/Localizer.h>
#include <zrk/MakeObject.h>
#include <zrk/World.h>
#include <zrk/illustration/Application.h>
#include <zrk/illustration/ComponentLoader.h>
#include <zrkapp/illustration/IllMultiRootContainer.h>
#include <zrkapp/illustration/OrreryApp.h>

#include "zrcallouts/Functions.h"

namespace zrfigure {
namespace {

/// File of the library that defines the component's exported functions; empty when it cannot be told.
std::string FindLinkedComponent() {
  Dl_info info{};
  const auto* address = reinterpret_cast<const void*>(&zrcallouts::GetCalloutsEngineForScene);
  if (dladdr(address, &info) == 0 || info.dli_fname == nullptr) return {};
  return info.dli_fname;
}

}  // namespace

HostProcess::HostProcess(const std::string& language) {
  zrk::Kernel::SetKernel(&kernel_);
  world_ = zrk::MakeObject<zrk::World>();
  zrk::World::SetWorld(world_);
  world_->SetMRC(zrk::MakeObject<zrkapp::illustration::IllMultiRootContainer>());
  world_->ChangeLanguage(language);
  zrk::illustration::SetRunningFoliant(true);
  zrkapp::illustration::OrreryApp::SetOrreryApp(zrk::MakeObject<zrkapp::illustration::OrreryApp>());
}

HostProcess::~HostProcess() {
  zrkapp::illustration::OrreryApp::SetOrreryApp(nullptr);
  world_->Shutdown();
  zrk::World::SetWorld(nullptr);
  world_.Reset();
  zrk::Kernel::SetKernel(nullptr);
}

bool HostProcess::LoadComponent(std::string& error) {
  const std::string path = FindLinkedComponent();
  std::string reason = "its library cannot be found";
  if (!path.empty() && zrk::illustration::ComponentLoader::Load(path, reason)) return true;
  error = "the callouts component cannot be loaded: " + reason;
  return false;
}

}  // namespace zrfigure
