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

/// Keeps a sum for the window and passes it on.
float noted(float& word, float sum) ZUM_REALTIME {
  storeShared(word, sum);
  return sum;
}

/// The number of the note table entry that plays, plus a fraction.
float notePlace(float sum) ZUM_REALTIME {
  return sum * static_cast<float>(kNoteTable.size() - 1) + 0.5F;
}

/// Silence from the first frame on that is not finite.
void silenceLost(const Chunk& chunk, std::size_t frames) ZUM_REALTIME {
  const auto isLost = [&](std::size_t i) ZUM_REALTIME {
    return !std::isfinite(chunk.outLeft[i]) || !std::isfinite(chunk.outRight[i]);
  };
  std::size_t first = 0;
  while (first < frames && !isLost(first)) ++first;
  std::fill(chunk.outLeft + first, chunk.outLeft + frames, 0.0F);
  std::fill(chunk.outRight + first, chunk.outRight + frames, 0.0F);
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
    const Chunk chunk{.inLeft = inputs[0] + done,
                      .inRight = inputs[1] + done,
                      .heardLeft = sideChain[0] + done,
                      .heardRight = sideChain[1] + done,
                      .outLeft = outputs[0] + done,
                      .outRight = outputs[1] + done,
                      .frames = std::min(all - done, kChunkFrames)};
    const std::size_t played = play(chunk, clock, owner);
    // One buffer for both sides holds the right one, and is filtered once for each.
    if (chunk.outLeft == chunk.outRight) sharedDcFilter.filter(chunk.outLeft, played);
    if (!dcFilter.isFinite() || !sharedDcFilter.isFinite()) silenceLost(chunk, played);
    done += played;
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
      areFinite(lowTwice(lastLimited))) {
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

  const EngineControls& c = controls;
  const ModulationSums sums(c, modulators);
  modulate(sums, clock, owner);

  overdrive.controlPass(noted(shown.drive, sums.drive()), clock.controlStep);

  const bool vowelBank = selection.bank == 1;
  const bool cutoffMoved = frequency.controlPass(noted(shown.cutoff, sums.cutoff()),
                                                 noted(shown.vowelPosition, sums.vowelPosition()),
                                                 vowelBank, clock.ticksPerMs);
  if (cutoffMoved) multiMode.updateFilterColumns(frequency.cutoffHz(), clock);

  const float feedback = resonance.of(noted(shown.resonance, sums.resonance()));
  if (vowelBank) {
    vowel.controlPass(selection.type, c.formantsA, c.formantsB, frequency.positionRamped(),
                      feedback, clock);
  } else {
    multiMode.controlPass(selection.type, feedback, clock.ticksPerMs);
  }

  float mixSum = noted(shown.mix, sums.mix());
  if (bypassFade) mixSum *= bypassFade->advance(isBypassWanted(), clock);
  const float page = wantedModPage();
  if (page != modPagePosition) {
    modPagePosition = page;
    owner.modPageMoved(page);
  }
  output.controlPass(mixSum, noted(shown.master, sums.master()), clock.controlStep);
  output.pushMeters(lastLimited);
}

// The place on the tab strip while it is held, otherwise the page that was chosen last.
float Engine::wantedModPage() const ZUM_REALTIME {
  if (loadShared(controls.mouseArea[0]) > 0.0F) return loadShared(controls.areaPosition.raw);
  return static_cast<float>(indexOf(controls.modChoice, 2)) * 0.33898306F;
}

// Each modulator reads the ones above it as of this pass, and the others as of the pass before.
void Engine::modulate(const ModulationSums& sums, const KvSystemInfo& clock,
                      ControlPassOwner& owner) ZUM_REALTIME {
  const EngineControls& c = controls;
  const float seqTempoSum = noted(shown.seqTempo, sums.seqTempo());
  storeShared(shown.seqNote, notePlace(seqTempoSum));
  if (sequencer.controlPass(noted(shown.seqGlide, sums.seqGlide()), seqTempoSum,
                            indexOf(c.seqMode, StepSequencer::kModes - 1), clock, owner)) {
    storeShared(modulators.seqOut, sequencer.seqOut());
    refreshSeqProducts(controls, modulators.seqOut);
  }
  const float lfoRateSum = noted(shown.lfoRate, sums.lfoRate());
  const float lfoWaveSum = noted(shown.lfoWave, sums.lfoWave());
  storeShared(shown.lfoNote, notePlace(lfoRateSum));
  storeShared(shown.lfoWaveSlot, Lfo::slotPlace(lfoWaveSum));
  lfo.controlPass({.rateSum = lfoRateSum,
                   .waveSum = lfoWaveSum,
                   .sensSum = noted(shown.lfoSens, sums.lfoSens()),
                   .sync = indexOf(c.lfoStyle, 1) == 1,
                   .trigEnabled = indexOf(c.lfoTrigOnOff, 1) == 1,
                   .startPulse = sequencer.startPulse(),
                   .trigPeak = detectors.trigPeak()},
                  clock);
  modulators.lfoOut = lfo.lfoOut();
  follower.controlPass({.gainSum = noted(shown.efGain, sums.efGain()),
                        .attackSum = noted(shown.efAttack, sums.efAttack()),
                        .releaseSum = noted(shown.efRelease, sums.efRelease()),
                        .rangeSum = noted(shown.efRange, sums.efRange())},
                       clock, detectors);
  modulators.efOut = follower.efOut();
}

// An unselected type costs nothing and stands still.
std::size_t Engine::play(const Chunk& chunk, KvSystemInfo& clock, ControlPassOwner& owner)
    ZUM_REALTIME {
  if (selection.bank == 0) {
    switch (selection.type) {
      case 0: return playThrough<false>(multiMode.highPass, chunk, clock, owner);
      case 1: return playThrough<false>(multiMode.highPassSteep, chunk, clock, owner);
      case 2: return playThrough<false>(multiMode.bandPass, chunk, clock, owner);
      case 3: return playThrough<false>(multiMode.bandPassSteep, chunk, clock, owner);
      case 4: return playThrough<false>(multiMode.lowPass, chunk, clock, owner);
      case 5: return playThrough<false>(multiMode.lowPassSteep, chunk, clock, owner);
      case 6: return playThrough<false>(multiMode.comb, chunk, clock, owner);
      case 7: return playThrough<false>(multiMode.bandReject, chunk, clock, owner);
      case 8: return playThrough<false>(multiMode.heldBandPass, chunk, clock, owner);
      default: return playThrough<false>(multiMode.heldLowPass, chunk, clock, owner);
    }
  }
  switch (selection.type) {
    case 0: return playThrough<true>(vowel.highPass, chunk, clock, owner);
    case 1: return playThrough<true>(vowel.highPassSteep, chunk, clock, owner);
    case 2: return playThrough<true>(vowel.bandPass, chunk, clock, owner);
    case 3: return playThrough<true>(vowel.bandPassSteep, chunk, clock, owner);
    case 4: return playThrough<true>(vowel.bandPassTwin, chunk, clock, owner);
    case 5: return playThrough<true>(vowel.lowPassSteep, chunk, clock, owner);
    case 6: return playThrough<true>(vowel.combs, chunk, clock, owner);
    case 7: return playThrough<true>(vowel.shelves, chunk, clock, owner);
    case 8: return playThrough<true>(vowel.heldBandPass, chunk, clock, owner);
    default: return playThrough<true>(vowel.heldLowPass, chunk, clock, owner);
  }
}

}  // namespace zum
