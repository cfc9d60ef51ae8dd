#pragma once
// Damaged and hostile model files, made anew from sound ones. What is made is the same in every run.

#include <functional>
#include <string>
#include <vector>

namespace zrfigure::fixtures {

struct BrokenFile {
  std::string name;
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

/// What one regular expression finds in a sound text, and what is put there instead: a file for each replacement.
struct Damage {
  std::string pattern;
  std::vector<std::string> replacements;  ///< With $& and $1 for what was found.
  bool everywhere = false;                ///< Not at the first match alone.
};

/// Adds files damaged-N`extension`; throws when a damage changes nothing. `finish` makes the file's bytes of the text.
void AddDamaged(const std::vector<Damage>& damages, const std::string& extension, const std::string& text,
                BrokenFiles& files, const std::function<std::string(const std::string&)>& finish = {});
/// `count` files flipped-N`extension`, each with 1 to 8 bits flipped at or behind `begin`.
void AddFlipped(const std::string& extension, const std::string& whole, std::size_t begin, int count,
                BrokenFiles& files);
/// `count` files cut-N`extension`, cut at equal distances, with `end` behind the cut.
void AddCut(const std::string& extension, const std::string& whole, const std::string& end, int count,
            BrokenFiles& files);

}  // namespace zrfigure::fixtures
