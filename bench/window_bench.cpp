// What the effect's window costs by its size: to open with and without pictures that another one
// shows, and a tick with a knob that is dragged. On a display windows are real ones.
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <memory>

#include "core/tags.hpp"
#include "editor/create_editor.hpp"
#include "editor/uni_client_editor.hpp"
#include "platform/offscreen_window.hpp"
#include "support/test_host.hpp"

namespace {

using namespace zum;

bool hasDisplay() { return std::getenv("DISPLAY") != nullptr; }

std::unique_ptr<NativeWindow> openSomewhere(const WindowRequest& request, WindowEvents& events) {
  if (hasDisplay()) return openNativeWindow(request, events);
  return std::make_unique<OffscreenWindow>(request, events);
}

/// Of the process, without what it gave back.
double residentMegabytes() {
  malloc_trim(0);
  long pages = 0;
  std::ifstream("/proc/self/statm") >> pages >> pages;
  return static_cast<double>(pages) * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1048576.0;
}

struct Effect {
  KvUniClientEditor& editor() {
    return static_cast<KvUniClientEditor&>(
        *static_cast<AudioEffect*>(host.effect->object)->getEditor());
  }
  void open(double factor) {
    editor().setFactor(factor);
    editor().open(nullptr, openSomewhere);
    editor().idle();
  }
  test::TestHost host{44100.0F, {}, createEditor};
};

double factorOf(const benchmark::State& state) {
  return static_cast<double>(state.range(0)) / 100.0;
}

/// The first round of the first size is the process' first window, with all that fonts cost.
void openWindow(benchmark::State& state) {
  Effect first;
  Effect other;
  const bool isSecond = state.range(1) != 0;
  if (isSecond) other.open(factorOf(state));
  const double before = residentMegabytes();
  double most = 0.0;
  for ([[maybe_unused]] auto _ : state) {
    first.open(factorOf(state));
    state.PauseTiming();
    if (most == 0.0) most = residentMegabytes() - before;
    first.editor().close();
    state.ResumeTiming();
  }
  state.counters["MB"] = most;
}
BENCHMARK(openWindow)
    ->ArgNames({"percent", "second"})
    ->ArgsProduct({{100, 150, 200, 300}, {0, 1}})
    ->Unit(benchmark::kMillisecond);

/// Of a core, at thirty ticks a second, a dragged knob and its ring take thirty times this.
void dragTick(benchmark::State& state) {
  Effect effect;
  effect.open(factorOf(state));
  float value = 0.0F;
  for ([[maybe_unused]] auto _ : state) {
    value = value < 0.99F ? value + 0.0079F : 0.0F;
    effect.host.set(tag::cutoff, value);
    effect.editor().idle();
  }
}
BENCHMARK(dragTick)->ArgName("percent")->Arg(100)->Arg(150)->Arg(200)->Arg(300)->Unit(
    benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
