#include "engine/engine.hpp"

#include <algorithm>

#include "engine/shared_value.hpp"

namespace zum {
namespace {

float sumOf(const ControlValue& base) ZUM_REALTIME { return clampUnit(loadShared(base.raw)); }

int indexOf(const ControlValue& choice, int last) ZUM_REALTIME {
  return clampIndex(loadShared(choice.integer), last);
}

}  // namespace

void Engine::recompute(const KvSystemInfo& clock, bool keepBuffers) ZUM_REALTIME {
  overdrive.recompute(clock);
  multiMode.recompute(clock, keepBuffers);
  vowel.recompute(clock, keepBuffers);
}

std::array<BufferRecord, 3> Engine::buffers() {
  const auto one = multiMode.comb.buffers();
  const auto two = vowel.combs.buffers();
  return {one[0], two[0], two[1]};
}

void Engine::process(const float* const* inputs, float* const* outputs, std::int32_t frames,
                     KvSystemInfo& clock, ControlPassOwner& owner) ZUM_REALTIME {
  const float* inLeft = inputs[0];
  const float* inRight = inputs[1];
  float* outLeft = outputs[0];
  float* outRight = outputs[1];
  while (frames > 0) {
    if (clock.controlCounter >= clock.controlFrames) {
      clock.controlCounter = 0;
      owner.beginControlPass();
      controlPass(clock, owner);
    }
    const std::int32_t run = std::min(frames, clock.controlFrames - clock.controlCounter);
    alignas(16) Pairs pairs;
    interleave(inLeft, inRight, pairs.data(), run);
    runFrames(pairs, run);
    separate(pairs.data(), outLeft, outRight, run);
    clock.controlCounter += run;
    frames -= run;
    inLeft += run;
    inRight += run;
    outLeft += run;
    outRight += run;
  }
}

// The order of the control pass, behind the owner's events and tempo. The modulators' places are
// ahead of the drive, in the order sequencer, LFO, follower.
void Engine::controlPass(const KvSystemInfo& clock, ControlPassOwner& owner) ZUM_REALTIME {
  const EngineControls& c = controls;

  overdrive.controlPass(sumOf(c.overdrive), clock.controlStep);

  const bool vowelBank = indexOf(c.bank, 1) == 1;
  const bool cutoffMoved =
      frequency.controlPass(sumOf(c.cutoff), sumOf(c.vowelCutoff), vowelBank, clock.ticksPerMs);
  if (cutoffMoved) multiMode.updateFilterColumns(frequency.cutoffHz(), clock);

  const float feedback = resonance.of(sumOf(c.resonance));
  if (vowelBank) {
    vowel.controlPass(indexOf(c.vowelType, VowelFilter::kTypes - 1), c.formantsA, c.formantsB,
                      frequency.positionRamped(), feedback, clock);
  } else {
    multiMode.controlPass(indexOf(c.multiType, MultiModeFilter::kTypes - 1), feedback,
                          clock.ticksPerMs);
  }

  const float mixSum = sumOf(c.mixDryWet);
  const float page = static_cast<float>(indexOf(c.modChoice, 2)) * 0.33898306F;
  if (page != modPagePosition) {
    modPagePosition = page;
    owner.modPageMoved(page);
  }
  output.controlPass(mixSum, sumOf(c.master), clock.controlStep);
}

// Bank and type are chosen once a run: an unselected type costs nothing and stands still.
void Engine::runFrames(Pairs& pairs, std::int32_t frames) ZUM_REALTIME {
  output.setBypass(indexOf(controls.bypass, 1) == 1);
  if (indexOf(controls.bank, 1) == 0) {
    MultiModeFilter& bank = multiMode;
    switch (indexOf(controls.multiType, MultiModeFilter::kTypes - 1)) {
      case 0: return runThrough<false>(bank.highPass, pairs, frames);
      case 1: return runThrough<false>(bank.highPassSteep, pairs, frames);
      case 2: return runThrough<false>(bank.bandPass, pairs, frames);
      case 3: return runThrough<false>(bank.bandPassSteep, pairs, frames);
      case 4: return runThrough<false>(bank.lowPass, pairs, frames);
      case 5: return runThrough<false>(bank.lowPassSteep, pairs, frames);
      case 6: return runThrough<false>(bank.comb, pairs, frames);
      case 7: return runThrough<false>(bank.bandReject, pairs, frames);
      case 8: return runThrough<false>(bank.heldBandPass, pairs, frames);
      default: return runThrough<false>(bank.heldLowPass, pairs, frames);
    }
  }
  VowelFilter& bank = vowel;
  switch (indexOf(controls.vowelType, VowelFilter::kTypes - 1)) {
    case 0: return runThrough<true>(bank.highPass, pairs, frames);
    case 1: return runThrough<true>(bank.highPassSteep, pairs, frames);
    case 2: return runThrough<true>(bank.bandPass, pairs, frames);
    case 3: return runThrough<true>(bank.bandPassSteep, pairs, frames);
    case 4: return runThrough<true>(bank.bandPassTwin, pairs, frames);
    case 5: return runThrough<true>(bank.lowPassSteep, pairs, frames);
    case 6: return runThrough<true>(bank.combs, pairs, frames);
    case 7: return runThrough<true>(bank.shelves, pairs, frames);
    case 8: return runThrough<true>(bank.heldBandPass, pairs, frames);
    default: return runThrough<true>(bank.heldLowPass, pairs, frames);
  }
}

// The order of a frame: clip, shape, filter, limit and blend, DC filter. Behind each other these
// are a chain of some 150 cycles, far longer than the filter's recursion of some 24, so a step of
// the loop works on five frames at once: each piece on the frame that the piece before it has left.
// What waits for its next piece lies in memory, so that the registers are free for the recursions.
// Every sample is computed as if the pieces ran frame by frame.
template <bool vowelBank, class Filter>
void Engine::runThrough(Filter& filter, Pairs& pairs, std::int32_t frames) ZUM_REALTIME {
  enum Piece : unsigned { clip = 1, shape = 2, filtering = 4, finish = 8, unbias = 16, all = 31 };
  constexpr std::size_t kDepth = 4;  // frames between the first piece and the last
  using Line = std::array<Float4, kRunFrames>;

  Overdrive::Lines driveLines;
  Overdrive::State drive = overdrive.enter(driveLines, frames);
  typename Filter::State structure = filter.enter();
  output.enter(frames);
  Double2 dcOut = dcFilter.lastOut();
  const bool fading = dcFilter.isFading();
  Line clipped;
  Line driven;
  Line wet;
  Line limited;
  std::array<Float4, kRunFrames + 1> finished;  // with the frame before the run in front
  finished[0] = dcFilter.lastIn();

  const auto dry = [&pairs](std::size_t i) ZUM_REALTIME { return loadPairTwice(&pairs[2 * i]); };
  /// The chosen pieces of a step whose clip piece is at frame `n`; `lag` frames lie between pieces.
  const auto step = [&]<unsigned pieces, std::size_t lag>(std::size_t n) ZUM_REALTIME {
    if constexpr ((pieces & unbias) != 0) {
      const std::size_t i = n - 4 * lag;
      storeLowPair(&pairs[2 * i], fading ? DcFilter::nextFading(dcOut, finished[i + 1], finished[i])
                                         : DcFilter::next(dcOut, finished[i + 1], finished[i]));
    }
    if constexpr ((pieces & finish) != 0) {
      const std::size_t i = n - 3 * lag;
      limited[i] = output.limit(wet[i], i);
      finished[i + 1] = output.blend(limited[i], dry(i), i);
    }
    if constexpr ((pieces & filtering) != 0) {
      const std::size_t i = n - 2 * lag;
      wet[i] = filter.next(structure, driven[i]);
      if constexpr (vowelBank) wet[i] *= splat(VowelFilter::kLevel);
    }
    if constexpr ((pieces & shape) != 0) {
      const std::size_t i = n - lag;
      driven[i] = overdrive.shape(drive, clipped[i], dry(i), i);
    }
    if constexpr ((pieces & clip) != 0) clipped[n] = overdrive.clip(drive, driveLines, dry(n), n);
  };

  const auto count = static_cast<std::size_t>(frames);
  if (count >= kDepth) {
    step.template operator()<clip, 1>(0);
    step.template operator()<clip | shape, 1>(1);
    step.template operator()<clip | shape | filtering, 1>(2);
    step.template operator()<clip | shape | filtering | finish, 1>(3);
    for (std::size_t n = kDepth; n < count; ++n) step.template operator()<all, 1>(n);
    step.template operator()<all & ~clip, 1>(count);
    step.template operator()<filtering | finish | unbias, 1>(count + 1);
    step.template operator()<finish | unbias, 1>(count + 2);
    step.template operator()<unbias, 1>(count + 3);
  } else {
    for (std::size_t n = 0; n < count; ++n) {
      step.template operator()<clip, 0>(n);
      step.template operator()<shape, 0>(n);
      step.template operator()<filtering, 0>(n);
      step.template operator()<finish, 0>(n);
      step.template operator()<unbias, 0>(n);
    }
  }
  overdrive.leave(drive, driveLines, frames);
  filter.leave(structure);
  output.leave(limited[count - 1]);
  dcFilter.leave(finished[count], dcOut);
}

}  // namespace zum
