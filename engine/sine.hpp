// The sine that enters the sound. Libraries differ in a last bit here and there, and from processor
// to processor; this one is the same everywhere.
#pragma once

#include "engine/realtime.hpp"

namespace zum {

/// [any] `angle` -120 to 120; 0 for what lies outside. A glide to the start of the song ends a
/// little below 0.
float sineOf(float angle) ZUM_REALTIME;

}  // namespace zum
