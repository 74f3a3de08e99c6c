// Reading of the file, and going round in it.
#include "apps/zum/sound_loop.hpp"

#include <string>

#include "apps/zum/audio_input.hpp"
#include "apps/zum/failure.hpp"

namespace zum {
namespace {

constexpr int kReadFrames = 65536;
constexpr std::size_t kMostFrames = std::size_t{512} * kReadFrames;  // 256 MB

}  // namespace

// Reads up to the end, not by the length that the file tells: a stream tells none.
SoundLoop::SoundLoop(const std::filesystem::path& path) {
  AudioInput input(path);
  rate = input.sampleRate();
  std::size_t length = 0;
  for (int got = kReadFrames; got == kReadFrames; length += static_cast<std::size_t>(got)) {
    if (length == kMostFrames) {
      throw Failure(path.string() + " is too long to loop; cut it to less than " +
                    std::to_string(kMostFrames / static_cast<std::size_t>(rate)) + " seconds");
    }
    leftFrames.resize(length + kReadFrames);
    rightFrames.resize(length + kReadFrames);
    got = input.read(leftFrames.data() + length, rightFrames.data() + length, kReadFrames);
  }
  leftFrames.resize(length);
  rightFrames.resize(length);
}

void SoundLoop::read(float* left, float* right, int count) {
  const std::size_t length = leftFrames.size();
  std::size_t place = next;
  for (int i = 0; i < count; ++i) {
    left[i] = leftFrames[place];
    right[i] = rightFrames[place];
    if (++place == length) place = 0;
  }
  next = place;
}

}  // namespace zum
