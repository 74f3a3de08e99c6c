// MIDI on its way to the control pass that it is due in.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "engine/realtime.hpp"

namespace zum {

struct EngineEvent {
  enum Code : std::int32_t {
    kCancelled = -1,
    kNoteOn = 200,
    kNoteOff = 201,
    kAllNotesOff = 202,
    kController = 203,
    kPitchBend = 204,
    kProgramChange = 205,
    kAftertouch = 206,
  };
  std::int32_t size = 100;
  std::int32_t count = 1;
  std::int32_t time = 0;  // frames until it is due, from the event ahead of it on
  std::int32_t code = kCancelled;
  std::int32_t data1 = 0;
  std::int32_t data2 = 0;
  std::uint8_t flagA = 0;
  std::uint8_t flagB = 0;
  std::int32_t extra = 0;
};
static_assert(sizeof(EngineEvent) == 32);

/// [audio] Sorted by time, each time told from the event ahead. Never allocates: what finds no room
/// is dropped.
class EventQueue {
 public:
  static constexpr std::size_t kRoom = 2048;  // a second of the densest cable, and more

  /// `time` counts from now. Ahead of the first event that is due later; every event behind it
  /// moves up by what is left of its time, not the next one alone. False when there is no room.
  bool insert(EngineEvent event) ZUM_REALTIME;
  void age(std::int32_t frames) ZUM_REALTIME;
  /// Takes the head when it is due.
  bool next(EngineEvent& event) ZUM_REALTIME;
  /// The first note-on of that note that still waits never sounds.
  void cancelNoteOn(std::int32_t note) ZUM_REALTIME;
  std::size_t size() const ZUM_REALTIME { return end - first; }

 private:
  std::array<EngineEvent, kRoom> events;
  std::size_t first = 0;
  std::size_t end = 0;
};

}  // namespace zum
