// What a tick of the window costs: 170 controls of which none changed, one scope, one knob.
#include <benchmark/benchmark.h>

#include <array>
#include <memory>

#include "platform/offscreen_window.hpp"
#include "toolkit/control_frame.hpp"
#include "toolkit/knob.hpp"
#include "toolkit/scope_view.hpp"

namespace {

using namespace zum;

struct Window {
  explicit Window(int controls) {
    frame->open(0, "", [](const WindowRequest& request, WindowEvents& events) {
      return std::make_unique<OffscreenWindow>(request, events);
    });
    for (int i = 0; i < controls; ++i) {
      const int x = 30 * (i % 16);
      const int y = 30 * (i / 16);
      auto* const knob = new KvKnob({x, y, x + 30, y + 30}, nullptr, i, *frame, nullptr, 30, 1, 1);
      knob->bind(&value, 1.0F, 0.0F);
      frame->addView(knob);
    }
    frame->idle();
  }
  ~Window() { frame->forget(); }

  float value = 0.5F;
  KvFrame* frame = new KvFrame({0, 0, 508, 470}, nullptr);
};

void controlsTick(benchmark::State& state) {
  const float moved = state.range(0) != 0 ? 0.25F : 0.5F;
  Window window(170);
  for ([[maybe_unused]] auto _ : state) {
    window.value = window.value == 0.5F ? moved : 0.5F;
    window.frame->idle();
  }
}
BENCHMARK(controlsTick)->ArgName("moved")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

void scopeTick(benchmark::State& state) {
  Window window(169);
  std::array<float, 2048> ring{};
  for (std::size_t i = 0; i < ring.size(); ++i) ring[i] = static_cast<float>(i * 37 % 100) / 100.0F;
  std::int32_t newest = 0;
  auto* const scope = new KvScopeView({253, 288, 471, 352}, nullptr, 67, *window.frame,
                                      KvBufferDraw::Style::filled);
  scope->setRing(ring.data(), &newest, 2048);
  window.frame->addView(scope);
  for ([[maybe_unused]] auto _ : state) {
    newest = (newest + 17) % 2048;
    window.frame->idle();
  }
}
BENCHMARK(scopeTick)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
