// The powers that enter the sound and the pitch of notes. Libraries differ in a last bit here and
// there, and from processor to processor; these are the same everywhere.
#pragma once

#include "engine/realtime.hpp"

namespace zum {

/// [any] `base` 0 to 1, to the power of 0.84; what is not above 0 gives 0.
float resonancePower(float base) ZUM_REALTIME;

/// [any] The same for 0.8.
float triggerPower(float base) ZUM_REALTIME;

/// [any] 2 to the power of `exponent`, -100 to 100.
float powerOfTwo(float exponent) ZUM_REALTIME;

}  // namespace zum
