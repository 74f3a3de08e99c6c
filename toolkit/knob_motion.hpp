// How far a drag and the wheel move a value: the same for knobs and for displays that are dragged.
#pragma once

#include "platform/input.hpp"

namespace zum {

/// Of the value, for each pixel of movement downwards; finer with Shift.
inline float dragStep(float sensitivity, int buttonWord) {
  return sensitivity * ((buttonWord & buttons::kShift) != 0 ? -0.0005F : -0.01F);
}

/// Of the value, for each unit that the wheel turns upwards.
inline constexpr float kWheelStep = 0.35F * 0.05F;
inline constexpr float kFineWheelStep = 0.11F * 0.05F;

}  // namespace zum
