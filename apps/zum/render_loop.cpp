// Feeding of blocks, with automation before and the trace after each of them.
#include "apps/zum/render_loop.hpp"

#include <algorithm>
#include <chrono>

#include "apps/zum/effect_view.hpp"
#include "apps/zum/interruption.hpp"
#include "apps/zum/progress.hpp"

namespace zum {

Rendered run(const RenderLoop& loop) {
  using Clock = std::chrono::steady_clock;
  const auto size = static_cast<std::size_t>(loop.block);
  std::vector<float> leftIn(size);
  std::vector<float> rightIn(size);
  std::vector<float> leftOut(size);
  std::vector<float> rightOut(size);
  std::vector<float> leftSide(size);
  std::vector<float> rightSide(size);
  float* inputs[] = {leftIn.data(), rightIn.data()};
  float* side[] = {leftSide.data(), rightSide.data()};
  float* outputs[] = {leftOut.data(), rightOut.data()};
  const double rate = loop.input.sampleRate();
  const EffectView view(loop.host.client());
  Clock::duration elapsed{};
  sf_count_t tailLeft = loop.tailFrames;
  sf_count_t done = 0;
  Progress progress;
  const auto expected = static_cast<double>(loop.input.frames() + loop.tailFrames);
  for (bool ended = false; !ended;) {
    throwIfInterrupted();
    const int music = loop.input.read(inputs[0], inputs[1], loop.block);
    const auto silence = static_cast<int>(std::min<sf_count_t>(loop.block - music, tailLeft));
    std::fill_n(inputs[0] + music, silence, 0.0F);
    std::fill_n(inputs[1] + music, silence, 0.0F);
    tailLeft -= silence;
    if (loop.sideChain != nullptr) {
      const int heard = loop.sideChain->read(side[0], side[1], music + silence);
      for (float* const channel : side) {
        std::fill(channel + heard, channel + music + silence, 0.0F);
      }
    }
    const int count = music + silence;
    ended = count < loop.block;
    if (count == 0) break;
    const double seconds = static_cast<double>(done) / rate;
    for (AutomationCurve& curve : loop.curves) {
      loop.host.setParameter(curve.tag(), curve.valueAt(seconds));
    }
    if (loop.midi != nullptr) loop.host.send(loop.midi->takeUntil(done + count), done);
    const auto start = Clock::now();
    loop.host.process(inputs, loop.sideChain != nullptr ? side : nullptr, outputs, count);
    elapsed += Clock::now() - start;
    loop.output.write(outputs[0], outputs[1], count);
    if (loop.trace != nullptr) loop.trace->add(seconds, view.results());
    done += count;
    progress.show(static_cast<double>(done) / expected);
  }
  return {static_cast<double>(done) / rate, std::chrono::duration<double>(elapsed).count()};
}

}  // namespace zum
