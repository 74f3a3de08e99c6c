#include "adaptor/control_value.hpp"

#include <algorithm>
#include <cmath>

namespace zum {

float normalisedOf(std::int32_t value) {
  return static_cast<float>((static_cast<double>(value) + 2147483648.0) * 2.3283064370807974e-10);
}

std::int32_t controlValueOf(float normalised) {
  const double held = normalised > 0.0F ? (normalised < 1.0F ? normalised : 1.0F) : 0.0F;
  // The upper end lies between two integers, the higher of which is none of 32 bits.
  const double scaled = std::rint(held * 4294967295.0 - 2147483647.5);
  return static_cast<std::int32_t>(std::min(scaled, 2147483647.0));
}

}  // namespace zum
