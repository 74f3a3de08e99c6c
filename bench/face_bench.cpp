// What each face costs over the bare effect, in blocks of 64 frames: all of them in the shipped
// file, playing the same. A face may cost 2 ns a frame more than `bare`.
// `face_bench --benchmark_repetitions=9 --benchmark_enable_random_interleaving=true
// --benchmark_report_aggregates_only=true` gives medians that compare.

#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <array>
#include <memory>
#include <stdexcept>

#include "adaptor/clap/interface.hpp"
#include "tests/support/test_host.hpp"

namespace zum::bench {
namespace {

constexpr std::uint32_t kFrames = 64;
constexpr double kRate = 44100.0;
constexpr double kTempo = 120.0;

/// One instance behind a face, with what its host hands in for each block: time, and no events.
class Player {
 public:
  Player() = default;
  virtual ~Player() = default;
  Player(const Player&) = delete;
  Player& operator=(const Player&) = delete;

  /// One block; two channels each.
  virtual void play(float** inputs, float** outputs) = 0;
};

class Bare : public Player {
 public:
  Bare() { host.giveTime(kTempo); }
  void play(float** inputs, float** outputs) override { host.process(inputs, outputs, kFrames); }

 private:
  const test::PluginFile file{ZUM_PLUGIN};
  test::TestHost host{file, static_cast<float>(kRate)};
};

/// With a side-chain that nothing is connected to.
class Clap : public Player {
 public:
  Clap() {
    const auto* const entry = static_cast<const clap_plugin_entry_t*>(
        dlsym(dlopen(ZUM_PLUGIN, RTLD_NOW | RTLD_LOCAL), "clap_entry"));
    if (entry == nullptr || !entry->init(ZUM_PLUGIN)) throw std::runtime_error("no CLAP entry");
    const auto* const factory =
        static_cast<const clap_plugin_factory_t*>(entry->get_factory(CLAP_PLUGIN_FACTORY_ID));
    const char* const id = factory->get_plugin_descriptor(factory, 0)->id;
    plugin = factory->create_plugin(factory, &host, id);
    plugin->init(plugin);
    plugin->activate(plugin, kRate, kFrames, kFrames);
    plugin->start_processing(plugin);
    transport.flags = CLAP_TRANSPORT_HAS_TEMPO | CLAP_TRANSPORT_HAS_BEATS_TIMELINE;
    transport.tempo = kTempo;
  }
  ~Clap() override {
    plugin->stop_processing(plugin);
    plugin->deactivate(plugin);
    plugin->destroy(plugin);
  }

  void play(float** inputs, float** outputs) override {
    const clap_audio_buffer_t from[] = {{inputs, nullptr, 2, 0, 0},
                                        {silent.data(), nullptr, 2, 0, 0}};
    clap_audio_buffer_t to{outputs, nullptr, 2, 0, 0};
    const clap_process_t block{-1, kFrames, &transport, from, &to, 2, 1, &none, &anywhere};
    plugin->process(plugin, &block);
  }

 private:
  std::array<float, kFrames> silence{};
  std::array<float*, 2> silent{silence.data(), silence.data()};
  clap_event_transport_t transport{};
  const clap_host_t host{CLAP_VERSION,
                         nullptr,
                         "bench",
                         "",
                         "",
                         "1",
                         [](const clap_host_t*, const char*) -> const void* { return nullptr; },
                         [](const clap_host_t*) {},
                         [](const clap_host_t*) {},
                         [](const clap_host_t*) {}};
  const clap_input_events_t none{
      nullptr, [](const clap_input_events_t*) { return 0U; },
      [](const clap_input_events_t*, std::uint32_t) -> const clap_event_header_t* {
        return nullptr;
      }};
  const clap_output_events_t anywhere{
      nullptr, [](const clap_output_events_t*, const clap_event_header_t*) { return true; }};
  const clap_plugin_t* plugin = nullptr;
};

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

}  // namespace
}  // namespace zum::bench

BENCHMARK_MAIN();
