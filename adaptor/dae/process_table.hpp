// Which process an effect belongs to. The effect's callback is told its record alone, and finds the
// process here.
#pragma once

#include "core/aeffect.hpp"
#include "engine/realtime.hpp"

namespace zum {

class KvRTASWrapperProcess;

// [main] False when the memory does not suffice.
bool tryAddProcess(const AEffect* effect, KvRTASWrapperProcess* process);
void removeProcess(const AEffect* effect);
/// [any] Null for an effect that is not in the table, as it is not in its own constructor.
KvRTASWrapperProcess* findProcess(const AEffect* effect) ZUM_REALTIME;

}  // namespace zum
