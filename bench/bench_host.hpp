// What the benchmarks share: an effect in a host that tells the time alone, sound for it, the
// figure in nanoseconds a stereo frame, and the bare filters that the engine is measured against.
#pragma once

#include <benchmark/benchmark.h>

#include <array>

#include "core/tags.hpp"
#include "tests/support/test_host.hpp"

namespace zum::bench {

constexpr std::size_t kFrames = 8192;

inline void perFrame(benchmark::State& state) {
  state.counters["ns/frame"] =
      benchmark::Counter(static_cast<double>(state.iterations()) * 1e-9 * kFrames,
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

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

template <int stages>
void bareChain(benchmark::State& state) {
  const test::Stereo in = test::noise(kFrames);
  test::Stereo out(kFrames);
  std::array<BareStage, stages> l;
  std::array<BareStage, stages> r;
  for ([[maybe_unused]] auto _ : state) {
    for (std::size_t i = 0; i < kFrames; ++i) {
      float x = in.left[i];
      float y = in.right[i];
      for (BareStage& stage : l) x = stage.next(x);
      for (BareStage& stage : r) y = stage.next(y);
      out.left[i] = x;
      out.right[i] = y;
    }
    benchmark::ClobberMemory();
  }
  perFrame(state);
}

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

  /// Runs in, then measures.
  void measure(benchmark::State& state, std::int32_t block, int runsAhead) {
    for (int i = 0; i < runsAhead; ++i) playAll(block);
    for ([[maybe_unused]] auto _ : state) {
      playAll(block);
      benchmark::ClobberMemory();
    }
    perFrame(state);
  }

 private:
  void playAll(std::int32_t block) {
    for (std::size_t at = 0; at < kFrames; at += static_cast<std::size_t>(block)) {
      process(in, out, at, block);
    }
  }

  test::Stereo in;
  test::Stereo out{kFrames};
};

}  // namespace zum::bench
