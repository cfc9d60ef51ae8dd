#include "import/FileCheck.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "import/ImportError.h"
#include "import/NameText.h"

namespace zrfigure {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kHeadBytes = 4096;
constexpr std::size_t kTailBytes = 4096;
constexpr std::size_t kGlbHeaderBytes = 12;
constexpr const char* kSupported = "supported are .step .stp .p21 .glb .gltf .obj";

std::string LowerExtension(const fs::path& path) {
  std::string extension = path.extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return extension;
}

FileFormat FormatOfExtension(const std::string& extension) {
  if (extension == ".step" || extension == ".stp" || extension == ".p21") return FileFormat::Step;
  if (extension == ".glb" || extension == ".gltf") return FileFormat::Gltf;
  if (extension == ".obj") return FileFormat::Obj;
  if (extension.empty()) throw ImportError(std::string("the name has no extension; ") + kSupported);
  throw ImportError("unknown extension '" + extension + "'; " + kSupported);
}

std::uintmax_t CheckedSize(const fs::path& path) {
  std::error_code failure;
  const fs::file_status status = fs::status(path, failure);
  if (status.type() == fs::file_type::not_found) throw ImportError("no such file");
  if (failure) throw ImportError(failure.message());
  if (fs::is_directory(status)) throw ImportError("is a folder, not a file");
  if (!fs::is_regular_file(status)) throw ImportError("not a regular file");
  const std::uintmax_t size = fs::file_size(path, failure);
  if (failure) throw ImportError(failure.message());
  if (size == 0) throw ImportError("the file is empty");
  return size;
}

std::string ReadBlock(std::ifstream& file, std::uintmax_t offset, std::size_t count) {
  std::string block(count, '\0');
  file.clear();
  file.seekg(static_cast<std::streamoff>(offset));
  file.read(block.data(), static_cast<std::streamsize>(count));
  block.resize(static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0)));
  return block;
}

bool IsBlank(unsigned char c) {
  return std::isspace(c) != 0;
}

std::string_view WithoutByteOrderMarkAndBlanks(std::string_view text) {
  if (text.substr(0, 3) == "\xEF\xBB\xBF") text.remove_prefix(3);
  while (!text.empty() && IsBlank(static_cast<unsigned char>(text.front()))) text.remove_prefix(1);
  return text;
}

void CheckStep(std::string_view head, std::string_view tail) {
  if (head.find("ISO-10303-21") == std::string_view::npos) throw ImportError("not a STEP file");
  // Half an assembly is worse than none: its parts list would look complete.
  if (tail.find("END-ISO-10303-21") == std::string_view::npos) {
    throw ImportError("the STEP file is cut short: it does not end with END-ISO-10303-21");
  }
}

std::uint32_t LittleEndian32(std::string_view bytes) {
  std::uint32_t value = 0;
  for (int i = 3; i >= 0; --i) value = value << 8 | static_cast<unsigned char>(bytes[static_cast<std::size_t>(i)]);
  return value;
}

void CheckBinaryGltf(std::string_view head, std::uintmax_t size) {
  if (head.substr(0, 4) != "glTF") throw ImportError("not a binary glTF file");
  if (head.size() < kGlbHeaderBytes) throw ImportError("the glTF file is cut short");
  const std::uint32_t version = LittleEndian32(head.substr(4));
  if (version != 2) throw ImportError("glTF version " + std::to_string(version) + "; only version 2 can be read");
  if (LittleEndian32(head.substr(8)) > size) throw ImportError("the glTF file is cut short");
}

void CheckJsonGltf(std::string_view head, std::string_view tail) {
  if (WithoutByteOrderMarkAndBlanks(head).substr(0, 1) != "{") throw ImportError("not a glTF file: no JSON object");
  while (!tail.empty() && IsBlank(static_cast<unsigned char>(tail.back()))) tail.remove_suffix(1);
  if (tail.empty() || tail.back() != '}') throw ImportError("the glTF file is cut short");
}

void CheckObj(std::string_view head) {
  if (head.find('\0') != std::string_view::npos) throw ImportError("not an OBJ file: binary content");
  static constexpr std::array<std::string_view, 12> kKeywords{"v", "vn", "vt", "vp", "f",      "o",
                                                              "g", "s",  "l",  "p",  "mtllib", "usemtl"};
  const std::string_view text = WithoutByteOrderMarkAndBlanks(head);
  const std::string_view word = text.substr(0, text.find_first_of(" \t\r\n"));
  const bool isKnown = std::find(kKeywords.begin(), kKeywords.end(), word) != kKeywords.end();
  if (!isKnown && text.substr(0, 1) != "#") throw ImportError("not an OBJ file");
}

}  // namespace

FileFormat CheckFile(const std::string& path) {
  const std::uintmax_t size = CheckedSize(path);
  const std::string extension = LowerExtension(path);
  const FileFormat format = FormatOfExtension(extension);
  std::ifstream file(path, std::ios::binary);
  if (!file) throw ImportError(std::strerror(errno));
  const std::string head = ReadBlock(file, 0, kHeadBytes);
  const std::string tail = ReadBlock(file, size > kTailBytes ? size - kTailBytes : 0, kTailBytes);
  if (head.empty()) throw ImportError("the file cannot be read");
  switch (format) {
    case FileFormat::Step:
      CheckStep(head, tail);
      break;
    case FileFormat::Gltf:
      extension == ".glb" ? CheckBinaryGltf(head, size) : CheckJsonGltf(head, tail);
      break;
    case FileFormat::Obj:
      CheckObj(head);
      break;
  }
  return format;
}

bool IsUtf8File(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string block(1 << 16, '\0');
  std::string carried;
  while (file.read(block.data(), static_cast<std::streamsize>(block.size())) || file.gcount() > 0) {
    const std::string text = carried + block.substr(0, static_cast<std::size_t>(file.gcount()));
    const std::size_t valid = ValidUtf8Prefix(text);
    // A sequence cut by the end of the block is at most three bytes; anything longer is not UTF-8.
    if (text.size() - valid > 3) return false;
    carried = text.substr(valid);
  }
  return carried.empty();
}

}  // namespace zrfigure
