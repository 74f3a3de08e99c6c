// The messages of a standard MIDI file in the order of their times; used by the render command.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace zum {

/// A message of one of the channels.
struct MidiMessage {
  std::int64_t frame;  // from the start of the file on
  std::array<std::uint8_t, 3> bytes;
};

class MidiFile {
 public:
  /// Reads all tracks as one; the file's own tempo map gives the times. Throws Failure.
  MidiFile(const std::filesystem::path& path, double sampleRate);

  /// The messages before that frame that were not taken yet. Frames rise from call to call.
  std::span<const MidiMessage> takeUntil(std::int64_t frame);

 private:
  std::vector<MidiMessage> messages;
  std::size_t next = 0;
};

}  // namespace zum
