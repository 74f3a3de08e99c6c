// What the benchmarks share: an effect in a host that tells the time alone, sound for it, the
// figure in nanoseconds a stereo frame, and the bare filters that the engine is measured against.
#pragma once

#include <benchmark/benchmark.h>

#include <array>
#include <vector>

#include "core/create_effect.hpp"
#include "tests/support/own_home.hpp"

namespace zum::bench {

inline const test::OwnHome ownHome;  // figures of the factory's state, whatever the user keeps

constexpr std::int64_t kFrames = 8192;

using Samples = std::vector<float>;

inline Samples noise(std::uint32_t seed) {
  Samples made(kFrames);
  for (float& x : made) {
    seed = seed * 1664525U + 1013904223U;
    x = 0.5F * (static_cast<float>(seed >> 8U) * 0x1p-23F - 1.0F);
  }
  return made;
}

inline void perFrame(benchmark::State& state) {
  state.counters["ns/frame"] =
      benchmark::Counter(static_cast<double>(state.iterations() * kFrames) * 1e-9,
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
  const Samples left = noise(1);
  const Samples right = noise(2);
  Samples outLeft(kFrames);
  Samples outRight(kFrames);
  std::array<BareStage, stages> l;
  std::array<BareStage, stages> r;
  for ([[maybe_unused]] auto _ : state) {
    for (std::size_t i = 0; i < kFrames; ++i) {
      float x = left[i];
      float y = right[i];
      for (BareStage& stage : l) x = stage.next(x);
      for (BareStage& stage : r) y = stage.next(y);
      outLeft[i] = x;
      outRight[i] = y;
    }
    benchmark::ClobberMemory();
  }
  perFrame(state);
}

/// An effect, its sound and its blocks.
class BenchHost {
 public:
  explicit BenchHost(bool sound)
      : effect(createEffect(answer)),
        left(sound ? noise(1) : Samples(kFrames)),
        right(sound ? noise(2) : Samples(kFrames)) {
    effect->user = this;
    time.tempo = 120.0;
  }
  BenchHost(const BenchHost&) = delete;
  BenchHost& operator=(const BenchHost&) = delete;
  ~BenchHost() { effect->dispatcher(effect, effClose, 0, 0, nullptr, 0.0F); }

  void set(int tag, double value) { effect->setParameter(effect, tag, static_cast<float>(value)); }

  /// Bank 0 or 1, type 0 to 9, in a middle setting.
  void selectFilter(int bank, int type) {
    set(62, bank);
    set(bank == 0 ? 61 : 60, type / 10.0 + 0.05);
    set(3, 0.6);  // cutoff
    set(0, 0.4);  // vowel position
    set(4, 0.6);  // resonance
    set(2, 0.8);  // mix
  }

  void playAll(std::int32_t block) {
    for (std::int64_t at = 0; at < kFrames; at += block) {
      std::array<float*, 2> in = {left.data() + at, right.data() + at};
      std::array<float*, 2> out = {outLeft.data() + at, outRight.data() + at};
      effect->processReplacing(effect, in.data(), out.data(), block);
      time.ppqPos += block * time.tempo / (60.0 * 44100.0);
    }
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

  VstTimeInfo time{};

 private:
  static std::intptr_t answer(AEffect* effect, std::int32_t opcode, std::int32_t /*index*/,
                              std::intptr_t /*value*/, void* /*ptr*/, float /*opt*/) {
    if (opcode == audioMasterGetTime && effect->user != nullptr) {
      return reinterpret_cast<std::intptr_t>(&static_cast<BenchHost*>(effect->user)->time);
    }
    return opcode == audioMasterVersion ? 2400 : 0;
  }

  AEffect* effect;
  Samples left;
  Samples right;
  Samples outLeft = Samples(kFrames);
  Samples outRight = Samples(kFrames);
};

/// The main function's body.
inline int runAll(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}

}  // namespace zum::bench
