// What the effect's window costs by its size: to open with and without pictures that another one
// shows, and a tick with a knob that is dragged. On a display windows are real ones.
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <unistd.h>

#include <cmath>
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
  /// Where a user has chosen a size of his own, that stands in place of 1.
  bool open(double factor) {
    editor().setHostScale(factor);
    const bool isThere =
        editor().open(nullptr, [this](const WindowRequest& request, WindowEvents& events) {
          hand = &events;
          return openSomewhere(request, events);
        });
    editor().idle();
    return isThere && editor().factor() == factor;
  }
  test::TestHost host{44100.0F, {}, createEditor};
  WindowEvents* hand = nullptr;  // for as long as it is open
};

double factorOf(const benchmark::State& state) {
  return static_cast<double>(state.range(0)) / 100.0;
}

/// The first round of the first size is the process' first window, with all that fonts cost.
void openWindow(benchmark::State& state) {
  Effect first;
  Effect other;
  const bool isSecond = state.range(1) != 0;
  if (isSecond && !other.open(factorOf(state))) return state.SkipWithError("no window");
  const double before = residentMegabytes();
  double most = 0.0;
  for ([[maybe_unused]] auto _ : state) {
    if (!first.open(factorOf(state))) state.SkipWithError("no window of this size");
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

/// A hand on the largest knob, with its ring and its number, up and down.
class Drag {
 public:
  explicit Drag(Effect& dragged) : effect(dragged) {
    const CRect& rect = effect.editor().getControl(tag::cutoff)->getViewSize();
    place = {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
    effect.hand->windowPressed(onScreen(place.x), onScreen(place.y), buttons::kLeft);
  }
  void play() {
    effect.host.process(in, out, 0, kFrames);
    effect.host.host.calls.clear();
  }
  void move() {
    way = at == kPass ? -1 : at == 0 ? 1 : way;
    at += way;
    effect.hand->windowMoved(onScreen(place.x), onScreen(place.y) - 2 * onScreen(at),
                             buttons::kLeft);
    effect.editor().idle();
  }
  static constexpr int kPass = 125;  // ticks from one end to the other, past all frames

 private:
  int onScreen(int logical) {
    return static_cast<int>(std::lround(effect.editor().factor() * logical));
  }
  Effect& effect;
  CPoint place;
  static constexpr int kFrames = 1470;  // of a tick
  test::Stereo in{kFrames};
  test::Stereo out{kFrames};
  int at = 0;
  int way = 1;
};

/// Of a core, at thirty ticks a second, a dragged knob takes thirty times this.
void dragTick(benchmark::State& state) {
  const bool isFirst = state.range(1) != 0;
  Effect effect;
  if (!effect.open(factorOf(state))) return state.SkipWithError("no window of this size");
  Drag drag(effect);
  for (int i = 0; i < 2 * Drag::kPass && !isFirst; ++i) drag.play(), drag.move();
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    drag.play();
    state.ResumeTiming();
    drag.move();
  }
}
BENCHMARK(dragTick)
    ->ArgNames({"percent", "first"})
    ->ArgsProduct({{100, 150, 200, 300}, {0}})
    ->Unit(benchmark::kMicrosecond);
/// Frames that were never shown are drawn.
BENCHMARK(dragTick)
    ->ArgNames({"percent", "first"})
    ->ArgsProduct({{100, 150, 200, 300}, {1}})
    ->Iterations(Drag::kPass)
    ->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
