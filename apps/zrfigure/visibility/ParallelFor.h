#pragma once
// Spreads independent pieces of work over the machine's processors.

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

namespace zrfigure {

/// Calls body(0) .. body(count - 1), each once, on several threads and returns when all are done. Pieces must not
/// depend on each other and write only to places of their own: then the result does not depend on the number of
/// threads.
template <class Body>
void ParallelFor(int count, const Body& body) {
  std::atomic<int> next{0};
  const auto work = [&] {
    for (int i = next++; i < count; i = next++) body(i);
  };
  const int threads = std::min(count, std::max(1, static_cast<int>(std::thread::hardware_concurrency())));
  std::vector<std::jthread> helpers;
  for (int i = 1; i < threads; ++i) helpers.emplace_back(work);
  work();
}

}  // namespace zrfigure
