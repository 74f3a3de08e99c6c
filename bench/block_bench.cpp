// What a stereo frame costs in the block call: every filter type, drive off and full, sound and
// silence, four block sizes, and what moves the cutoff; beside it the bare filters that the engine
// is measured against. `ratio_bench` gives the figures of the goals.

#include <benchmark/benchmark.h>

#include "bench/bench_host.hpp"

namespace zum::bench {
namespace {

template <class Play>
void measure(benchmark::State& state, const Play& play) {
  for ([[maybe_unused]] auto _ : state) play();
  state.counters["ns/frame"] =
      benchmark::Counter(static_cast<double>(state.iterations()) * 1e-9 * kFrames,
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

template <int stages>
void bareChain(benchmark::State& state) {
  BareChain<stages> chain;
  measure(state, [&] { chain.play(); });
}
BENCHMARK(bareChain<1>)->Name("bare/stages:1/block:64");
BENCHMARK(bareChain<2>)->Name("bare/stages:2/block:64");

void play(benchmark::State& state) {
  const bool sound = state.range(3) != 0;
  BenchHost host(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)), sound);
  host.set(tag::overdrive, static_cast<float>(state.range(2)));
  const auto block = static_cast<std::int32_t>(state.range(4));
  host.runIn(sound);
  measure(state, [&] { host.play(block); });
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
  host.quickenModulators();
  if (by == all) {
    host.modulateAll();
  } else if (by != nothing) {
    host.set(kAmounts[bank][by - 1], 0.7F);
  }
  const auto block = static_cast<std::int32_t>(state.range(3));
  host.runIn();
  measure(state, [&] { host.play(block); });
}
BENCHMARK(playModulated)
    ->ArgNames({"bank", "type", "by", "block"})
    ->ArgsProduct({{0, 1}, {2, 4, 5, 6}, benchmark::CreateDenseRange(0, 4, 1), {64}});

}  // namespace
}  // namespace zum::bench

BENCHMARK_MAIN();
