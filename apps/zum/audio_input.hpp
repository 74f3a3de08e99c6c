// Reading of a music file as a stereo stream; used by the commands that play one.
#pragma once

#include <sndfile.h>

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace zum {

struct SndfileCloser {
  void operator()(SNDFILE* file) const { sf_close(file); }
};
using SndfilePointer = std::unique_ptr<SNDFILE, SndfileCloser>;

/// What libsndfile has against `file`, or against the last one that it did not open.
std::string libraryError(SNDFILE* file);

class AudioInput {
 public:
  /// Throws Failure for what is no music file, and for what the effect cannot take.
  explicit AudioInput(const std::filesystem::path& path);

  int sampleRate() const { return info.samplerate; }
  int format() const { return info.format; }
  /// The length; 0 when the file does not tell it, as in a stream.
  sf_count_t frames() const { return info.frames == SF_COUNT_MAX ? 0 : info.frames; }
  /// Title, artist and the like, by libsndfile's numbers.
  std::vector<std::pair<int, std::string>> texts() const;

  /// Fills up to `count` frames of both channels, mono doubled; fewer only at the end of the file.
  /// Throws Failure when the file breaks off before its end.
  int read(float* left, float* right, int count);
  /// To the begin again; throws Failure where the file cannot go there.
  void rewind();
  /// Tells of samples so far that are no finite numbers: the effect is silent there.
  void warnOfDamage() const;

 private:
  std::string name;
  SF_INFO info{};
  SndfilePointer file;
  sf_count_t framesRead = 0;
  sf_count_t nonFinite = 0;  // samples
  std::vector<float> interleaved;
};

}  // namespace zum
