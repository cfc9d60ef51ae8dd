#include <dp/Environment.h>

#include <cstdlib>

namespace dp {

bool Environment::Test(const char* name) {
  return name && std::getenv(name) != nullptr;
}

}  // namespace dp
