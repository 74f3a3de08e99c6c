// What the benchmarks of the block call play, and the bare filters that it is measured against.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "core/tags.hpp"
#include "tests/support/test_host.hpp"

namespace zum::bench {

inline constexpr std::size_t kFrames = 8192;  // that are played at a time

/// What was written before stands in memory, whoever reads it.
inline void settleMemory() { asm volatile("" ::: "memory"); }

/// A state-variable stage with constant coefficients, in the written order.
struct BareStage {
  float bandState = 0.0F;
  float lowState = 0.0F;
  float high = 0.0F;

  float next(float in) {
    constexpr float kF = 0.3F;
    constexpr float kQ = 0.4F;
    constexpr float kGuard = 1.000000045813705e-18F;
    const float band = kF * high + bandState;
    bandState = band + kGuard;
    const float low = kF * bandState + lowState;
    lowState = low + kGuard;
    high = in - (kQ * bandState + lowState);
    return low;
  }
};

/// Stages in series on both sides, and nothing else.
template <int stages>
class BareChain {
 public:
  void play() {
    Stages l = left;  // in registers
    Stages r = right;
    for (std::size_t i = 0; i < kFrames; ++i) {
      float x = in.left[i];
      float y = in.right[i];
      for (BareStage& stage : l) x = stage.next(x);
      for (BareStage& stage : r) y = stage.next(y);
      out.left[i] = x;
      out.right[i] = y;
    }
    left = l;
    right = r;
    settleMemory();
  }

 private:
  using Stages = std::array<BareStage, stages>;
  const test::Stereo in = test::noise(kFrames);
  test::Stereo out{kFrames};
  Stages left{};
  Stages right{};
};

/// An effect in a middle setting of a filter, bank 0 or 1, type 0 to 9; its sound and its blocks.
class BenchHost : public test::TestHost {
 public:
  BenchHost(int bank, int type, bool sound = true)
      : in(sound ? test::noise(kFrames) : test::Stereo(kFrames)) {
    giveTime(120.0);
    host.moves = true;
    selectFilter(bank, type);
    set(tag::cutoff, 0.6F);
    set(tag::vowelCutoff, 0.4F);
    set(tag::resonance, 0.6F);
    set(tag::mixDryWet, 0.8F);
  }

  /// The sequence moves in most passes, and the LFO.
  void quickenModulators() {
    set(tag::seqGlide, 0.9F);  // the sequence moves in most passes
    set(tag::seqTempo, 0.8F);
    set(tag::lfoRate, 0.6F);
  }
  /// With the transport running, everything moves everything.
  void modulateAll() {
    quickenModulators();
    host.time.flags = kVstTransportPlaying;
    set(tag::lfoTrigOnOff, 1.0F);  // the level resets the LFO
    for (int amount = tag::cutoffEf; amount <= tag::masterSeq; ++amount) {
      set(amount, amount % 2 == 0 ? 0.6F : 0.4F);
    }
  }

  void play(std::int32_t block) {
    for (std::size_t at = 0; at < kFrames; at += static_cast<std::size_t>(block)) {
      process(in, out, at, block);
    }
    settleMemory();
  }
  void silenceLeft() { std::ranges::fill(in.left, 0.0F); }

  /// Until the ramps end, and a silent state has decayed as far as it ever will.
  void runIn(bool sound = true) {
    for (int i = 0; i < (sound ? 2 : 24); ++i) play(512);
  }

 private:
  test::Stereo in;
  test::Stereo out{kFrames};
};

}  // namespace zum::bench
