#pragma once
// Makes allocations fail on purpose. The program that links this has operator new and delete of its own.

#include <cstddef>

namespace zrtest {

enum class Memory {
  Pool,      ///< The host's memory pool, whoever asks: it answers with null.
  Ordinary,  ///< Operator new where the component's code asks for it, also by way of the standard library.
  OnBehalf,  ///< Operator new where the host asks for it in a call that the component has made.
};

/// While it lives, `successes` allocations succeed and the next `failures` fail, on all threads. One at a time.
class AllocationFaults {
public:
  static constexpr unsigned kForever = 0x7fffffff;

  AllocationFaults(Memory memory, unsigned successes, unsigned failures);
  ~AllocationFaults();
  AllocationFaults(const AllocationFaults&) = delete;
  AllocationFaults& operator=(const AllocationFaults&) = delete;

  [[nodiscard]] std::size_t GetInjectedCount() const;
  /// How many allocations could have failed so far.
  [[nodiscard]] std::size_t GetSeenCount() const;

  /// What operator new has handed out in this process and nobody has given back.
  [[nodiscard]] static long GetLiveCount();

private:
  const Memory memory_;
  const std::size_t poolBefore_;
};

}  // namespace zrtest
