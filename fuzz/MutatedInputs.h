#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace zrfuzz {

using Input = std::vector<std::uint8_t>;

/// Inputs made from others by a seed: bytes changed, taken out, doubled, and pieces of one put into another. The same
/// seed and corpus give the same inputs everywhere.
class MutatedInputs {
public:
  /// The files of the folder in the order of their names; none when there is no such folder.
  MutatedInputs(const std::string& corpusFolder, std::uint32_t seed);

  [[nodiscard]] const std::vector<Input>& Corpus() const { return corpus_; }
  [[nodiscard]] Input Next();

private:
  [[nodiscard]] std::size_t Draw(std::size_t count) { return random_() % count; }
  void Mutate(Input& input);

  std::vector<Input> corpus_;
  std::mt19937 random_;
};

}  // namespace zrfuzz
