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
  /// Of what is heard at `rate` Hz, as floats where the format can hold them. Throws Failure.
  AudioOutput(const std::filesystem::path& path, int rate);

  void write(const float* left, const float* right, int count);
  /// Ends the file and gives it its name. Without this call there is no file.
  void finish();
  /// The same for what is to be kept whatever ends the program.
  void keep();
  /// Behind a write() that threw: what was written before it becomes the file. Throws Failure when
  /// that fails, too.
  void keepWhatFits();

  /// That the format can hold.
  sf_count_t mostFrames() const;

  /// Tells of samples so far that clip.
  void warnOfDamage() const;
  /// The highest magnitude of the finite samples so far.
  float peak() const { return highest; }

 private:
  AudioOutput(const std::filesystem::path& path, int inputFormat, int rate, sf_count_t frames);

  static SF_VIRTUAL_IO sinkFunctions();
  void dropBehindHeader() const;
  void close();
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
  sf_count_t length = 0;  // bytes ahead of the write() that is at work
};

}  // namespace zum
