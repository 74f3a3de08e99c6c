// What a state costs: loading one from memory while no block runs, and giving one to the host.

#include "bench/bench_host.hpp"
#include "core/uni_client.hpp"

namespace zum::bench {
namespace {

struct Effect {
  AEffect* record = createEffect(nullptr);
  KvUniClient& client = *dynamic_cast<KvUniClient*>(static_cast<AudioEffect*>(record->object));

  Effect() = default;
  Effect(const Effect&) = delete;
  Effect& operator=(const Effect&) = delete;
  ~Effect() { record->dispatcher(record, effClose, 0, 0, nullptr, 0.0F); }
};

void loadFromMemory(benchmark::State& state) {
  Effect effect;
  KvChunk preset;
  effect.client.writePreset(preset, 0);
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(effect.client.loadPreset(preset, 0, {}));
  }
}
BENCHMARK(loadFromMemory)->Unit(benchmark::kMicrosecond);

void saveToMemory(benchmark::State& state) {
  Effect effect;
  void* data = nullptr;
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(effect.client.getChunk(&data, false));
  }
}
BENCHMARK(saveToMemory)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace zum::bench

BENCHMARK_MAIN();
