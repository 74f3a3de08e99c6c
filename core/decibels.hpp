// Linear gain in decibels, as readouts and hosts show it.
#pragma once

#include <cmath>

#include "engine/realtime.hpp"

namespace zum {

/// Silence is -160 dB.
inline float decibelsOf(float linear) ZUM_REALTIME { return 20.0F * std::log10(linear + 1e-8F); }

}  // namespace zum
