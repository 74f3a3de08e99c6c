// What the process holds of the system just now.
#pragma once

#include <malloc.h>
#include <unistd.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>

// Of a sanitizer, where there is one.
extern "C" [[gnu::weak]] std::size_t __sanitizer_get_current_allocated_bytes();

namespace zum::test {

inline std::ptrdiff_t openFiles() {
  using Files = std::filesystem::directory_iterator;
  return std::distance(Files("/proc/self/fd"), Files());
}

/// Memory that was asked for and not given back.
inline std::size_t heapBytes() {
  if (__sanitizer_get_current_allocated_bytes != nullptr)
    return __sanitizer_get_current_allocated_bytes();
  const auto use = mallinfo2();
  return use.uordblks + use.hblkhd;
}

inline std::size_t residentBytes() {
  std::size_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages >> pages;
  return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

}  // namespace zum::test
