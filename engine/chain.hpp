// The frame chain: what every frame goes through, in the order in which it does. Instantiated for
// each filter type by the engine.
#pragma once

#include <algorithm>

#include "engine/engine.hpp"

namespace zum {

/// Part of a host's block that is worked on as one piece.
struct Chunk {
  const float* inLeft;
  const float* inRight;
  const float* heardLeft;  // by the level detectors: the input, or the side-chain
  const float* heardRight;
  float* outLeft;
  float* outRight;
  std::size_t frames;  // at most kChunkFrames
};

// One after the other the pieces of a frame take some 180 cycles, far longer than the filter's
// recursion of some 24, which is all that ties a frame to the next. So the pieces stand in two
// loops, each over the frames up to the next control pass, and a step of a loop works on several
// frames: each piece on the frame that the piece before it left a step ago. What waits for its next
// piece lies in lines of memory, so that registers are free for the recursions. Every sample is
// computed as if the frames went through one by one.
template <bool vowelBank, bool fading, class Filter>
std::size_t Engine::playChunk(Filter& filter, const Chunk& chunk, KvSystemInfo& clock,
                              ControlPassOwner& owner) ZUM_REALTIME {
  using Line = std::array<Float4, kChunkFrames>;
  Line dry;
  Line level;
  std::array<Float4, kChunkFrames + 1> smooth;  // [0] is of the frame before the chunk
  Line clipped;
  Line shaped;
  Line wet;
  Line limited;
  Line finished;
  std::array<Float4, kChunkFrames + 1> blended;  // [0] is of the frame before the chunk
  blended[0] = dcFilter.lastIn();

  LevelDetectors::State levels = detectors.enter();
  smooth[0] = levels.smooth;
  constexpr float kDither = 9.99999993922529e-09F;
  const std::array<Float4, 2> dither = {splat(kDither), splat(-kDither)};
  Overdrive::Lines driveLines;
  OnePole clipLowpass;
  OnePole bassPath;
  overdrive.enter(driveLines, clipLowpass, bassPath);
  typename Filter::State structure = filter.enter();
  output.enter();
  Double2 dcOut = dcFilter.lastOut();

  // The pieces, each for frame `i` of the chunk.
  const auto enter = [&](std::size_t i) ZUM_INLINED {
    dry[i] = pairTwice(chunk.inLeft[i], chunk.inRight[i]);
    const Float4 heard = pairTwice(chunk.heardLeft[i], chunk.heardRight[i]);
    level[i] = detectors.listen(levels, heard, dither[(i + ditherPhase) % 2]);
    clipped[i] = overdrive.clip(driveLines, dry[i], i);
  };
  const auto shape = [&](std::size_t i) ZUM_INLINED {
    smooth[i + 1] = detectors.hold(levels, level[i]);
    shaped[i] = overdrive.shape(clipLowpass, clipped[i]);
  };
  const auto through = [&](std::size_t i) ZUM_INLINED {
    const Float4 driven = overdrive.join(bassPath, shaped[i], dry[i], i);
    wet[i] = filter.next(structure, filter.coeffs, driven);
    if constexpr (vowelBank) wet[i] *= splat(VowelFilter::kLevel);
  };
  const auto limit = [&](std::size_t i) ZUM_INLINED { limited[i] = output.limit(wet[i], i); };
  const auto blend = [&](std::size_t i)
                         ZUM_INLINED { blended[i + 1] = output.blend(limited[i], dry[i], i); };
  const auto unbias = [&](std::size_t i) ZUM_INLINED {
    finished[i] = fading ? DcFilter::nextFading(dcOut, blended[i + 1], blended[i])
                         : DcFilter::next(dcOut, blended[i + 1], blended[i]);
  };
  // The loops below write into lines only. A write through an output pointer might change anything
  // that they read, as far as the compiler knows, and it would load all of it again.
  std::size_t handedOut = 0;
  const auto handOut = [&](std::size_t end) ZUM_INLINED {
    for (; handedOut < end; ++handedOut) {
      chunk.outLeft[handedOut] = finished[handedOut][0];
      chunk.outRight[handedOut] = finished[handedOut][1];
    }
  };

  constexpr float kFarBelowInfinity = 1e30F;
  const auto back = [](std::size_t end, std::size_t count)
                        ZUM_INLINED { return end > count ? end - count : 0; };
  const Selection playing = selection;
  std::size_t frames = 0;
  while (true) {
    const std::size_t first = frames;
    const std::int32_t counted = clampIndex(clock.controlCounter, clock.controlFrames - 1);
    const auto untilPass = static_cast<std::size_t>(clock.controlFrames - counted);
    frames = std::min(chunk.frames, first + untilPass);
    overdrive.advance(first, frames);
    output.advance(first, frames);

    enter(first);
    for (std::size_t n = first + 1; n < frames; ++n) {
      shape(n - 1);
      enter(n);
    }
    shape(frames - 1);

    if (first >= 3) unbias(first - 3);
    if (first >= 2) blend(first - 2);
    through(first);
    for (std::size_t n = first + 1; n < frames; ++n) {
      if (n >= 3) unbias(n - 3);
      if (n >= 2) blend(n - 2);
      limit(n - 1);
      through(n);
    }
    limit(frames - 1);
    if (frames >= 3) handOut(frames - 3);

    clock.controlCounter = counted + static_cast<std::int32_t>(frames - first);
    lastLimited = limited[frames - 1];
    detectors.leave(levels, smooth[frames - 1]);
    if (frames == chunk.frames) break;
    // The last three frames are still on their way. Where one may end beyond the finite numbers,
    // the chunk ends here, and recover() looks at what became of it.
    const Float4 loudness = absolute(dry[frames - 1]) + absolute(dry[back(frames, 2)]) +
                            absolute(dry[back(frames, 3)]) + absolute(lowTwice(lastLimited)) +
                            absolute(narrow(dcOut)) + LevelDetectors::ends(levels);
    if (anyLaneSet(~(loudness < splat(kFarBelowInfinity)))) break;
    controlPass(clock, owner);
    if (!(selection == playing)) break;
  }
  for (std::size_t n = frames >= 2 ? frames - 2 : 0; n < frames; ++n) blend(n);
  for (std::size_t n = frames >= 3 ? frames - 3 : 0; n < frames; ++n) unbias(n);
  handOut(frames);

  ditherPhase = (ditherPhase + frames) % 2;
  overdrive.leave(driveLines, clipLowpass, bassPath, dry[frames - 1], frames);
  filter.leave(structure);
  dcFilter.leave(blended[frames], dcOut);
  return frames;
}

}  // namespace zum
