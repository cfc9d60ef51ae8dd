#pragma once

#include <string>

#include <du/Export.h>

namespace zrk {
namespace illustration {

/// Loads the library that makes callouts engines and gives its factory to the engine manager. One library a process.
/// [host-thread]
class ZR_HOST_API ComponentLoader {
public:
  /// Loads the library, looks its three entry points up and initialises it. The library that is loaded already is
  /// initialised again only after Terminate. False, with the reason in `error` and nothing changed, when the file, an
  /// entry point is missing, or another library is loaded.
  static bool Load(const std::string& path, std::string& error);
  [[nodiscard]] static bool IsLoaded();
  /// Takes the factory back and terminates the library, which stays in memory for the objects it made. World::Shutdown
  /// calls it.
  static void Terminate();
  /// Terminates the library and takes it out of memory. False, and still in memory, while counted objects of any kind
  /// are alive, or under a sanitizer, whose reports need the library.
  static bool Unload();
};

}  // namespace illustration
}  // namespace zrk
