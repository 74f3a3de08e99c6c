// Combs with damped feedback: one for both channels, or two side by side. Left and right lie next
// to each other in a ring, so that a read or a write is one move.
#pragma once

#include <algorithm>
#include <array>

#include "engine/clock.hpp"
#include "engine/one_pole.hpp"
#include "engine/ramp.hpp"
#include "engine/svf.hpp"

namespace zum {

/// Shortest comb frequency in Hz; sets the longest delay of half its period.
inline constexpr float kLowestCombHz = 45.0F;

/// Delay in frames of half a period of `hz`.
constexpr float combDelayOf(float hz, float samplesPerMs) ZUM_REALTIME {
  return 500.0F / (hz > kLowestCombHz ? hz : kLowestCombHz) * samplesPerMs;
}

/// Where the frames of a run read in a ring: between two frames that lie one behind the other.
struct RingReads {
  std::array<std::int32_t, kRunFrames> from;  // the first of the two
  std::array<float, kRunFrames> weight;       // of the second
};

/// `combs` is 1 or 2, `framesAtBase` the ring's size at 44100 Hz.
template <int combs, int framesAtBase>
class Comb : public HeardInLowLanes {
 public:
  struct Coeffs {
    Float4 feedback{};
  };
  Coeffs coeffs;

  /// What a run of frames keeps in registers. Two combs lie in the two halves of the lanes.
  struct State {
    std::int32_t writeIndex = 0;
    std::size_t frame = 0;  // the next one of `reads`
    OnePole damping;
    Float4 damped{};
    Float4 read{};  // last frame's
    // as of the frame before, for the right channel
    OnePole dampingBefore;
    Float4 dampedBefore{};
    std::array<RingReads, combs> reads;
  };

  /// The right channel's damping runs at the head of a frame, the left one's at its end. Within a
  /// run both run at the end; the head of the first frame is made up for here, and leave() takes
  /// back what belongs to the frame behind the run.
  State enter(std::size_t frames) const ZUM_REALTIME {
    State run;
    run.writeIndex = writeIndex;
    OnePole head = damping;
    run.damped = rightOf(head.next(read, dampingCoeffs), damped);
    run.damping.w = rightOf(head.w, damping.w);
    lookAhead(run.reads, frames);
    return run;
  }
  void leave(const State& run) ZUM_REALTIME {
    writeIndex = run.writeIndex;
    read = run.read;
    damped = rightOf(run.dampedBefore, run.damped);
    damping.w = rightOf(run.dampingBefore.w, run.damping.w);
  }

  /// Forgets what it has heard; the delays stay where they glide.
  void reset() ZUM_REALTIME {
    clearRings();
    damping = OnePole{};
    damped = read = Float4{};
  }

  Float4 next(State& run, const Coeffs& c, Float4 in) ZUM_REALTIME {
    const Float4 sum = run.damped * c.feedback + in;
    const Float4 loop = sum * (one - absolute(sum) * splat(0.25F));
    run.read = exchange(run, loop + splat(kDenormalGuard));
    run.dampingBefore = run.damping;
    run.dampedBefore = run.damped;
    run.damped = run.damping.next(run.read, dampingCoeffs);
    return rightOf(run.dampedBefore, run.damped);
  }

  /// Fixed damping at `dampingHz`, and rings of the size that the rate asks for. Rings never
  /// shrink; they are cleared unless `keepBuffers`.
  void recompute(const KvSystemInfo& clock, float dampingHz, bool keepBuffers) ZUM_REALTIME {
    dampingCoeffs.tune(dampingHz, clock.sampleRate);
    const std::int32_t wanted = truncate(clock.rateRatio * static_cast<float>(framesAtBase));
    resize(clampIndex(wanted > combSize ? wanted : combSize, kCapacity));
    if (!keepBuffers) clearRings();
  }

  /// Called in the control pass, only while the type is selected. `delayTarget` in frames, `amount`
  /// of feedback 0 to 1.
  void aim(std::size_t comb, float delayTarget, float amount, float durationMs, float ticksPerMs)
      ZUM_REALTIME {
    combDelay[comb].advance(delayTarget, durationMs, ticksPerMs);
    coeffs.feedback = splat(-amount);
  }

  std::array<BufferRecord, combs> buffers() {
    std::array<BufferRecord, combs> records{};
    for (std::size_t c = 0; c < combs; ++c) records[c] = {rings[c].data(), sizeof(Ring)};
    return records;
  }

 private:
  // room for the highest sample rate, so that a new rate never allocates
  static constexpr std::int32_t kCapacity =
      static_cast<std::int32_t>(framesAtBase * KvSystemInfo::kHighestSampleRate / 44100.0F) + 1;
  // Behind the last frame stands the first one again, so that each is followed by its neighbour.
  using Ring = std::array<float, 2 * static_cast<std::size_t>(kCapacity + 1)>;

  void clearRings() ZUM_REALTIME {
    for (Ring& ring : rings) ring.fill(0.0F);
  }

  /// A longer ring: where the first frame stood again, a frame is that was never written to.
  void resize(std::int32_t frames) ZUM_REALTIME {
    for (Ring& ring : rings) {
      const float* const first = frameOf(ring, 0);
      std::fill_n(frameOf(ring, combSize), 2, 0.0F);
      std::copy_n(first, 2, frameOf(ring, frames));
    }
    combSize = frames;
  }

  /// Where the delays say that the next `frames` read; none of it depends on what is heard.
  void lookAhead(std::array<RingReads, combs>& reads, std::size_t frames) const ZUM_REALTIME {
    const Float4 size = splat(static_cast<float>(combSize));
    Int4 index = splat(writeIndex) + Int4{0, 1, 2, 3};
    for (std::size_t i = 0; i < frames; i += 4) {
      index -= (index >= splat(combSize)) & splat(combSize);
      for (std::size_t c = 0; c < combs; ++c) {
        Float4 position = toFloats(index) - splat(combDelay[c].current);
        position = select(position <= splat(-1.0F), position + size, position);
        // Between -1 and 0 this is frame 0 with a negative weight, as it was tuned. Whatever the
        // delay, no read leaves the ring.
        const Float4 inside = smaller(larger(position, splat(0.0F)), size - splat(1.0F));
        const Int4 from = truncateLanes(inside);
        storeAll(reads[c].from.data() + i, from);
        storeAll(reads[c].weight.data() + i, position - toFloats(from));
      }
      index += splat(4);
    }
  }

  /// Writes this frame into the rings, reads what the delays say and moves on.
  Float4 exchange(State& run, Float4 write) ZUM_REALTIME {
    put(run.writeIndex, write);
    if (run.writeIndex == 0) put(combSize, write);
    run.writeIndex = run.writeIndex + 1 < combSize ? run.writeIndex + 1 : 0;

    const std::size_t frame = run.frame++;
    const RingReads& first = run.reads[0];
    const RingReads& last = run.reads[combs - 1];
    const float* const from = frameOf(rings[0], first.from[frame]);
    const float* const other = frameOf(rings[combs - 1], last.from[frame]);
    const Float4 a = combs == 2 ? loadPairs(from, other) : loadLow<2>(from);
    const Float4 b = combs == 2 ? loadPairs(from + 2, other + 2) : loadLow<2>(from + 2);
    return (b - a) * halves(first.weight[frame], last.weight[frame]) + a;
  }

  static auto* frameOf(auto& ring, std::int32_t index) ZUM_REALTIME {
    return ring.data() + 2 * static_cast<std::ptrdiff_t>(index);
  }
  void put(std::int32_t index, Float4 frame) ZUM_REALTIME {
    storeLowPair(frameOf(rings[0], index), frame);
    if constexpr (combs == 2) storeHighPair(frameOf(rings[1], index), frame);
  }

  /// Right lanes of `right`, left lanes of `left`.
  static Float4 rightOf(Float4 right, Float4 left) ZUM_REALTIME {
    return __builtin_shufflevector(left, right, 0, 5, 2, 7);
  }

  std::array<Ring, combs> rings{};
  std::int32_t combSize = framesAtBase;
  std::int32_t writeIndex = 0;
  std::array<TickRamp, combs> combDelay{};  // frames
  Float4 one = splat(1.0F);                 // a member for the reason told in OutputStage
  OnePoleCoeffs dampingCoeffs;
  OnePole damping;
  Float4 damped{};
  Float4 read{};
};

}  // namespace zum
