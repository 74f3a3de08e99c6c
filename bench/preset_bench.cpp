// What a state costs: loading one from memory while no block runs, and giving one to the host.

#include "bench/bench_host.hpp"
#include "tests/support/linked_effect.hpp"

namespace zum::bench {
namespace {

using Effect = test::LinkedEffect;

void loadFromMemory(benchmark::State& state) {
  Effect effect;
  KvChunk preset;
  effect.client().writePreset(preset, 0);
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(effect.client().loadPreset(preset, 0, {}));
  }
}
BENCHMARK(loadFromMemory)->Unit(benchmark::kMicrosecond);

void saveToMemory(benchmark::State& state) {
  Effect effect;
  void* data = nullptr;
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(effect.client().getChunk(&data, false));
  }
}
BENCHMARK(saveToMemory)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace zum::bench

BENCHMARK_MAIN();
