// What a full bank costs: the scan of 128 folders with 128 presets each while the files are in the
// system's cache, and the memory that it takes against the files' size.

#include <malloc.h>

#include <filesystem>
#include <fstream>

#include "bench/bench_host.hpp"
#include "core/uni_client.hpp"
#include "platform/files.hpp"

namespace zum::bench {
namespace {

namespace fs = std::filesystem;

/// A tree of presets that goes with the program.
class Tree {
 public:
  Tree() {
    std::string pattern = (fs::temp_directory_path() / "zum-bank.XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) std::abort();
    folder = pattern;
    AEffect* effect = createEffect(nullptr);
    void* data = nullptr;
    const auto bytes = effect->dispatcher(effect, effGetChunk, 0, 0, &data, 0.0F);
    for (int i = 0; i < KvProgramBank::kFolders; ++i) {
      const fs::path inner = folder / ("Folder " + std::to_string(i));
      fs::create_directory(inner);
      for (int j = 0; j < KvProgramBank::kPresets; ++j) {
        std::ofstream(inner / ("Preset " + std::to_string(j) + ".kvz"), std::ios::binary)
            .write(static_cast<const char*>(data), bytes);
        size += static_cast<double>(bytes);
      }
    }
    effect->dispatcher(effect, effClose, 0, 0, nullptr, 0.0F);
  }
  ~Tree() {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
  }
  Tree(const Tree&) = delete;
  Tree& operator=(const Tree&) = delete;

  fs::path folder;
  double size = 0.0;  // bytes of all files
};

double bytesInUse() {
  const struct mallinfo2 heap = mallinfo2();
  return static_cast<double>(heap.uordblks) + static_cast<double>(heap.hblkhd);
}

void scanOfAFullBank(benchmark::State& state) {
  const Tree tree;
  const std::string root = toInternalPath(tree.folder.string());
  KvProgramBank bank(preset::kExtension);
  for ([[maybe_unused]] auto _ : state) bank.scan(root);
  bank.scan("");
  const double before = bytesInUse();
  bank.scan(root);
  state.counters["presets"] = bank.presetCount(127) * 128;
  state.counters["memory/files"] = (bytesInUse() - before) / tree.size;
}
BENCHMARK(scanOfAFullBank)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zum::bench

BENCHMARK_MAIN();
