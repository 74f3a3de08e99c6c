// The sound libraries of the system, which talk to standard error unless they are told not to.
#pragma once

namespace zum {

// ---- [main]
/// What they would print is told by us. Ahead of any use of them.
void quietenSoundSystems();
/// Whether ALSA's sequencer, which has the MIDI ports, is there: a library that asks in vain
/// complains aloud.
bool hasAlsaSequencer();

}  // namespace zum
