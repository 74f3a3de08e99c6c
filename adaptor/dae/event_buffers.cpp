#include "adaptor/dae/event_buffers.hpp"

#include <cstddef>
#include <thread>

namespace zum {

EventBuffers::EventBuffers() {
  for (Buffer& buffer : buffers) {
    static_assert(offsetof(decltype(buffer.list), events) == offsetof(VstEvents, events));
    for (std::size_t i = 0; i < buffer.events.size(); ++i) {
      buffer.events[i].type = kVstMidiType;
      buffer.events[i].byteSize = sizeof(VstMidiEvent);
      buffer.list.events[i] = &buffer.events[i];
    }
  }
}

// Both sides take the flag, so that no buffer is swapped under a writer's hands. The block tries
// once; this thread may wait for the few instructions of a swap.
bool EventBuffers::tryPush(const ShortMessage& message) {
  while (midiBusy.exchange(true, std::memory_order_acquire)) std::this_thread::yield();
  Buffer& buffer = buffers[bufferIndex];
  const bool fits = buffer.fill < kEvents;
  if (fits) {
    VstMidiEvent& event = buffer.events[static_cast<std::size_t>(buffer.fill++)];
    event.deltaFrames = 0;
    for (std::size_t i = 0; i < message.size(); ++i) event.midiData[i] = message[i];
  }
  midiBusy.store(false, std::memory_order_release);
  return fits;
}

VstEvents* EventBuffers::tryTake() ZUM_REALTIME {
  if (midiBusy.exchange(true, std::memory_order_acquire)) return nullptr;
  Buffer& filled = buffers[bufferIndex];
  bufferIndex ^= 1U;
  filled.list.numEvents = filled.fill;
  filled.fill = 0;
  midiBusy.store(false, std::memory_order_release);
  return filled.list.numEvents > 0 ? reinterpret_cast<VstEvents*>(&filled.list) : nullptr;
}

}  // namespace zum
