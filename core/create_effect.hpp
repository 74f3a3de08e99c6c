// Makes an effect instance: what the plug-in file exports and what programs of our own call.
#pragma once

#include "core/aeffect.hpp"

namespace zum {

/// A new instance, which lives until the host sends effClose. `host` may be null. Null when the
/// memory does not suffice.
AEffect* createEffect(audioMasterCallback host) noexcept;

}  // namespace zum
