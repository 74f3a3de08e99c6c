// Any bytes as a standard MIDI file. Run by libFuzzer, or over the stored corpus by
// replay_main.cpp. Looks for messages that are none of a channel's, and for times that fall; what
// the library does with damaged files ends in a process of its own.

#include "apps/zum/midi_file.hpp"
#include "fuzz/memory_file.hpp"
#include "preset_text/failure.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) try {
  using namespace zum;
  static const MemoryFile file;
  file.fill(data, size);
  MidiFile song(file.path(), 44100.0);
  std::int64_t last = 0;
  for (const std::int64_t end : {std::int64_t{512}, std::int64_t{44100}, INT64_MAX}) {
    for (const MidiMessage& message : song.takeUntil(end)) {
      demand(message.frame >= last && message.frame < end);
      demand(message.bytes[0] >= 0x80 && message.bytes[0] < 0xF0);
      last = message.frame;
    }
  }
  return 0;
} catch (const zum::Failure&) {
  return 0;
}
