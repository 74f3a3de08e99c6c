#include "engine/engine.hpp"

#include <algorithm>
#include <cmath>

#include "engine/chain.hpp"
#include "engine/note_table.hpp"
#include "engine/shared_value.hpp"

namespace zum {
namespace {

int indexOf(const ControlValue& choice, int last) ZUM_REALTIME {
  return clampIndex(loadShared(choice.integer), last);
}

/// Keeps sums for the window, a lane a word.
template <class... Words>
void note(Float4 sums, Words&... words) ZUM_REALTIME {
  int lane = 0;
  (storeShared(words, sums[lane++]), ...);
}

/// The number of the note table entry that plays, plus a fraction.
float notePlace(float sum) ZUM_REALTIME {
  return sum * static_cast<float>(kNoteTable.size() - 1) + 0.5F;
}

/// Silence from the first frame on that is not finite.
void silenceLost(const Run& run) ZUM_REALTIME {
  const auto isLost = [&](std::size_t i) ZUM_REALTIME {
    return !std::isfinite(run.outLeft[i]) || !std::isfinite(run.outRight[i]);
  };
  std::size_t first = 0;
  while (first < run.frames && !isLost(first)) ++first;
  std::fill(run.outLeft + first, run.outLeft + run.frames, 0.0F);
  std::fill(run.outRight + first, run.outRight + run.frames, 0.0F);
}

}  // namespace

void Engine::recompute(const KvSystemInfo& clock, bool keepBuffers) ZUM_REALTIME {
  lfo.recompute(clock, detectors);
  follower.recompute(clock);
  overdrive.recompute(clock);
  multiMode.recompute(clock, keepBuffers);
  vowel.recompute(clock, keepBuffers);
}

std::array<BufferRecord, 3> Engine::buffers() {
  const auto one = multiMode.comb.buffers();
  const auto two = vowel.combs.buffers();
  return {one[0], two[0], two[1]};
}

float BypassFade::advance(bool wanted, const KvSystemInfo& clock) ZUM_REALTIME {
  constexpr float kFadeMs = 9.0F;  // and a pass until the mix is there
  const float step = 1.0F / (kFadeMs * clock.ticksPerMs);
  level = clampUnit(wanted ? level - step : level + step);
  passesAtRest = level == 0.0F ? std::min(passesAtRest + 1, 2) : 0;
  return level;
}

void Engine::process(const float* const* inputs, const float* const* sideChain,
                     float* const* outputs, std::int32_t frames, KvSystemInfo& clock,
                     ControlPassOwner& owner) ZUM_REALTIME {
  std::size_t done = 0;
  for (const auto all = static_cast<std::size_t>(std::max(frames, 0)); done < all;) {
    selection = select();
    if (clock.controlCounter >= clock.controlFrames) {
      recover();
      controlPass(clock, owner);
    }
    output.setBypass(selection.bypass);
    const std::int32_t counted = clampIndex(clock.controlCounter, clock.controlFrames - 1);
    const auto untilPass = static_cast<std::size_t>(clock.controlFrames - counted);
    const Run run{.inLeft = inputs[0] + done,
                  .inRight = inputs[1] + done,
                  .heardLeft = sideChain[0] + done,
                  .heardRight = sideChain[1] + done,
                  .outLeft = outputs[0] + done,
                  .outRight = outputs[1] + done,
                  .frames = std::min({all - done, untilPass, kRunFrames})};
    ramps.advance(run.frames);
    play(run);
    clock.controlCounter = counted + static_cast<std::int32_t>(run.frames);
    // One buffer for both sides holds the right one, and is filtered once for each.
    if (run.outLeft == run.outRight) sharedDcFilter.filter(run.outLeft, run.frames);
    if (!dcFilter.isFinite() || !sharedDcFilter.isFinite()) silenceLost(run);
    done += run.frames;
  }
}

Engine::Selection Engine::select() const ZUM_REALTIME {
  const int bank = indexOf(controls.bank, 1);
  return {.bank = bank,
          .type = bank == 0 ? indexOf(controls.multiType, MultiModeFilter::kTypes - 1)
                            : indexOf(controls.vowelType, VowelFilter::kTypes - 1),
          .bypass = isBypassWanted() && (!bypassFade || bypassFade->isOver())};
}

// recover() asks the DC filters whether a number was not finite, so it goes first.
void Engine::resetOutput() ZUM_REALTIME {
  recover();
  dcFilter.reset();
  sharedDcFilter.reset();
}

void Engine::recover() ZUM_REALTIME {
  if (dcFilter.isFinite() && sharedDcFilter.isFinite() && detectors.isFinite() &&
      areFinite(lastLimited)) {
    return;
  }
  forget();
}

void Engine::forget() ZUM_REALTIME {
  dcFilter.reset();
  sharedDcFilter.reset();
  detectors.reset();
  overdrive.reset();
  multiMode.reset();
  vowel.reset();
  lastLimited = Float4{};
}

void Engine::controlPass(KvSystemInfo& clock, ControlPassOwner& owner) ZUM_REALTIME {
  clock.controlCounter = 0;
  owner.beginControlPass();
  selection = select();

  sums.follow(controls, modulators.seqOut);
  modulate(clock, owner);
  const Float4 level = sums.level(modulators);
  const Float4 filter = sums.filter(modulators);
  note(level, shown.master, shown.drive);
  note(filter, shown.cutoff, shown.vowelPosition, shown.resonance, shown.mix);

  overdrive.controlPass(level[1]);

  const bool vowelBank = selection.bank == 1;
  const bool cutoffMoved = frequency.controlPass(filter[0], filter[1], vowelBank, clock.ticksPerMs);
  if (cutoffMoved) multiMode.updateFilterColumns(frequency.cutoffHz(), clock);

  const float feedback = resonance.of(filter[2]);
  if (vowelBank) {
    vowel.controlPass(selection.type, controls.formantsA, controls.formantsB,
                      frequency.positionRamped(), feedback, clock);
  } else {
    multiMode.controlPass(selection.type, feedback, clock.ticksPerMs);
  }

  float mixSum = filter[3];
  if (bypassFade) mixSum *= bypassFade->advance(isBypassWanted(), clock);
  const float page = wantedModPage();
  if (page != modPagePosition) {
    modPagePosition = page;
    owner.modPageMoved(page);
  }
  ramps.aim(Float4{overdrive.thresholdTarget(), overdrive.makeupTarget(), mixSum, 2.0F * level[0]},
            clock.controlStep);
  output.pushMeters(lastLimited);
}

// The place on the tab strip while it is held, otherwise the page that was chosen last.
float Engine::wantedModPage() const ZUM_REALTIME {
  if (loadShared(controls.mouseArea[0]) > 0.0F) return loadShared(controls.areaPosition.raw);
  return static_cast<float>(indexOf(controls.modChoice, 2)) * 0.33898306F;
}

// Each modulator reads the ones above it as of this pass, and the others as of the pass before.
void Engine::modulate(const KvSystemInfo& clock, ControlPassOwner& owner) ZUM_REALTIME {
  const Float4 steps = sums.sequencer(modulators);
  note(steps, shown.seqGlide, shown.seqTempo);
  storeShared(shown.seqNote, notePlace(steps[1]));
  if (sequencer.controlPass(steps[0], steps[1],
                            indexOf(controls.seqMode, StepSequencer::kModes - 1), clock, owner)) {
    storeShared(modulators.seqOut, sequencer.seqOut());
    sums.refreshSeqProducts(modulators.seqOut);
  }

  const Float4 wave = sums.lfo(modulators);
  note(wave, shown.lfoRate, shown.lfoWave, shown.lfoSens);
  storeShared(shown.lfoNote, notePlace(wave[0]));
  storeShared(shown.lfoWaveSlot, Lfo::slotPlace(wave[1]));
  lfo.controlPass({.rateSum = wave[0],
                   .waveSum = wave[1],
                   .sensSum = wave[2],
                   .sync = indexOf(controls.lfoStyle, 1) == 1,
                   .trigEnabled = indexOf(controls.lfoTrigOnOff, 1) == 1,
                   .startPulse = sequencer.startPulse(),
                   .trigPeak = detectors.trigPeak()},
                  clock);
  modulators.lfoOut = lfo.lfoOut();

  const Float4 envelope = sums.follower(modulators);
  note(envelope, shown.efGain, shown.efAttack, shown.efRelease, shown.efRange);
  follower.controlPass({.gainSum = envelope[0],
                        .attackSum = envelope[1],
                        .releaseSum = envelope[2],
                        .rangeSum = envelope[3]},
                       clock, detectors);
  modulators.efOut = follower.efOut();
}

// An unselected type costs nothing and stands still.
void Engine::play(const Run& run) ZUM_REALTIME {
  if (selection.bank == 0) {
    switch (selection.type) {
      case 0: return playThrough(multiMode.highPass, run);
      case 1: return playThrough(multiMode.highPassSteep, run);
      case 2: return playThrough(multiMode.bandPass, run);
      case 3: return playThrough(multiMode.bandPassSteep, run);
      case 4: return playThrough(multiMode.lowPass, run);
      case 5: return playThrough(multiMode.lowPassSteep, run);
      case 6: return playThrough(multiMode.comb, run);
      case 7: return playThrough(multiMode.bandReject, run);
      case 8: return playThrough(multiMode.heldBandPass, run);
      default: return playThrough(multiMode.heldLowPass, run);
    }
  }
  switch (selection.type) {
    case 0: return playThrough(vowel.highPass, run);
    case 1: return playThrough(vowel.highPassSteep, run);
    case 2: return playThrough(vowel.bandPass, run);
    case 3: return playThrough(vowel.bandPassSteep, run);
    case 4: return playThrough(vowel.bandPassTwin, run);
    case 5: return playThrough(vowel.lowPassSteep, run);
    case 6: return playThrough(vowel.combs, run);
    case 7: return playThrough(vowel.shelves, run);
    case 8: return playThrough(vowel.heldBandPass, run);
    default: return playThrough(vowel.heldLowPass, run);
  }
}

}  // namespace zum
