// The generator behind random steps and sample-and-hold waves, one seed a use.
#pragma once

#include <cstdint>

#include "engine/realtime.hpp"

namespace zum {

/// A multiplicative congruential generator (S. K. Park and K. W. Miller, "Random number generators:
/// good ones are hard to find", CACM 31, 1988) whose product wraps at 32 bits: the sequence has
/// both signs.
class RandomGenerator {
 public:
  explicit constexpr RandomGenerator(std::int32_t firstSeed) : seed(firstSeed) {}

  /// -1 to 1.
  float next() ZUM_REALTIME {
    const std::uint32_t product = static_cast<std::uint32_t>(seed) * 16807U;
    seed = static_cast<std::int32_t>(product) % 2147483647;
    return static_cast<float>(static_cast<double>(seed) * 4.656612873077393e-10);
  }

 private:
  std::int32_t seed;
};

}  // namespace zum
