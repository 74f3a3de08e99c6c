// Which groups of controls the window shows: bit g shows group g, group 0 always.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "engine/realtime.hpp"

namespace zum {

/// [any] Selectors write it, also on the audio thread; the editor reads it.
class GroupMask {
 public:
  static constexpr int kGroups = 128;

  bool test(int group) const ZUM_REALTIME {
    return (words[at(group)].load(std::memory_order_relaxed) & bit(group)) != 0;
  }
  void set(int group, bool shown) ZUM_REALTIME {
    if (shown) {
      words[at(group)].fetch_or(bit(group), std::memory_order_relaxed);
    } else if (group != 0) {
      words[at(group)].fetch_and(~bit(group), std::memory_order_relaxed);
    }
  }

 private:
  static std::size_t at(int group) ZUM_REALTIME { return static_cast<std::size_t>(group) / 32; }
  static std::uint32_t bit(int group) ZUM_REALTIME {
    return 1U << (static_cast<std::uint32_t>(group) % 32U);
  }

  std::array<std::atomic<std::uint32_t>, kGroups / 32> words{1U, 0U, 0U, 0U};
};

}  // namespace zum
