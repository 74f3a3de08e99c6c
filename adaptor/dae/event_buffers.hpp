// MIDI on its way from the host's MIDI thread to the block: two buffers, one that fills while the
// other one is played.
#pragma once

#include <array>
#include <atomic>
#include <memory>

#include "adaptor/dae/hostlib/midi_node.hpp"
#include "core/aeffect.hpp"
#include "engine/realtime.hpp"

namespace zum {

class EventBuffers {
 public:
  static constexpr std::int32_t kEvents = 256;

  EventBuffers();

  /// [host] For the next block, at its start. False for a message that finds no room and is lost.
  bool tryPush(const ShortMessage& message);
  /// [audio] What came since the last call, valid until the next one. Null for nothing, and while
  /// the other thread is just writing: then all of it waits for the next block.
  VstEvents* tryTake() ZUM_REALTIME;

  /// While it is set tryTake() gives nothing.
  std::atomic<bool> midiBusy{false};

 private:
  /// The list is that of VstEvents with more room.
  struct Buffer {
    std::array<VstMidiEvent, kEvents> events{};
    struct {
      std::int32_t numEvents = 0;
      std::intptr_t reserved = 0;
      std::array<VstMidiEvent*, kEvents> events{};
    } list;
    std::int32_t fill = 0;
  };
  std::array<Buffer, 2> buffers;
  std::uint8_t bufferIndex = 0;  // the one that fills
};

}  // namespace zum
