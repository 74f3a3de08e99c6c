// [any] Where the current state came from, and where it stands in the bank.
#pragma once

#include <cstdint>

#include "state/shared_text.hpp"

namespace zum {

struct PresetSlot {
  SharedName name{"default"};
  SharedText<4096> path;  // of the file
  SharedText<1024> folder;
};

/// Aligned words.
struct ProgramPosition {
  std::int32_t& program;  // the one that the host is told
  std::int32_t folder = 0;
};

}  // namespace zum
