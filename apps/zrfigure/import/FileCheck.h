#pragma once
// What can be told about a CAD file without the CAD library: its format, and whether its content looks like it.

#include <string>

namespace zrfigure {

enum class FileFormat { Step, Gltf, Obj };

/// The format of a readable, non-empty file whose content begins, and as far as the format tells ends, as that format
/// demands. Throws ImportError with the reason otherwise. The format is taken from the extension, in any case.
[[nodiscard]] FileFormat CheckFile(const std::string& path);

/// True when the bytes of the file are valid UTF-8, pure ASCII included. STEP files of older systems hold raw 8-bit
/// text instead of the escapes the format asks for.
[[nodiscard]] bool IsUtf8File(const std::string& path);

}  // namespace zrfigure
