// A file of any bytes, in memory alone, for what reads by a path.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <string>

#include "fuzz/bytes.hpp"

namespace zum {

class MemoryFile {
 public:
  MemoryFile() : number(memfd_create("fuzz", MFD_CLOEXEC)) { demand(number >= 0); }
  ~MemoryFile() { close(number); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  void fill(const std::uint8_t* bytes, std::size_t count) const {
    demand(ftruncate(number, 0) == 0);
    demand(pwrite(number, bytes, count, 0) == static_cast<ssize_t>(count));
  }
  std::string path() const { return "/proc/self/fd/" + std::to_string(number); }

 private:
  const int number;
};

}  // namespace zum
