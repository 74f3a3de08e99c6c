// Combs with damped feedback: one for both channels, or two side by side. Left and right lie next
// to each other in a ring, so that a read or a write is one move.
#pragma once

#include <array>
#include <span>

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

/// `combs` is 1 or 2, `framesAtBase` the ring's size at 44100 Hz.
template <int combs, int framesAtBase>
class Comb : public HeardInLowLanes {
 public:
  struct Coeffs {
    std::array<float, combs> delay{};  // frames
    Float4 feedback{};
  };
  Coeffs coeffs;

  /// What a run of frames keeps in registers. Two combs lie in the two halves of the lanes.
  struct State {
    std::int32_t writeIndex;
    OnePole damping;
    Float4 damped;
    Float4 read;  // last frame's
    // as of the frame before, for the right channel
    OnePole dampingBefore;
    Float4 dampedBefore;
  };

  /// The right channel's damping runs at the head of a frame, the left one's at its end. Within a
  /// run both run at the end; the head of the first frame is made up for here, and leave() takes
  /// back what belongs to the frame behind the run.
  State enter() const ZUM_REALTIME {
    State run{};
    run.writeIndex = writeIndex;
    OnePole head = damping;
    run.damped = rightOf(head.next(read, dampingCoeffs), damped);
    run.damping.w = rightOf(head.w, damping.w);
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
    run.read = exchange(run.writeIndex, c, loop + splat(kDenormalGuard));
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
    combSize = clampIndex(wanted > combSize ? wanted : combSize, kCapacity);
    if (!keepBuffers) clearRings();
  }

  /// Called in the control pass, only while the type is selected. `delayTarget` in frames, `amount`
  /// of feedback 0 to 1.
  void aim(std::size_t comb, float delayTarget, float amount, float durationMs, float ticksPerMs)
      ZUM_REALTIME {
    combDelay[comb].advance(delayTarget, durationMs, ticksPerMs);
    coeffs.delay[comb] = combDelay[comb].current;
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
  using Ring = std::array<float, 2 * static_cast<std::size_t>(kCapacity)>;

  void clearRings() ZUM_REALTIME {
    for (Ring& ring : rings) ring.fill(0.0F);
  }

  /// Writes this frame into the rings, reads what the delays say and moves on.
  Float4 exchange(std::int32_t& index, const Coeffs& coeffsOfFrame, Float4 write) ZUM_REALTIME {
    std::array<const float*, combs> from{};
    std::array<const float*, combs> to{};
    std::array<float, combs> t{};
    for (std::size_t c = 0; c < combs; ++c) {
      float position = static_cast<float>(index) - coeffsOfFrame.delay[c];
      if (position <= -1.0F) position += static_cast<float>(combSize);
      // Between -1 and 0 this is frame 0 with a negative weight, as it was tuned.
      std::int32_t i = truncate(position);
      if (static_cast<std::uint32_t>(i) >= static_cast<std::uint32_t>(combSize)) i = 0;
      const std::int32_t j = i + 1 < combSize ? i + 1 : 0;
      t[c] = position - static_cast<float>(i);
      from[c] = rings[c].data() + 2 * static_cast<std::ptrdiff_t>(i);
      to[c] = rings[c].data() + 2 * static_cast<std::ptrdiff_t>(j);
    }
    const std::ptrdiff_t at = 2 * static_cast<std::ptrdiff_t>(index);
    storeLowPair(rings[0].data() + at, write);
    if constexpr (combs == 2) storeHighPair(rings[1].data() + at, write);
    index = index + 1 < combSize ? index + 1 : 0;
    const Float4 a = combs == 2 ? loadPairs(from[0], from[combs - 1]) : loadPairTwice(from[0]);
    const Float4 b = combs == 2 ? loadPairs(to[0], to[combs - 1]) : loadPairTwice(to[0]);
    return (b - a) * halves(t[0], t[combs - 1]) + a;
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
