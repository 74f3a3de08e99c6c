// Writing of a stereo music file that appears only when it is whole; used by the render commands.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "apps/zum/audio_input.hpp"
#include "apps/zum/temporary_file.hpp"

namespace zum {

class AudioOutput {
 public:
  /// The format follows the extension of `path` and the samples of `input`, whose rate and texts it
  /// takes over. `frames` is the length to come, for formats that have a limit. Throws Failure.
  AudioOutput(const std::filesystem::path& path, const AudioInput& input, sf_count_t frames);

  void write(const float* left, const float* right, int count);
  /// Ends the file and gives it its name. Without this call there is no file.
  void finish();

  /// Tells of samples so far that clip.
  void warnOfDamage() const;
  /// The highest magnitude of the finite samples so far.
  float peak() const { return highest; }

 private:
  static SF_VIRTUAL_IO sinkFunctions();
  void measure(float sample);
  void checkWrite(bool complete) const;

  std::string name;
  int format;
  int bits;  // 0: not an integer format
  TemporaryFile temporary;
  SndfilePointer file;
  std::vector<float> floats;
  std::vector<int> integers;
  float highest = 0.0F;
  std::int64_t clipped = 0;
};

}  // namespace zum
