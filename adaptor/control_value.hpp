// A control's 32-bit value and a parameter's 0 to 1, in both directions.
#pragma once

#include <cstdint>

namespace zum {

float normalisedOf(std::int32_t value);
/// What is outside of 0 to 1, or no number, is held there.
std::int32_t controlValueOf(float normalised);

}  // namespace zum
