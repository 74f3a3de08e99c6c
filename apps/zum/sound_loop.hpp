// A music file in memory that starts over at its end; what the edit command plays.
#pragma once

#include <filesystem>
#include <vector>

namespace zum {

class SoundLoop {
 public:
  /// Silence.
  SoundLoop() = default;
  /// [main] Reads all of the file; throws Failure, also for one that is too long to keep.
  explicit SoundLoop(const std::filesystem::path& path);

  int sampleRate() const { return rate; }
  /// [audio] The next `count` frames of both channels.
  void read(float* left, float* right, int count);

 private:
  int rate = 44100;  // Hz
  std::vector<float> leftFrames{0.0F};
  std::vector<float> rightFrames{0.0F};
  std::size_t next = 0;
};

}  // namespace zum
