// MIDI messages from the threads of their ports to the callback, one lane a port.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

#include "engine/realtime.hpp"

namespace zum {

/// Messages of at most three bytes; what comes while a lane is full is lost.
class MidiLane {
 public:
  using Message = std::array<std::uint8_t, 3>;

  /// [port] One thread at a time.
  bool write(const Message& message) ZUM_REALTIME {
    const std::size_t at = written.load(std::memory_order_relaxed);
    if (at - taken.load(std::memory_order_acquire) == kRoom) return false;
    messages[at % kRoom] = message;
    written.store(at + 1, std::memory_order_release);
    return true;
  }
  /// [audio] Calls tell(message) for each.
  template <class Tell>
  void read(Tell&& tell) ZUM_REALTIME {
    const std::size_t end = written.load(std::memory_order_acquire);
    std::size_t at = taken.load(std::memory_order_relaxed);
    for (; at != end; ++at) tell(messages[at % kRoom]);
    taken.store(end, std::memory_order_release);
  }

 private:
  static constexpr std::size_t kRoom = 1024;

  std::array<Message, kRoom> messages{};
  std::atomic<std::size_t> written{0};
  std::atomic<std::size_t> taken{0};
};

/// As many ports as are heard at once.
using MidiLanes = std::array<MidiLane, 32>;

}  // namespace zum
