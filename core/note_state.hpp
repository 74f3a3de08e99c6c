// What was played: notes held, bend, pressure. Kept up to date for whoever shows it; nothing is
// heard of it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "engine/realtime.hpp"

namespace zum {

/// [audio]
class NoteState {
 public:
  static constexpr std::size_t kVoices = 2;

  /// Takes the next free voice, or the one that is due when none is free.
  void noteOn(std::int32_t note, std::int32_t velocity) ZUM_REALTIME;
  /// False when the note is not held.
  bool noteOff(std::int32_t note) ZUM_REALTIME;
  void allNotesOff() ZUM_REALTIME;
  /// From the high data byte alone: -1 at 0, 0 at 64, +1 at 127.
  void bend(std::int32_t highByte) ZUM_REALTIME;

  // by voice
  std::array<float, kVoices> notes{};
  std::array<float, kVoices> pitches{};     // Hz
  std::array<float, kVoices> velocities{};  // 0 when the voice is free

  std::int32_t noteIndex = 0;  // the voice that is due
  std::int32_t noteRound = 0;  // 0 to 3
  float lastNote = 0.0F;
  float lastPitch = 0.0F;     // Hz
  float lastVelocity = 0.0F;  // 0 when nothing is held
  float firstNote = 0.0F;     // 1 while the last note came upon silence
  float pitchBend = 0.0F;
  float aftertouch = 0.0F;
  std::int32_t lastProgram = 0;

 private:
  void takeVoice() ZUM_REALTIME;
  void findLast() ZUM_REALTIME;
};

}  // namespace zum
