// A host whose blocks are one control pass each, for the tests of the modulators.
#pragma once

#include <cstdint>

#include "core/tags.hpp"
#include "tests/support/test_host.hpp"

namespace zum::test {

/// Bars of the 27 note lengths, as printed.
inline constexpr double kBars[] = {
    4,        3,       2,        1.5,      1,        0.75,     0.666666, 0.5,      0.375,
    0.333333, 0.25,    0.1875,   0.166667, 0.125,    0.09375,  0.083333, 0.0625,   0.046875,
    0.041667, 0.03125, 0.023438, 0.020833, 0.015625, 0.011719, 0.010417, 0.007813, 0.005208};

/// The position of a parameter that picks note length `index`.
inline float notePosition(int index) { return static_cast<float>(index) / 26.0F; }

/// -1 to 1, from the generator's definition in wide integers.
inline float drawn(std::int64_t& seed) {
  std::int64_t low = seed * 16807 % 4294967296;
  if (low < 0) low += 4294967296;
  if (low >= 2147483648) low -= 4294967296;
  seed = low % 2147483647;
  return static_cast<float>(static_cast<double>(seed) / 2147483648.0);
}

class ControlPasses : public TestHost {
 public:
  static constexpr std::int32_t kFrames = 16;

  explicit ControlPasses(float sampleRate = 48000.0F, double tempo = 120.0)
      : TestHost(sampleRate), rate(sampleRate) {
    giveTime(tempo);
    host.moves = true;
    for (int i = 0; i < 8; ++i) client().steps().setValue(i, static_cast<float>(i) / 8.0F);
  }

  void play(bool running) { host.time.flags = running ? kVstTransportPlaying : 0; }

  /// The next block on a constant level, or on what `in` was filled with; the host's position
  /// moves on behind it.
  const ModulatorOutputs& pass(float level) {
    in = Stereo(kFrames, level);
    return pass();
  }
  const ModulatorOutputs& pass() {
    process(in, out, 0, kFrames);
    return client().signal().modulation();
  }
  void skip(int passes, float level = 0.0F) {
    for (int i = 0; i < passes; ++i) pass(level);
  }

  /// Control passes in so many beats.
  double passesOf(double beats) const {
    return beats * 60.0 / host.time.tempo * static_cast<double>(rate) / kFrames;
  }
  float seqOut() { return client().signal().modulation().seqOut; }
  float lfoOut() { return client().signal().modulation().lfoOut; }
  float efOut() { return client().signal().modulation().efOut; }

  Stereo in{kFrames};

 private:
  float rate;
  Stereo out{kFrames};
};

}  // namespace zum::test
