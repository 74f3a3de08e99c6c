// [any] Where the current state came from, and where it stands in the bank.
#pragma once

#include <cstddef>
#include <cstdint>

#include "state/shared_text.hpp"

namespace zum {

struct PresetSlot {
  static constexpr std::size_t kFolderRoom = 1024;

  SharedName name{"default"};
  SharedText<4096> path;  // of the file
  SharedText<kFolderRoom> folder;
};

/// Aligned words.
struct ProgramPosition {
  std::int32_t& program;  // the one that the host is told
  std::int32_t folder = 0;
};

}  // namespace zum
