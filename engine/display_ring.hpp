// The last points of a level for a scope of the window, the oldest overwritten. The engine writes,
// the window reads without a lock; a torn read costs a pixel.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "engine/shared_value.hpp"

namespace zum {

template <std::int32_t size>
struct DisplayRing {
  static constexpr std::int32_t kPoints = size;
  std::array<float, kPoints> points{};
  std::int32_t writeIndex = 0;  // of the newest point; the one behind it is the oldest

  void enter(float point) ZUM_REALTIME {
    const std::int32_t after = writeIndex + 1;
    const std::int32_t at = after < kPoints ? after : 0;
    storeShared(points[static_cast<std::size_t>(at)], point);
    storeShared(writeIndex, at);
  }
};

}  // namespace zum
