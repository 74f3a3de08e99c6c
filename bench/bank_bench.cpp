// What a state costs, from memory and to the host, what an effect costs to make, and what a full
// bank does: the scan of 128 folders with 128 presets each while the files are in the system's
// cache, the memory that it takes against the files' size, and a save into it.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <filesystem>
#include <fstream>

#include "platform/files.hpp"
#include "tests/support/linked_effect.hpp"
#include "tests/support/temporary_folder.hpp"

namespace zum::bench {
namespace {

namespace fs = std::filesystem;

/// A tree of presets, the user's as long as it lives.
class Tree {
 public:
  Tree() {
    const test::LinkedEffect effect;
    const std::string state = effect.state();
    for (int i = 0; i < KvProgramBank::kFolders; ++i) {
      const fs::path inner = folder / ("Folder " + std::to_string(i));
      fs::create_directory(inner);
      for (int j = 0; j < KvProgramBank::kPresets; ++j) {
        std::ofstream(inner / ("Preset " + std::to_string(j) + ".kvz"), std::ios::binary) << state;
        size += static_cast<double>(state.size());
      }
    }
    writeSettingString(kPresetPath, root());
  }
  ~Tree() { writeSettingString(kPresetPath, ""); }
  Tree(const Tree&) = delete;
  Tree& operator=(const Tree&) = delete;
  std::string root() const { return toInternalPath(folder.string()); }

  const test::TemporaryFolder folder;
  double size = 0.0;  // bytes of all files
};

double bytesInUse() {
  const struct mallinfo2 heap = mallinfo2();
  return static_cast<double>(heap.uordblks) + static_cast<double>(heap.hblkhd);
}

void loadFromMemory(benchmark::State& state) {
  const test::LinkedEffect effect;
  KvChunk preset;
  effect.client().writePreset(preset, 0);
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(effect.client().loadPreset(preset, 0, {}));
  }
}
BENCHMARK(loadFromMemory)->Unit(benchmark::kMicrosecond);

void saveToMemory(benchmark::State& state) {
  const test::LinkedEffect effect;
  void* data = nullptr;
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(effect.client().getChunk(&data, false));
  }
}
BENCHMARK(saveToMemory)->Unit(benchmark::kMicrosecond);

/// What a host waits for when it makes an instance, and closes it again: no program is read.
void makeAnEffect(benchmark::State& state) {
  for ([[maybe_unused]] auto _ : state) {
    const test::LinkedEffect effect;
    benchmark::DoNotOptimize(effect.effect);
  }
}
BENCHMARK(makeAnEffect)->Unit(benchmark::kMicrosecond);

void scanOfAFullBank(benchmark::State& state) {
  const test::LinkedEffect effect;
  const double before = bytesInUse();
  const Tree tree;
  effect.client().scanBank();
  state.counters["memory/files"] = (bytesInUse() - before) / tree.size;
  state.counters["presets"] = effect.client().programs()->presetCount(127) * 128;
  for ([[maybe_unused]] auto _ : state) effect.client().scanBank();
}
BENCHMARK(scanOfAFullBank)->Unit(benchmark::kMillisecond);

void saveIntoAFullBank(benchmark::State& state) {
  const Tree tree;
  const test::LinkedEffect effect;
  const std::string file = tree.root() + "\\Folder 64\\Preset 64.kvz";
  for ([[maybe_unused]] auto _ : state) {
    effect.client().savePreset(file.c_str(), 0, nullptr, false);
  }
}
BENCHMARK(saveIntoAFullBank)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zum::bench

BENCHMARK_MAIN();
