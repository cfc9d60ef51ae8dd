#include "MutatedInputs.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace zrfuzz {

MutatedInputs::MutatedInputs(const std::string& corpusFolder, std::uint32_t seed) : random_(seed) {
  std::vector<std::filesystem::path> paths;
  std::error_code missing;
  for (const auto& entry : std::filesystem::directory_iterator(corpusFolder, missing)) paths.push_back(entry.path());
  std::sort(paths.begin(), paths.end());
  for (const auto& path : paths) {
    std::ifstream file(path, std::ios::binary);
    corpus_.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
}

Input MutatedInputs::Next() {
  Input input = corpus_.empty() ? Input() : corpus_[Draw(corpus_.size())];
  for (std::size_t changes = 1 + Draw(4); changes != 0; --changes) Mutate(input);
  return input;
}

void MutatedInputs::Mutate(Input& input) {
  if (input.empty()) input.push_back(static_cast<std::uint8_t>(random_()));
  const auto from = input.begin() + static_cast<std::ptrdiff_t>(Draw(input.size()));
  const auto length = std::min<std::ptrdiff_t>(input.end() - from, static_cast<std::ptrdiff_t>(1 + Draw(24)));
  const Input piece(from, from + length);
  switch (Draw(5)) {
    case 0:
      *from = static_cast<std::uint8_t>(random_());
      break;
    case 1:
      *from = static_cast<std::uint8_t>(*from ^ (1u << Draw(8)));
      break;
    case 2:
      input.erase(from, from + length);
      break;
    case 3:
      input.insert(from, piece.begin(), piece.end());
      break;
    default: {
      if (corpus_.empty()) break;
      const Input& other = corpus_[Draw(corpus_.size())];
      if (other.empty()) break;
      const auto begin = other.begin() + static_cast<std::ptrdiff_t>(Draw(other.size()));
      const auto end = begin + std::min<std::ptrdiff_t>(other.end() - begin, static_cast<std::ptrdiff_t>(Draw(40)));
      input.insert(from, begin, end);
    }
  }
}

}  // namespace zrfuzz
