// What each face costs over the bare effect, in blocks of 64 frames: all of them in the shipped
// file, playing the same. A face may cost 2 ns a frame more than `bare`.
// `face_bench --benchmark_repetitions=9 --benchmark_enable_random_interleaving=true
// --benchmark_report_aggregates_only=true` gives medians that compare.

#include <benchmark/benchmark.h>

#include <array>
#include <memory>

#include "bench/players.hpp"

namespace zum::bench {
namespace {

template <class Face>
void playBlocks(benchmark::State& state) {
  const std::unique_ptr<Player> player = std::make_unique<Face>();
  test::Stereo in = test::noise(kFrames);
  test::Stereo out(kFrames);
  std::array<float*, 2> inputs{in.left.data(), in.right.data()};
  std::array<float*, 2> outputs{out.left.data(), out.right.data()};
  for (int i = 0; i < 1000; ++i) player->play(inputs.data(), outputs.data());  // runs in
  for ([[maybe_unused]] auto _ : state) {
    player->play(inputs.data(), outputs.data());
    benchmark::ClobberMemory();
  }
  state.counters["ns/frame"] =
      benchmark::Counter(static_cast<double>(state.iterations()) * 1e-9 * kFrames,
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// A line for each face.
BENCHMARK(playBlocks<Bare>)->Name("face/bare/block:64");
BENCHMARK(playBlocks<Clap>)->Name("face/clap/block:64");
BENCHMARK(playBlocks<Vst3>)->Name("face/vst3/block:64");
BENCHMARK(playBlocks<Lv2>)->Name("face/lv2/block:64");

}  // namespace
}  // namespace zum::bench

BENCHMARK_MAIN();
