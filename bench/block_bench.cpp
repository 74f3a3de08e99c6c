// What a stereo frame costs in the block call: every filter type, drive off and full, sound and
// silence, four block sizes; beside it the bare filters that the engine is measured against.
// `block_bench --benchmark_filter=block:64` gives the goals' figures in one run.

#include <string>

#include "bench/bench_host.hpp"

namespace zum::bench {
namespace {

BENCHMARK(bareChain<1>)->Name("bare/stages:1/block:64");
BENCHMARK(bareChain<2>)->Name("bare/stages:2/block:64");

struct Patch {
  int bank;
  int type;
  bool drive;
  bool sound;
  std::int32_t block;
};

void blockCall(benchmark::State& state, const Patch& patch) {
  BenchHost host(patch.bank, patch.type, patch.sound);
  host.set(tag::overdrive, patch.drive ? 1.0F : 0.0F);
  // Long enough for the ramps to end and for a silent state to decay as far as it ever will.
  host.measure(state, patch.block, patch.sound ? 2 : 24);
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
}  // namespace zum::bench

int main(int argc, char** argv) {
  zum::bench::registerAll();
  return zum::bench::runAll(argc, argv);
}
