#pragma once
// Damaged and hostile model files, made anew from sound ones. What is made is the same in every run.

#include <string>
#include <vector>

namespace zrfigure::fixtures {

struct BrokenFile {
  std::string name;  ///< File name; says what is wrong.
  std::string bytes;
  bool isFolder = false;
};

using BrokenFiles = std::vector<BrokenFile>;

/// A STEP file with only some parts of examples/drive-unit.step: quick to read, two levels deep.
[[nodiscard]] std::string SmallStepAssembly();
[[nodiscard]] BrokenFiles BrokenStepFiles();
[[nodiscard]] BrokenFiles BrokenGltfFiles();
[[nodiscard]] BrokenFiles BrokenObjFiles();
/// Pictures, programs, prose, nothing, and folders under the names of models.
[[nodiscard]] BrokenFiles ForeignFiles();

/// One place of a sound text changed; throws when the text has no such place.
struct Damage {
  std::string name;
  std::string pattern;  ///< Regular expression; its first match is replaced.
  std::string replacement;
  int maxPlaces = 1;  ///< 0 for all.
};

[[nodiscard]] std::string Damaged(const std::string& text, const Damage& damage);
/// `count` files named `name`-N`extension`, each with 1 to 8 bits flipped at or behind `begin`.
void AddFlipped(const std::string& name, const std::string& extension, const std::string& whole, std::size_t begin,
                int count, BrokenFiles& files);
/// `count` files named `name`-N`extension`, cut at equal distances, with `end` behind the cut.
void AddCut(const std::string& name, const std::string& extension, const std::string& whole, const std::string& end,
            int count, BrokenFiles& files);

}  // namespace zrfigure::fixtures
