// What a stereo frame costs in the block call: every filter type, drive off and full, sound and
// silence, four block sizes; beside it the bare filters that the engine is measured against.
// `block_bench --benchmark_filter=block:64` gives the goals' figures in one run.

#include <benchmark/benchmark.h>

#include <array>
#include <string>
#include <vector>

#include "core/create_effect.hpp"

namespace zum {
namespace {

constexpr std::int64_t kFrames = 8192;

using Samples = std::vector<float>;

Samples noise(std::uint32_t seed) {
  Samples made(kFrames);
  for (float& x : made) {
    seed = seed * 1664525U + 1013904223U;
    x = 0.5F * (static_cast<float>(seed >> 8U) * 0x1p-23F - 1.0F);
  }
  return made;
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

void perFrame(benchmark::State& state, std::int64_t frames) {
  state.counters["ns/frame"] =
      benchmark::Counter(static_cast<double>(state.iterations() * frames) * 1e-9,
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

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
  perFrame(state, kFrames);
}
BENCHMARK(bareChain<1>)->Name("bare/stages:1/block:64");
BENCHMARK(bareChain<2>)->Name("bare/stages:2/block:64");

std::intptr_t deafHost(AEffect* /*effect*/, std::int32_t opcode, std::int32_t /*index*/,
                       std::intptr_t /*value*/, void* /*ptr*/, float /*opt*/) {
  return opcode == audioMasterVersion ? 2400 : 0;
}

struct Patch {
  int bank;
  int type;
  bool drive;
  bool sound;
  std::int32_t block;
};

void blockCall(benchmark::State& state, const Patch& patch) {
  AEffect* effect = createEffect(deafHost);
  const auto set = [effect](int tag, double value) {
    effect->setParameter(effect, tag, static_cast<float>(value));
  };
  set(62, patch.bank);
  set(patch.bank == 0 ? 61 : 60, patch.type / 10.0 + 0.05);
  set(5, patch.drive ? 1.0 : 0.0);
  set(3, 0.6);  // cutoff
  set(0, 0.4);  // vowel position
  set(4, 0.6);  // resonance
  set(2, 0.8);  // mix
  Samples left = patch.sound ? noise(1) : Samples(kFrames);
  Samples right = patch.sound ? noise(2) : Samples(kFrames);
  Samples outLeft(kFrames);
  Samples outRight(kFrames);
  const auto playAll = [&] {
    for (std::int64_t at = 0; at < kFrames; at += patch.block) {
      std::array<float*, 2> in = {left.data() + at, right.data() + at};
      std::array<float*, 2> out = {outLeft.data() + at, outRight.data() + at};
      effect->processReplacing(effect, in.data(), out.data(), patch.block);
    }
  };
  // Long enough for the ramps to end and for a silent state to decay as far as it ever will.
  for (int i = 0; i < (patch.sound ? 2 : 24); ++i) playAll();
  for ([[maybe_unused]] auto _ : state) {
    playAll();
    benchmark::ClobberMemory();
  }
  perFrame(state, kFrames);
  effect->dispatcher(effect, effClose, 0, 0, nullptr, 0.0F);
}

void registerAll() {
  for (const std::int32_t block : {1, 16, 64, 512}) {
    for (int bank = 0; bank < 2; ++bank) {
      for (int type = 0; type < 10; ++type) {
        for (const bool drive : {false, true}) {
          for (const bool sound : {true, false}) {
            const std::string name =
                std::string(bank == 0 ? "multi" : "vowel") + "/type:" + std::to_string(type) +
                (drive ? "/drive:1" : "/drive:0") + (sound ? "/sound" : "/silence") +
                "/block:" + std::to_string(block);
            benchmark::RegisterBenchmark(name.c_str(), blockCall,
                                         Patch{bank, type, drive, sound, block});
          }
        }
      }
    }
  }
}

}  // namespace
}  // namespace zum

int main(int argc, char** argv) {
  zum::registerAll();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
