#include "engine/engine.hpp"

#include <algorithm>

#include "engine/shared_value.hpp"

namespace zum {
namespace {

float sumOf(const ControlValue& base) ZUM_REALTIME { return clampUnit(loadShared(base.raw)); }

int indexOf(const ControlValue& choice, int last) ZUM_REALTIME {
  return clampIndex(loadShared(choice.integer), last);
}

/// A filter's state for a run, in registers where it is small.
template <class Filter>
auto enter(Filter& filter) ZUM_REALTIME {
  if constexpr (requires { filter.enter(); }) return filter.enter();
  else return filter;
}
template <class Filter, class Frames>
void leave(Filter& filter, const Frames& run) ZUM_REALTIME {
  if constexpr (requires { filter.leave(run); }) filter.leave(run);
  else filter = run;
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
      case 0: return runThrough(bank.highPass, 1.0F, pairs, frames);
      case 1: return runThrough(bank.highPassSteep, 1.0F, pairs, frames);
      case 2: return runThrough(bank.bandPass, 1.0F, pairs, frames);
      case 3: return runThrough(bank.bandPassSteep, 1.0F, pairs, frames);
      case 4: return runThrough(bank.lowPass, 1.0F, pairs, frames);
      case 5: return runThrough(bank.lowPassSteep, 1.0F, pairs, frames);
      case 6: return runThrough(bank.comb, 1.0F, pairs, frames);
      case 7: return runThrough(bank.bandReject, 1.0F, pairs, frames);
      case 8: return runThrough(bank.heldBandPass, 1.0F, pairs, frames);
      default: return runThrough(bank.heldLowPass, 1.0F, pairs, frames);
    }
  }
  VowelFilter& bank = vowel;
  constexpr float kLevel = VowelFilter::kLevel;
  switch (indexOf(controls.vowelType, VowelFilter::kTypes - 1)) {
    case 0: return runThrough(bank.highPass, kLevel, pairs, frames);
    case 1: return runThrough(bank.highPassSteep, kLevel, pairs, frames);
    case 2: return runThrough(bank.bandPass, kLevel, pairs, frames);
    case 3: return runThrough(bank.bandPassSteep, kLevel, pairs, frames);
    case 4: return runThrough(bank.bandPassTwin, kLevel, pairs, frames);
    case 5: return runThrough(bank.lowPassSteep, kLevel, pairs, frames);
    case 6: return runThrough(bank.combs, kLevel, pairs, frames);
    case 7: return runThrough(bank.shelves, kLevel, pairs, frames);
    case 8: return runThrough(bank.heldBandPass, kLevel, pairs, frames);
    default: return runThrough(bank.heldLowPass, kLevel, pairs, frames);
  }
}

// The order of a frame: clip, shape, filter, output, DC filter. Behind each other these five are a
// chain of some 150 cycles, far longer than the filter's recursion of some 24, so a step of the
// loop works on five frames at once: each piece on the frame that the piece before it has left.
// Every sample is computed as if the pieces ran frame by frame.
template <class Filter>
void Engine::runThrough(Filter& filter, float level, Pairs& pairs,
                        std::int32_t frames) ZUM_REALTIME {
  enum Piece : unsigned { clip = 1, shape = 2, filtering = 4, finish = 8, unbias = 16 };
  constexpr std::int32_t kDepth = 4;  // frames between the first piece and the last

  Overdrive drive = overdrive;
  auto structure = enter(filter);
  OutputStage::Frames out = output.enter();
  DcFilter dc = dcFilter;
  const Float4 gain = splat(level);
  Float4 clipped{};
  Float4 driven{};
  Float4 wet{};
  Float4 finished{};
  float* at = pairs.data();  // frame of the clip piece

  const auto step = [&]<unsigned pieces>() __attribute__((always_inline)) {
    if constexpr ((pieces & unbias) != 0) storeLowPair(at - 8, dc.next(finished));
    if constexpr ((pieces & finish) != 0) finished = out.next(wet, loadPairTwice(at - 6));
    if constexpr ((pieces & filtering) != 0) wet = structure.next(driven) * gain;
    if constexpr ((pieces & shape) != 0) driven = drive.shape(clipped, loadPairTwice(at - 2));
    if constexpr ((pieces & clip) != 0) clipped = drive.clip(loadPairTwice(at));
    at += 2;
  };

  if (frames >= kDepth) {
    step.template operator()<clip>();
    step.template operator()<clip | shape>();
    step.template operator()<clip | shape | filtering>();
    step.template operator()<clip | shape | filtering | finish>();
    for (std::int32_t i = kDepth; i < frames; ++i) {
      step.template operator()<clip | shape | filtering | finish | unbias>();
    }
    step.template operator()<shape | filtering | finish | unbias>();
    step.template operator()<filtering | finish | unbias>();
    step.template operator()<finish | unbias>();
    step.template operator()<unbias>();
  } else {
    for (std::int32_t i = 0; i < frames; ++i, at += 2) {
      const Float4 dry = loadPairTwice(at);
      driven = drive.shape(drive.clip(dry), dry);
      storeLowPair(at, dc.next(out.next(structure.next(driven) * gain, dry)));
    }
  }
  overdrive = drive;
  leave(filter, structure);
  output.leave(out);
  dcFilter = dc;
}

}  // namespace zum
