// What a stereo frame costs in the block call: every filter type, drive off and full, sound and
// silence, four block sizes, and what moves the cutoff; beside it the bare filters that the engine
// is measured against. `block_bench --benchmark_filter=block:64` gives the goals' figures in one
// run.

#include <benchmark/benchmark.h>

#include <array>

#include "core/tags.hpp"
#include "tests/support/test_host.hpp"

namespace zum::bench {
namespace {

constexpr std::size_t kFrames = 8192;

void perFrame(benchmark::State& state) {
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

BENCHMARK(bareChain<1>)->Name("bare/stages:1/block:64");
BENCHMARK(bareChain<2>)->Name("bare/stages:2/block:64");

void play(benchmark::State& state) {
  const bool sound = state.range(3) != 0;
  BenchHost host(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)), sound);
  host.set(tag::overdrive, static_cast<float>(state.range(2)));
  // Long enough for the ramps to end and for a silent state to decay as far as it ever will.
  host.measure(state, static_cast<std::int32_t>(state.range(4)), sound ? 2 : 24);
}
BENCHMARK(play)
    ->ArgNames({"bank", "type", "drive", "sound", "block"})
    ->ArgsProduct({{0, 1}, benchmark::CreateDenseRange(0, 9, 1), {0, 1}, {1, 0}, {1, 16, 64, 512}});

// One stage, two and a comb of each bank; with the transport running, everything moves everything.
void playModulated(benchmark::State& state) {
  enum By { nothing, follower, lfo, sequencer, all };
  constexpr int kAmounts[2][3] = {{tag::cutoffEf, tag::cutoffLfo, tag::cutoffSeq},
                                  {tag::vowelEf, tag::vowelLfo, tag::vowelSeq}};
  const auto bank = static_cast<int>(state.range(0));
  const auto by = static_cast<int>(state.range(2));
  BenchHost host(bank, static_cast<int>(state.range(1)));
  host.set(tag::seqGlide, 0.9F);  // the sequence moves in most passes
  host.set(tag::seqTempo, 0.8F);
  host.set(tag::lfoRate, 0.6F);
  if (by == all) {
    host.host.time.flags = kVstTransportPlaying;
    host.set(tag::lfoTrigOnOff, 1.0F);  // the level resets the LFO
    for (int amount = tag::cutoffEf; amount <= tag::masterSeq; ++amount) {
      host.set(amount, amount % 2 == 0 ? 0.6F : 0.4F);
    }
  } else if (by != nothing) {
    host.set(kAmounts[bank][by - 1], 0.7F);
  }
  host.measure(state, static_cast<std::int32_t>(state.range(3)), 2);
}
BENCHMARK(playModulated)
    ->ArgNames({"bank", "type", "by", "block"})
    ->ArgsProduct({{0, 1}, {2, 4, 5, 6}, benchmark::CreateDenseRange(0, 4, 1), {64}});

}  // namespace
}  // namespace zum::bench

BENCHMARK_MAIN();
