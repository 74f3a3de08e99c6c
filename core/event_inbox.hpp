// What a host sends, until the next block takes it: hosts may send on another thread than that of
// the block call.
#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

#include "core/event_queue.hpp"
#include "core/latest_events.hpp"

namespace zum {

/// One thread puts in, one takes out, and neither waits.
class EventInbox {
 public:
  static constexpr std::size_t kRoom = 2048;  // a second of the densest cable, and more

  /// [host] Of what finds no room the last event of each kind is kept. While any is kept, all that
  /// comes later is kept in the same way, so that the order stays.
  void push(const EngineEvent& event) ZUM_REALTIME {
    const std::uint64_t at = put.load(std::memory_order_relaxed);
    if (!overflow.isEmpty() || at - taken.load(std::memory_order_acquire) == kRoom) {
      overflow.keep(event);
      return;
    }
    ring[at % kRoom] = event;
    put.store(at + 1, std::memory_order_release);
  }
  /// [audio] What overflowed is due with the latest event that found room.
  void takeInto(EventQueue& queue) ZUM_REALTIME {
    const std::uint64_t last = overflow.lastNumber();  // the ring holds all that is older, below
    const std::uint64_t end = put.load(std::memory_order_acquire);
    std::int32_t time = 0;
    for (std::uint64_t at = taken.load(std::memory_order_relaxed); at != end; ++at) {
      EngineEvent event = ring[at % kRoom];
      if (at < passed) event.time = 0;
      time = std::max(time, event.time);
      queue.insert(event);
    }
    taken.store(end, std::memory_order_release);
    overflow.takeInto(queue, last, time);
  }
  /// [audio] A block goes by that takes nothing. What waits for it is due at once when a block
  /// takes it, or times of several blocks would mix.
  void passBlock() ZUM_REALTIME { passed = put.load(std::memory_order_acquire); }

 private:
  std::array<EngineEvent, kRoom> ring;
  std::atomic<std::uint64_t> put{0};
  std::atomic<std::uint64_t> taken{0};
  std::uint64_t passed = 0;  // what was put in until the last block that took nothing
  LatestEvents overflow;
};

}  // namespace zum
