#include "BrokenFiles.h"

#include <random>
#include <regex>
#include <stdexcept>

namespace zrfigure::fixtures {
namespace {

/// No two files of one run have the same name.
std::string NameOf(const std::string& kind, const BrokenFiles& files, const std::string& extension) {
  return kind + "-" + std::to_string(files.size()) + extension;
}

}  // namespace

void AddDamaged(const std::vector<Damage>& damages, const std::string& extension, const std::string& text,
                BrokenFiles& files, const std::function<std::string(const std::string&)>& finish) {
  for (const Damage& damage : damages) {
    const std::regex pattern(damage.pattern);
    for (const std::string& replacement : damage.replacements) {
      using namespace std::regex_constants;
      const std::string changed =
          std::regex_replace(text, pattern, replacement, damage.everywhere ? format_default : format_first_only);
      if (changed == text) throw std::logic_error("nothing to damage: " + damage.pattern);
      files.push_back({NameOf("damaged", files, extension), finish ? finish(changed) : changed});
    }
  }
}

void AddFlipped(const std::string& extension, const std::string& whole, std::size_t begin, int count,
                BrokenFiles& files) {
  std::mt19937 random(20240607);
  for (int i = 0; i < count; ++i) {
    std::string bytes = whole;
    for (int flips = 1 << i % 4; flips > 0; --flips) {
      bytes[begin + random() % (whole.size() - begin)] ^= static_cast<char>(1U << random() % 8);
    }
    files.push_back({NameOf("flipped", files, extension), bytes});
  }
}

void AddCut(const std::string& extension, const std::string& whole, const std::string& end, int count,
            BrokenFiles& files) {
  for (int i = 1; i <= count; ++i) {
    const std::size_t length = whole.size() * static_cast<std::size_t>(i) / static_cast<std::size_t>(count + 1);
    files.push_back({NameOf("cut", files, extension), whole.substr(0, length) + end});
  }
}

BrokenFiles ForeignFiles() {
  const std::string contents[] = {"",
                                  std::string(5000, ' '),
                                  std::string(5000, '\0'),
                                  "\x89PNG\r\n\x1a\n" + std::string("\0\0\0\rIHDR\0\0\1\0\0\0\1\0\x08\x06\0\0\0", 21),
                                  "\177ELF\2\1\1" + std::string(3000, '\0'),
                                  "Dear all,\nplease find the assembly attached.\n",
                                  std::string("\xff\xfeI\0S\0O\0-\0\61\0\60\0\63\0\60\0\63\0", 20),
                                  R"({"parts":[{"name":"bolt","quantity":4}]})"};
  BrokenFiles files;
  for (const char* extension : {".step", ".glb", ".gltf", ".obj"}) {
    for (const std::string& bytes : contents) files.push_back({NameOf("foreign", files, extension), bytes});
    files.push_back({"folder" + std::string(extension), "", true});
  }
  files.push_back({"drawing.dwg", "AC1032"});
  files.push_back({"no-extension", "ISO-10303-21;"});
  files.push_back({"two\nlines.step", "ISO-10303-21;"});
  return files;
}

}  // namespace zrfigure::fixtures
