// Sound files as tests read and write them, and the factory loops as they play them.
#pragma once

#include <gtest/gtest.h>
#include <sndfile.h>

#include <string>
#include <vector>

#include "tests/support/test_host.hpp"

namespace zum::test {

struct Sound {
  SF_INFO info{};
  std::vector<float> samples;  // frame by frame
};

inline Sound readSound(const std::string& path) {
  Sound sound;
  SNDFILE* const file = sf_open(path.c_str(), SFM_READ, &sound.info);
  EXPECT_NE(file, nullptr) << path;
  if (file == nullptr) return sound;
  sound.samples.resize(static_cast<std::size_t>(sound.info.frames * sound.info.channels));
  EXPECT_EQ(sf_readf_float(file, sound.samples.data(), sound.info.frames), sound.info.frames);
  sf_close(file);
  return sound;
}

inline void writeSound(const std::string& path, int format, int channels, int rate,
                       const std::vector<float>& samples) {
  SF_INFO info{0, rate, channels, format, 0, 0};
  SNDFILE* const file = sf_open(path.c_str(), SFM_WRITE, &info);
  ASSERT_NE(file, nullptr) << path;
  sf_write_float(file, samples.data(), static_cast<sf_count_t>(samples.size()));
  sf_close(file);
}

inline void writeStereo(const std::string& path, int format, int rate, const Stereo& sides) {
  std::vector<float> samples;
  for (std::size_t i = 0; i < sides.frames(); ++i) {
    samples.insert(samples.end(), {sides.left[i], sides.right[i]});
  }
  writeSound(path, format, 2, rate, samples);
}

inline Stereo readStereo(const std::string& path) {
  const Sound sound = readSound(path);
  EXPECT_EQ(sound.info.channels, 2) << path;
  Stereo sides(sound.samples.size() / 2);
  for (std::size_t i = 0; i < sides.frames(); ++i) {
    sides.left[i] = sound.samples[2 * i];
    sides.right[i] = sound.samples[2 * i + 1];
  }
  return sides;
}

/// All three at once: hits, a bass line and chords. `content` is a content folder.
inline Stereo factoryLoops(const std::string& content) {
  Stereo sum;
  for (const char* name : {"Drums", "Bass", "Chords"}) {
    const Stereo loop = readStereo(content + "/Samples/Factory/" + name + ".wav");
    if (sum.frames() == 0) sum = Stereo(loop.frames());
    for (std::size_t i = 0; i < sum.frames(); ++i) {
      sum.left[i] += 0.5F * loop.left[i];
      sum.right[i] += 0.5F * loop.right[i];
    }
  }
  return sum;
}

}  // namespace zum::test
