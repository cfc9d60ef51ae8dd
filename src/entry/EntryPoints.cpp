#include "entry/EntryPoints.h"

#include "zrcallouts/Callouts.h"

extern "C" {

void ZRDllInit() noexcept {}

void ZRDllTerminate() noexcept __attribute__((alias("ZRDllInit")));

bool ZRDllCreateComponent(const std::string& action, const std::string& kind, const std::string& name,
                          du::SmartPtr<du::RefCounted>& out) {
  if (action != "create" || kind != "callouts" || name != "calloutengine") return false;
  out = du::SmartPtr<zrcallouts::Callouts>(new zrcallouts::Callouts);
  return true;
}
}
