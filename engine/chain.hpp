// The frame chain: what every frame goes through, in the order in which it does. Instantiated for
// each filter type by the engine.
#pragma once

#include "engine/engine.hpp"
#include "engine/filter_run.hpp"

namespace zum {

// One after the other the pieces of a frame take some 180 cycles, far longer than the filter's
// recursion of some 20, which is all that ties a frame to the next. So frames go in pairs, which
// fill a register, and a step of the loop works on several pairs: each piece on the pair that the
// piece before it left a step ago. What waits for its next piece lies in lines of memory, so that
// registers are free for the recursions. Every sample is computed as if the frames went through
// one by one.
template <int frames, class Filter>
void Engine::playPairs(Filter& filter, const Run& run, bool fading) ZUM_REALTIME {
  const std::size_t pairs = run.frames / frames;
  PairLine dry;
  PairLine heard;  // a frame a lane, as are the triggers
  PairLine triggers;
  std::array<Float4, kRunPairs + 1> clipped;
  std::array<Float4, kRunPairs + 1> shaped;  // [0] is of the pair before
  PairLine bass;
  PairLine wet;
  PairLine finished;
  Float4 limited{};
  clipped[pairs] = shaped[0] = Float4{};

  LevelDetectors::State levels = detectors.enter();
  Overdrive::State drive = overdrive.enter();
  FilterRun structure(filter, run.frames, levels.efBand, detectors.bandCoeffs());
  DcFilter::State dc = dcFilter.enter();

  // The pieces, each for pair `p` of the run.
  const auto ramp = [&](Ramp which, std::size_t p)
                        ZUM_INLINED { return ramps.at[which][run.firstPair + p]; };
  const auto enter = [&](std::size_t p) ZUM_INLINED {
    dry[p] =
        interleaveLow(loadLow<frames>(run.inLeft + 2 * p), loadLow<frames>(run.inRight + 2 * p));
    heard[p] =
        larger(loadLow<frames>(run.heardLeft + 2 * p), loadLow<frames>(run.heardRight + 2 * p));
    triggers[p] = LevelDetectors::trigger<frames>(levels, heard[p], dither);
    clipped[p] = overdrive.clip<frames>(drive, dry[p], ramp(threshold, p));
  };
  const auto smooth = [&](std::size_t p) ZUM_INLINED {
    const bool isFirst = p == 0;       // the low-pass alone
    const bool isBehind = p == pairs;  // the bass path alone
    const Overdrive::Lows lows =
        overdrive.smooth<frames>(drive, clipped[p], shaped[p], !isBehind, !isFirst);
    if (!isFirst) bass[p - 1] = lows.bass;
    if (!isBehind) shaped[p + 1] = overdrive.shape(lows.clip);
  };
  const auto through = [&](std::size_t p) ZUM_INLINED {
    const Float4 driven = overdrive.join(shaped[p + 1], bass[p], dry[p], ramp(makeup, p));
    Float4 bands;
    wet[p] = structure.template next<frames>(driven, heard[p], bands);
    detectors.hold<frames>(levels, heard[p], bands, triggers[p]);
  };
  const auto finish = [&](std::size_t p) ZUM_INLINED {
    limited = output.limit(wet[p], ramp(master, p));
    finished[p] = DcFilter::next<frames>(dc, output.blend(limited, dry[p], ramp(mix, p)), fading);
  };

  for (std::size_t step = 0; step < pairs + 4; ++step) {
    if (step >= 4) finish(step - 4);
    if (step >= 3 && step - 3 < pairs) through(step - 3);
    if (step >= 1 && step - 1 <= pairs) smooth(step - 1);
    if (step < pairs) enter(step);
  }

  // The loop above writes into lines only. A write through an output pointer might change anything
  // that it reads, as far as the compiler knows, and it would load all of it again.
  for (std::size_t p = 0; p < pairs; ++p) {
    storeLow<frames>(run.outLeft + 2 * p, evenLanes(finished[p]));
    storeLow<frames>(run.outRight + 2 * p, oddLanes(finished[p]));
  }

  lastLimited = frames == 2 ? highTwice(limited) : lowTwice(limited);
  if constexpr (frames == 1) dither = -dither;
  structure.leave();
  detectors.leave(levels);
  overdrive.leave(drive);
  dcFilter.leave(dc);
}

}  // namespace zum
