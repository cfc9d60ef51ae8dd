// The entry point of a libFuzzer program, whose build names the function that takes the inputs.
#include <cstdlib>
#include <iostream>
#include <span>

#include ZR_FUZZ_HEADER

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (const auto finding = zrfuzz::ZR_FUZZ_FUNCTION(std::span(data, size))) {
    std::cerr << *finding << std::endl;
    std::abort();
  }
  return 0;
}
