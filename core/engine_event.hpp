// What a MIDI message becomes, and which of several messages matter where there is no room for all.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/note_state.hpp"

namespace zum {

/// Thousands of them have room in an effect, of which most stay untouched: small, and as it comes
/// until it is filled in.
struct EngineEvent {
  enum Code : std::int16_t {
    kCancelled = 0,
    kNoteOn = 200,
    kNoteOff = 201,
    kAllNotesOff = 202,
    kController = 203,
    kPitchBend = 204,
    kProgramChange = 205,
    kAftertouch = 206,
  };
  std::int32_t time;  // frames until it is due, from the event ahead of it on
  Code code;
  std::uint8_t data1;
  std::uint8_t data2;
};
static_assert(sizeof(EngineEvent) == 8);

/// Kinds of events of which the last one makes those before it needless: each controller, bend,
/// pressure, program changes, the end of all notes. The end of each note is a kind, too, of which
/// several count. Channels are not told apart.
inline constexpr std::size_t kEventKinds = 2 * 128 + 4;
/// Each end of a note stops one voice, so as many of them stay as there are voices.
inline constexpr std::size_t kMostOfAKind = NoteState::kVoices;

/// Below kEventKinds; kEventKinds for what may be lost: a note that begins.
constexpr std::size_t kindOf(const EngineEvent& event) ZUM_REALTIME {
  const std::size_t number = std::size_t{event.data1} % 128;
  switch (event.code) {
    case EngineEvent::kController: return number;
    case EngineEvent::kNoteOff: return 128 + number;
    case EngineEvent::kAllNotesOff: return 256;
    case EngineEvent::kPitchBend: return 257;
    case EngineEvent::kProgramChange: return 258;
    case EngineEvent::kAftertouch: return 259;
    default: return kEventKinds;
  }
}
constexpr std::size_t mostOfItsKind(const EngineEvent& event) ZUM_REALTIME {
  return event.code == EngineEvent::kNoteOff ? kMostOfAKind : 1;
}

}  // namespace zum
