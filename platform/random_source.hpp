// The system's generator of small random numbers, for chance in presets and patches.
#pragma once

#include <cstdint>

namespace zum {

/// A linear congruential generator of which the high bits are given out (D. E. Knuth, "The Art of
/// Computer Programming", vol. 2, 3.2.1).
class SystemRandom {
 public:
  static constexpr int kHighest = 32767;

  explicit constexpr SystemRandom(std::uint32_t seed) : state(seed) {}
  /// 0 to kHighest.
  constexpr int next() {
    state = state * 214013U + 2531011U;
    return static_cast<int>(state >> 16U) & kHighest;
  }

 private:
  std::uint32_t state;
};

}  // namespace zum
