// The LFO's four wavetables. Made once, with the first effect object.
#pragma once

#include <array>

#include "engine/numbers.hpp"

namespace zum {

/// One cycle in 1024 entries, the last entry equal to the first, read with interpolation.
struct WaveTable {
  static constexpr int kCycle = 1024;
  std::array<float, kCycle + 1> entries{};
  std::array<float, kCycle + 1> differences{};  // to the next entry

  /// `phase` 0 to 1.
  float at(float phase) const ZUM_REALTIME {
    const float p = phase * static_cast<float>(kCycle);
    const int n = truncate(p);
    const auto i = static_cast<std::size_t>(n & (kCycle - 1));
    return entries[i] + (p - static_cast<float>(n)) * differences[i];
  }
};

struct WaveTables {
  WaveTable sine;
  WaveTable square;
  WaveTable falling;   // from 1 down to -0.8, with the jump back smoothed
  WaveTable triangle;  // with rounded corners, peaks at 0.92
};

const WaveTables& waveTables();

}  // namespace zum
