// Memory that fails when a test says so. A program that uses it links failing_memory.cpp, which
// replaces the allocator of C++.
#pragma once

#include <new>

namespace zum::test {

/// The allocation of that number on this thread fails, counted from 1 from here on; 0 for none.
void failAllocation(int number) noexcept;
/// True when it has failed. None fails from here on.
bool hasFailed() noexcept;

/// Runs `act` with an allocation that fails. False when it needed less than as many.
template <class Act>
bool failsAt(int number, const Act& act) {
  failAllocation(number);
  try {
    act();
  } catch (const std::bad_alloc&) {
    failAllocation(0);
    return true;
  }
  return hasFailed();
}

}  // namespace zum::test
