// Seeded programs of random host calls; what one of them finds is a file that zrreplay reads.
#include "HostCalls.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kCallsPerProgram = 250;

unsigned long NumberFrom(const char* variable, unsigned long otherwise) {
  const char* const given = std::getenv(variable);
  return given ? std::strtoul(given, nullptr, 10) : otherwise;
}

/// Written before the program runs, so that a crash leaves it behind.
std::filesystem::path Write(const Bytes& program, unsigned long seed) {
  const char* const folder = std::getenv("ZR_FUZZ_FINDINGS");
  const auto path = std::filesystem::path(folder ? folder : testing::TempDir()) / ("calls-" + std::to_string(seed));
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(program.data()), static_cast<std::streamsize>(program.size()));
  return path;
}

Bytes RandomProgram(unsigned long seed) {
  std::mt19937 random(static_cast<std::mt19937::result_type>(seed));
  Bytes program(kCallsPerProgram * zrfuzz::kBytesPerCall);
  for (auto& byte : program) byte = static_cast<std::uint8_t>(random());
  return program;
}

void ExpectNoFinding(const Bytes& program, const std::filesystem::path& file) {
  const auto finding = zrfuzz::RunHostCalls(program);
  if (finding) FAIL() << *finding << "zrreplay --shrink " << file.string();
}

TEST(HostCallsTest, EngineSceneAndHistoryAgreeAfterEveryCallOfRandomPrograms) {
  const unsigned long first = NumberFrom("ZR_FUZZ_SEED", 1);
  const unsigned long programs = NumberFrom("ZR_FUZZ_CALLS", 100000) / kCallsPerProgram;
  for (unsigned long seed = first; seed < first + programs; ++seed) {
    const Bytes program = RandomProgram(seed);
    const auto file = Write(program, seed);
    ExpectNoFinding(program, file);
    if (HasFatalFailure()) return;
    std::filesystem::remove(file);
  }
}

}  // namespace
