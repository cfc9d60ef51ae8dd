#include "BrokenFiles.h"

#include <random>
#include <regex>
#include <stdexcept>

namespace zrfigure::fixtures {

std::string Damaged(const std::string& text, const Damage& damage) {
  const std::regex pattern(damage.pattern);
  const auto flags =
      damage.maxPlaces == 1 ? std::regex_constants::format_first_only : std::regex_constants::format_default;
  std::string changed = std::regex_replace(text, pattern, damage.replacement, flags);
  if (changed == text) throw std::logic_error("nothing to damage: " + damage.name);
  return changed;
}

void AddFlipped(const std::string& name, const std::string& extension, const std::string& whole, std::size_t begin,
                int count, BrokenFiles& files) {
  std::mt19937 random(20240607);
  for (int i = 0; i < count; ++i) {
    std::string bytes = whole;
    for (int flips = 1 << i % 4; flips > 0; --flips) {
      bytes[begin + random() % (whole.size() - begin)] ^= static_cast<char>(1U << random() % 8);
    }
    files.push_back({name + "-" + std::to_string(i) + extension, bytes});
  }
}

void AddCut(const std::string& name, const std::string& extension, const std::string& whole, const std::string& end,
            int count, BrokenFiles& files) {
  for (int i = 0; i < count; ++i) {
    const std::size_t length = whole.size() * static_cast<std::size_t>(i + 1) / static_cast<std::size_t>(count + 1);
    files.push_back({name + "-" + std::to_string(i) + extension, whole.substr(0, length) + end});
  }
}

BrokenFiles ForeignFiles() {
  const std::pair<const char*, std::string> contents[] = {
      {"empty", ""},
      {"blank", std::string(5000, ' ')},
      {"zeros", std::string(5000, '\0')},
      {"picture", "\x89PNG\r\n\x1a\n" + std::string("\0\0\0\rIHDR\0\0\1\0\0\0\1\0\x08\x06\0\0\0", 21)},
      {"program",
       "\x7f"
       "ELF\2\1\1" +
           std::string(3000, '\0')},
      {"prose", "Dear all,\nplease find the assembly attached.\n"},
      {"wide-text", std::string("\xff\xfeI\0S\0O\0-\0"
                                "1\0"
                                "0\0"
                                "3\0"
                                "0\0"
                                "3\0",
                                20)},
      {"json", R"({"parts":[{"name":"bolt","quantity":4}]})"}};
  BrokenFiles files;
  for (const char* extension : {".step", ".glb", ".gltf", ".obj"}) {
    for (const auto& [name, bytes] : contents) files.push_back({name + std::string(extension), bytes});
    files.push_back({"folder" + std::string(extension), "", true});
  }
  files.push_back({"drawing.dwg", "AC1032"});
  files.push_back({"no-extension", "ISO-10303-21;"});
  files.push_back({"two\nlines.step", "ISO-10303-21;"});
  return files;
}

}  // namespace zrfigure::fixtures
