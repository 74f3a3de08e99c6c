// What the modulators cost a stereo frame in blocks of 64: nothing moved, the cutoff moved by each
// of the three alone, and everything moved by everything, with the transport running.

#include <string>

#include "bench/bench_host.hpp"

namespace zum::bench {
namespace {

constexpr std::int32_t kBlock = 64;

BENCHMARK(bareChain<1>)->Name("bare/stages:1");

enum class By { nothing, follower, lfo, sequencer, all };

struct Patch {
  const char* name;
  int bank;
  int type;
};

void blockCall(benchmark::State& state, const Patch& patch, By by) {
  constexpr int kAmounts[2][3] = {{tag::cutoffEf, tag::cutoffLfo, tag::cutoffSeq},
                                  {tag::vowelEf, tag::vowelLfo, tag::vowelSeq}};
  BenchHost host(patch.bank, patch.type);
  host.set(tag::seqGlide, 0.9F);  // the sequence moves in most passes
  host.set(tag::seqTempo, 0.8F);
  host.set(tag::lfoRate, 0.6F);
  if (by == By::all) {
    host.host.time.flags = kVstTransportPlaying;
    host.set(tag::lfoTrigOnOff, 1.0F);  // the level resets the LFO
    for (int amount = tag::cutoffEf; amount <= tag::masterSeq; ++amount) {
      host.set(amount, amount % 2 == 0 ? 0.6F : 0.4F);
    }
  } else if (by != By::nothing) {
    host.set(kAmounts[patch.bank][static_cast<int>(by) - 1], 0.7F);
  }
  host.measure(state, kBlock, 2);
}

void registerAll() {
  constexpr Patch kPatches[] = {{"multi/one-stage", 0, 4}, {"multi/two-stage", 0, 5},
                                {"multi/comb", 0, 6},      {"vowel/one-stage", 1, 2},
                                {"vowel/two-stage", 1, 5}, {"vowel/comb", 1, 6}};
  constexpr std::pair<const char*, By> kMovers[] = {{"idle", By::nothing},
                                                    {"follower", By::follower},
                                                    {"lfo", By::lfo},
                                                    {"sequencer", By::sequencer},
                                                    {"everything", By::all}};
  for (const Patch& patch : kPatches) {
    for (const auto& [name, by] : kMovers) {
      const std::string full = std::string(patch.name) + '/' + name;
      benchmark::RegisterBenchmark(full.c_str(), blockCall, patch, by);
    }
  }
}

}  // namespace
}  // namespace zum::bench

int main(int argc, char** argv) {
  zum::bench::registerAll();
  return zum::bench::runAll(argc, argv);
}
