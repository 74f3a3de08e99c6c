// What a stereo frame costs in the block call: every filter type, drive off and full, sound and
// silence, four block sizes, and what moves the cutoff; beside it the bare filters that the engine
// is measured against. `block_bench --benchmark_filter=block:64` gives the goals' figures in one
// run.

#include "bench/bench_host.hpp"

namespace zum::bench {
namespace {

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
