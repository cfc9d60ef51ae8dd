#pragma once
// Writing a file so that a reader sees the old content or the new one, never a half.

#include <filesystem>
#include <string>
#include <string_view>

namespace zrfigure {

/// Writes a temporary file beside `path` and renames it over `path`. On failure nothing is left behind, an existing
/// file stays as it was, and `error` says which path failed and why.
[[nodiscard]] bool WriteFileAtomically(const std::filesystem::path& path, std::string_view bytes, std::string& error);

}  // namespace zrfigure
