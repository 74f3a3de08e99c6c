// Small number rules that every stage shares: clamps, truncation, the denormal constant.
#pragma once

#include <cstdint>

#include "engine/realtime.hpp"

namespace zum {

/// Added to every stored filter state, so that a decaying state never becomes denormal.
inline constexpr float kDenormalGuard = 1.000000045813705e-18F;

/// `x` held inside low..high; low for a value that is not a number.
constexpr float clampTo(float x, float low, float high) ZUM_REALTIME {
  const float above = x > low ? x : low;
  return above < high ? above : high;
}

constexpr float clampUnit(float x) ZUM_REALTIME { return clampTo(x, 0.0F, 1.0F); }

/// Truncation toward zero. Far values stop at the ends of the integer, a value that is not a
/// number gives 0, so that no input can make the conversion undefined.
constexpr std::int32_t truncate(float x) ZUM_REALTIME {
  constexpr float kLimit = 2147483520.0F;  // the largest float below 2^31
  return x == x ? static_cast<std::int32_t>(clampTo(x, -kLimit, kLimit)) : 0;
}

constexpr std::int32_t clampIndex(std::int32_t i, std::int32_t last) ZUM_REALTIME {
  return i < 0 ? 0 : i > last ? last : i;
}

}  // namespace zum
