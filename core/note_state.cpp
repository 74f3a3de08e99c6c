#include "core/note_state.hpp"

#include <algorithm>
#include <bit>

#include "engine/powers.hpp"

namespace zum {
namespace {

constexpr std::int32_t kEnd = NoteState::kVoices;

std::size_t at(std::int32_t voice) ZUM_REALTIME { return static_cast<std::size_t>(voice); }

// Equal temperament, A4 = 440 Hz.
float pitchOf(std::int32_t note) ZUM_REALTIME {
  return 440.0F * powerOfTwo((static_cast<float>(note) - 69.0F) / 12.0F);
}

// Keeps a velocity from being 0. By the fourth time round it is next to nothing.
float offsetOf(std::int32_t round) ZUM_REALTIME {
  constexpr std::array<float, 3> kOffsets = {1.2e-6F, 2.4e-6F, 3.6e-6F};
  return round < 3 ? kOffsets[at(round)] : std::bit_cast<float>(round);
}

}  // namespace

void NoteState::takeVoice() ZUM_REALTIME {
  if (velocities[at(noteIndex)] == 0.0F) return;
  for (std::int32_t i = 1; i < kEnd; ++i) {
    const std::int32_t voice = (noteIndex + i) % kEnd;
    if (velocities[at(voice)] != 0.0F) continue;
    noteIndex = voice;
    return;
  }
}

void NoteState::noteOn(std::int32_t note, std::int32_t velocity) ZUM_REALTIME {
  takeVoice();
  const bool silent = std::all_of(velocities.begin(), velocities.end(),
                                  [](float held) ZUM_REALTIME { return held == 0.0F; });
  firstNote = silent ? 1.0F : 0.0F;
  lastVelocity = static_cast<float>(velocity) * 0.0078125F + offsetOf(noteRound);
  noteRound = (noteRound + 1) % 4;
  lastNote = static_cast<float>(note);
  lastPitch = pitchOf(note);
  velocities[at(noteIndex)] = lastVelocity;
  notes[at(noteIndex)] = lastNote;
  pitches[at(noteIndex)] = lastPitch;
  noteIndex = (noteIndex + 1) % kEnd;
}

bool NoteState::noteOff(std::int32_t note) ZUM_REALTIME {
  firstNote = 0.0F;
  for (std::size_t voice = 0; voice < kVoices; ++voice) {
    if (notes[voice] != static_cast<float>(note) || velocities[voice] == 0.0F) continue;
    velocities[voice] = 0.0F;
    findLast();
    return true;
  }
  return false;
}

// Backwards from the voice that is due.
void NoteState::findLast() ZUM_REALTIME {
  for (std::int32_t i = 1; i <= kEnd; ++i) {
    const std::int32_t voice = (noteIndex - i + kEnd) % kEnd;
    if (velocities[at(voice)] == 0.0F) continue;
    lastVelocity = velocities[at(voice)];
    lastNote = notes[at(voice)];
    return;
  }
  lastVelocity = 0.0F;
  aftertouch = 0.0F;
}

void NoteState::allNotesOff() ZUM_REALTIME {
  velocities.fill(0.0F);
  lastVelocity = 0.0F;
  aftertouch = 0.0F;
  noteIndex = 0;
}

void NoteState::bend(std::int32_t highByte) ZUM_REALTIME {
  const auto fromCentre = static_cast<float>(highByte - 64);
  pitchBend = fromCentre * (highByte < 64 ? 0.015625F : 0.01587301678955555F);
}

}  // namespace zum
