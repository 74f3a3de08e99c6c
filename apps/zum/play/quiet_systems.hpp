// The sound libraries of the system, which talk to standard error unless they are told not to.
#pragma once

namespace zum {

// ---- [main]
/// What they would print is told by us. Ahead of any use of them.
void quietenSoundSystems();
// Whether there is somebody to talk to: libraries complain aloud where there is not.
/// A JACK server. None is started.
bool isJackRunning();
/// ALSA's sequencer, which has the MIDI ports.
bool hasAlsaSequencer();

}  // namespace zum
