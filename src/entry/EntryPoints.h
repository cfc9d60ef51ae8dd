#pragma once
// The three entry points by which the host reaches the library, exported unmangled.

#include <string>

#include <du/RefCounted.h>
#include <du/SmartPtr.h>

#include "zrcallouts/Export.h"

extern "C" {

/// Does nothing; one function under both names.
ZR_CALLOUTS_API void ZRDllInit() noexcept;
ZR_CALLOUTS_API void ZRDllTerminate() noexcept;

/// Makes a callouts engine for ("create", "callouts", "calloutengine"), compared exactly; false and `out` untouched for
/// anything else. True with `out` emptied when the memory pool gives nothing: callers test `out`, not only the result.
ZR_CALLOUTS_API bool ZRDllCreateComponent(const std::string& action, const std::string& kind, const std::string& name,
                                          du::SmartPtr<du::RefCounted>& out);
}
