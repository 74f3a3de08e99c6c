// Makes an effect instance: what the plug-in file exports and what programs of our own call.
#pragma once

#include "core/aeffect.hpp"

namespace zum {

class EffectEditor;
class KvUniClient;
/// Makes the window of an effect, which goes with it.
using EditorFactory = EffectEditor* (*)(KvUniClient& effect);

/// A new instance, which lives until the host sends effClose. `host` may be null. Null when the
/// memory does not suffice. Without a factory it has no window.
AEffect* createEffect(audioMasterCallback host, EditorFactory makeEditor = nullptr) noexcept;

}  // namespace zum
