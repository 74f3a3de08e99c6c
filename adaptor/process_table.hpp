// Which process an effect belongs to: all that the effect's callback is told is its record.
#pragma once

#include "core/aeffect.hpp"
#include "engine/realtime.hpp"

namespace zum {

class KvRTASWrapperProcess;

// [main] False when the memory does not suffice.
bool enterProcess(const AEffect* effect, KvRTASWrapperProcess* process);
void removeProcess(const AEffect* effect);
/// [any] Null for an effect that is not entered, as one is in its constructor.
KvRTASWrapperProcess* findProcess(const AEffect* effect) ZUM_REALTIME;

}  // namespace zum
