// The factory presets as a player gets them: whole, each heard, none too loud, no two alike.
#include <ebur128.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "platform/files.hpp"
#include "state/preset_files.hpp"
#include "support/sound_file.hpp"

namespace zum::test {
namespace {

namespace fs = std::filesystem;

constexpr unsigned kRate = 44100;
constexpr int kSlice = kRate / 8;  // frames of a sixteenth at 120 BPM

/// Twice round; what is heard the second time.
Stereo played(const fs::path& path, const Stereo& loop) {
  TestHost host(kRate);
  KvChunk preset;
  EXPECT_EQ(readChunkFile(toInternalPath(path.string()), preset), ChunkFile::read);
  EXPECT_TRUE(host.client().loadPreset(preset, 0, {}));
  host.giveTime(120.0, 0.0, kVstTransportPlaying | kVstPpqPosValid);
  host.host.moves = true;
  host.render(loop);
  return host.render(loop);
}

/// Integrated loudness, LUFS (EBU R 128), of a sound that stays below full scale.
double loudnessOf(const Stereo& sound) {
  ebur128_state* meter = ebur128_init(2, kRate, EBUR128_MODE_I | EBUR128_MODE_SAMPLE_PEAK);
  for (std::size_t i = 0; i < sound.frames(); ++i) {
    const float frame[] = {sound.left[i], sound.right[i]};
    ebur128_add_frames_float(meter, frame, 1);
  }
  double loudness = 0.0;
  ebur128_loudness_global(meter, &loudness);
  for (const unsigned side : {0U, 1U}) {
    double peak = 0.0;
    ebur128_sample_peak(meter, side, &peak);
    EXPECT_LT(peak, 1.0);
  }
  ebur128_destroy(&meter);
  return loudness;
}

/// Levels in dB of nine octaves from 62.5 Hz up in every sixteenth.
std::vector<float> pictureOf(const Stereo& sound) {
  std::vector<float> picture;
  for (int octave = 0; octave < 9; ++octave) {
    const double w = 2.0 * 3.141592653589793 * std::ldexp(62.5, octave) / kRate;
    const double alpha = 0.35 * std::sin(w);
    const auto b = static_cast<float>(alpha / (1.0 + alpha));
    const auto a1 = static_cast<float>(-2.0 * std::cos(w) / (1.0 + alpha));
    const auto a2 = static_cast<float>((1.0 - alpha) / (1.0 + alpha));
    float s1 = 0.0F, s2 = 0.0F, energy = 0.0F;
    for (std::size_t i = 0; i < sound.frames(); ++i) {
      const float x = sound.left[i] + sound.right[i];
      const float y = b * x + s1;
      s1 = s2 - a1 * y + 1e-12F;
      s2 = -b * x - a2 * y;
      energy += y * y;
      if (i % kSlice == kSlice - 1) {
        picture.push_back(10.0F * std::log10(energy / kSlice + 1e-6F));
        energy = 0.0F;
      }
    }
  }
  return picture;
}

float distance(const std::vector<float>& a, const std::vector<float>& b) {
  float sum = 0.0F;
  for (std::size_t i = 0; i < a.size(); ++i) sum += std::fabs(a[i] - b[i]);
  return sum / static_cast<float>(a.size());
}

TEST(Content, EveryPresetIsHeardAndNoTwoAreAlike) {
  const Stereo loop = factoryLoops(ZUM_CONTENT);
  const double dry = loudnessOf(loop);
  std::map<std::string, int> folders;
  std::map<std::string, std::vector<float>> pictures;
  for (const auto& entry : fs::recursive_directory_iterator(ZUM_CONTENT "/Presets")) {
    const fs::path& path = entry.path();
    if (!entry.is_regular_file() || path.parent_path().filename() == "User") continue;
    SCOPED_TRACE(path);
    ++folders[path.parent_path().filename().string()];
    const Stereo sound = played(path, loop);
    EXPECT_NEAR(loudnessOf(sound) - dry, -0.5, 6.5);  // LU, against the loops themselves
    const auto picture = pictureOf(sound);
    for (const auto& [other, seen] : pictures) {
      // dB on average; 1.16 are the nearest two
      EXPECT_GT(distance(picture, seen), 1.0F) << "much the same as " << other;
    }
    pictures[path.string()] = picture;
  }
  EXPECT_EQ(folders["Presets"], 1);  // the default
  EXPECT_EQ(folders["Midi Programs"], 64);
  EXPECT_GE(pictures.size(), 1U + 64U + 96U);
  EXPECT_TRUE(fs::is_directory(ZUM_CONTENT "/Presets/User"));
}

// What a musician hears first: over noise the low octaves stay, the high ones come and go.
TEST(Content, TheFirstSoundIsALowPassThatMoves) {
  const Stereo loop = noise(4 * kRate, 0.25F);
  const auto dry = pictureOf(loop);
  const auto wet = pictureOf(played(ZUM_CONTENT "/Presets/default.kvz", loop));
  const auto slices = wet.size() / 9;
  const auto gains = [&](std::size_t octave) {  // dB, from the lowest to the highest
    std::vector<float> all;
    for (std::size_t i = octave * slices; i < (octave + 1) * slices; ++i) {
      all.push_back(wet[i] - dry[i]);
    }
    std::ranges::sort(all);
    return all;
  };
  const auto low = gains(0), high = gains(7);
  EXPECT_NEAR(low[slices / 2], 0.0F, 1.0F);
  EXPECT_GT(high.back() - high.front(), 12.0F);
  EXPECT_LT(high[slices / 2], -12.0F);
}

}  // namespace
}  // namespace zum::test
