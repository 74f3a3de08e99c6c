// What a host sends, until the next block takes it: hosts may send on another thread than that of
// the block call.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>

#include "core/event_queue.hpp"

namespace zum {

/// One thread puts in, one takes out, and neither waits.
class EventInbox {
 public:
  /// [host] False when there is no room.
  bool tryPush(const EngineEvent& event) ZUM_REALTIME {
    const std::size_t at = put.load(std::memory_order_relaxed);
    if (at - taken.load(std::memory_order_acquire) == kRoom) return false;
    events[at % kRoom] = event;
    put.store(at + 1, std::memory_order_release);
    return true;
  }
  /// [audio] False when it is empty.
  bool tryPop(EngineEvent& event) ZUM_REALTIME {
    const std::size_t at = taken.load(std::memory_order_relaxed);
    if (at == put.load(std::memory_order_acquire)) return false;
    event = events[at % kRoom];
    taken.store(at + 1, std::memory_order_release);
    return true;
  }

 private:
  static constexpr std::size_t kRoom = EventQueue::kRoom;
  static_assert((kRoom & (kRoom - 1)) == 0, "the counters wrap round");
  std::array<EngineEvent, kRoom> events;
  std::atomic<std::size_t> put{0};
  std::atomic<std::size_t> taken{0};
};

}  // namespace zum
