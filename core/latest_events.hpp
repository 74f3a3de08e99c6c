// The last events of every kind, where there is no room for all of them.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

#include "core/event_queue.hpp"

namespace zum {

/// One thread puts in, one takes out, and neither waits: every kind has one word, with the event's
/// number in front, counted from 1.
class LatestEvents {
 public:
  // [host]
  bool isEmpty() const ZUM_REALTIME {
    return kept.load(std::memory_order_relaxed) == taken.load(std::memory_order_acquire);
  }
  /// In the place of the one before of its kind; the ends of a note add up. Where a note begins
  /// nothing is kept.
  void keep(const EngineEvent& event) ZUM_REALTIME;

  // [audio]
  /// The number of the last event.
  std::uint64_t lastNumber() const ZUM_REALTIME { return kept.load(std::memory_order_acquire); }
  /// Takes the events up to the one of that number, in the order in which they came, due at `time`.
  /// A kind that a newer event came to stays for the next time, so that none goes past another.
  void takeInto(EventQueue& queue, std::uint64_t last, std::int32_t time) ZUM_REALTIME;

 private:
  std::array<std::atomic<std::uint64_t>, kEventKinds> words{};  // 0 for none
  std::atomic<std::uint64_t> kept{0};
  std::atomic<std::uint64_t> taken{0};
};

}  // namespace zum
