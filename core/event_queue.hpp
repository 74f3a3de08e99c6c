// MIDI on its way to the control pass that it is due in.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "core/engine_event.hpp"

namespace zum {

/// [audio] Sorted by time, each time told from the event ahead. Never allocates.
class EventQueue {
 public:
  static constexpr std::size_t kRoom = 4096;

  /// `time` counts from now. Ahead of the first event that is due later; every event behind it
  /// moves up by what is left of its time, not the next one alone. When it is full, what later
  /// events of a kind supersede makes room.
  void insert(EngineEvent event) ZUM_REALTIME;
  void age(std::int32_t frames) ZUM_REALTIME;
  /// Takes the head when it is due.
  bool next(EngineEvent& event) ZUM_REALTIME;
  /// The first note-on of that note that still waits never sounds.
  void cancelNoteOn(std::int32_t note) ZUM_REALTIME;
  std::size_t size() const ZUM_REALTIME { return end - first; }

 private:
  void thinOut() ZUM_REALTIME;

  static_assert(kEventKinds * kMostOfAKind < kRoom);
  std::array<EngineEvent, kRoom> events;
  std::size_t first = 0;
  std::size_t end = 0;
};

}  // namespace zum
